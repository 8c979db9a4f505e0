#include "JsonTestClasses.h"

namespace tov::test
{

TOV_BEGIN_CLASS (JsonSample)
    TOV_VARIABLE (count, { "default", "3" })
    TOV_VARIABLE (ratio)
    TOV_VARIABLE (label, { "jsonIdentifier", "\"name\"" })
    TOV_VARIABLE (enabled)
    TOV_VARIABLE (kept, { "disableJsonPruning", "true" })
    TOV_READ_ONLY_VARIABLE (hidden)
    TOV_VARIABLE (fired)
TOV_END_CLASS()

TOV_BEGIN_CLASS (JsonDerivedSample)
    TOV_VARIABLE (extra)
TOV_END_CLASS()

TOV_BEGIN_CLASS (JsonNest)
    TOV_VARIABLE (inner)
    TOV_VARIABLE (pointer)
    TOV_VARIABLE (list)
TOV_END_CLASS()

void ensureJsonTestLibrary()
{
    auto* root = Library::getRootLibrary();
    if (root == nullptr || root->getLibraryByName ("JsonTests") != nullptr)
        return;
    auto* library = new NamedLibrary ("JsonTests", {});
    library->addClass<JsonSample>();
    library->addClass<JsonDerivedSample>();
    library->addClass<JsonNest>();
    root->addLibrary (library);
}

} // namespace tov::test
