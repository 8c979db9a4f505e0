#include "TestValues.h"

namespace tov::test
{

TOV_BEGIN_CLASS (TestInteger)
TOV_END_CLASS()

TOV_BEGIN_CLASS (TestText)
TOV_END_CLASS()

TOV_BEGIN_CLASS (Incomparable)
TOV_END_CLASS()

TOV_BEGIN_CLASS (Shape, { "friendlyName", "\"Geometric Shape\"" }, { "learnable", "true" }, { "heightWhenUsedInParameterRow", "3" })
    TOV_VARIABLE (title, { "default", "\"untitled\"" })
    TOV_VARIABLE (width, { "default", "10" }, { "unit", "\"px\"" })
TOV_END_CLASS()

TOV_BEGIN_CLASS (Rectangle, { "learnable", "false" })
    TOV_VARIABLE (height, { "default", "5" }, { "visible", "false" })
    TOV_READ_ONLY_VARIABLE (marker)
TOV_END_CLASS()

TOV_BEGIN_CLASS (RoundedRectangle)
    TOV_VARIABLE (cornerRadius, { "propagateChildrenChanges", "true" })
TOV_END_CLASS()

TOV_BEGIN_CLASS (Empty)
TOV_END_CLASS()

TOV_BEGIN_CLASS (AbstractShape)
TOV_END_CLASS()

Library* createTestLibrary()
{
    auto* library = new NamedLibrary ("Tests", {});
    library->addClass<TestInteger>();
    library->addClass<TestText>();
    library->addClass<Incomparable>();
    library->addClass<Shape>();
    library->addClass<Rectangle>();
    library->addClass<RoundedRectangle>();
    library->addClass<Empty>();
    library->addClass<AbstractShape>();
    return library;
}

} // namespace tov::test
