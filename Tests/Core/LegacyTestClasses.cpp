#include "LegacyTestClasses.h"

namespace tov::test
{

TOV_BEGIN_CLASS (Canvas2dPosition)
    TOV_VARIABLE (x)
    TOV_VARIABLE (y)
TOV_END_CLASS()

TOV_BEGIN_CLASS (Placement2d)
    TOV_VARIABLE (scale, { "default", "1" })
TOV_END_CLASS()

TOV_BEGIN_CLASS (ManipulationTool)
    TOV_VARIABLE (mode)
TOV_END_CLASS()

TOV_BEGIN_CLASS (GroupSelectorGeometryMask)
    TOV_VARIABLE (id)
TOV_END_CLASS()

TOV_BEGIN_CLASS (LegacyDocument)
    TOV_VARIABLE (position)
    TOV_VARIABLE (placement)
    TOV_VARIABLE (tools)
    TOV_VARIABLE (mask)
    TOV_VARIABLE (version)
    TOV_VARIABLE (address)
    TOV_VARIABLE (shift)
TOV_END_CLASS()

void ensureLegacyTestLibrary()
{
    auto* root = Library::getRootLibrary();
    if (root == nullptr || root->getLibraryByName ("LegacyTests") != nullptr)
        return;
    auto* library = new NamedLibrary ("LegacyTests", {});
    library->addClass<Canvas2dPosition>();
    library->addClass<Placement2d>();
    library->addClass<ManipulationTool>();
    library->addClass<GroupSelectorGeometryMask>();
    library->addClass<LegacyDocument>();
    root->addLibrary (library);
}

} // namespace tov::test
