#include "TestValues.h"
#include <Tov/Core/ObjectExporter.h>
#include <Tov/Core/ObjectImporter.h>

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

//==============================================================================
void TestInteger::set (int64_t newValue, bool notify)
{
    if (newValue == value)
        return;
    value = newValue;
    if (notify)
        changed();
}

bool TestInteger::equalsSameClass (const Object& other) const
{
    return value == static_cast<const TestInteger&> (other).value;
}

void TestInteger::copyTo (Object& target) const
{
    copyClassTo (target);
    static_cast<TestInteger&> (target).value = value;
}

void TestInteger::save (ObjectExporter& exporter) const
{
    exporter.writeInteger (value);
}

bool TestInteger::load (ObjectImporter& importer)
{
    if (! importer.checkType (StateType::integerType))
        return false;
    value = importer.getCurrentState()->getInteger();
    return true;
}

//==============================================================================
void TestText::set (const juce::String& newValue, bool notify)
{
    if (newValue == value)
        return;
    value = newValue;
    if (notify)
        changed();
}

bool TestText::equalsSameClass (const Object& other) const
{
    return value == static_cast<const TestText&> (other).value;
}

void TestText::copyTo (Object& target) const
{
    copyClassTo (target);
    static_cast<TestText&> (target).value = value;
}

void TestText::save (ObjectExporter& exporter) const
{
    exporter.writeString (value);
}

bool TestText::load (ObjectImporter& importer)
{
    if (! importer.checkType (StateType::stringType))
        return false;
    value = importer.getCurrentState()->getString();
    return true;
}

} // namespace tov::test
