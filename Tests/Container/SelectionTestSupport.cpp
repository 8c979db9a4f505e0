#include "SelectionTestSupport.h"

namespace tov::test
{

TOV_BEGIN_CLASS (Setlist)
    TOV_VARIABLE (name)
    TOV_VARIABLE (tracks)
    TOV_VARIABLE (chosen)
    TOV_VARIABLE (quiet, { "notifyInCaseOfAddressLoss", "false" })
TOV_END_CLASS()

void ensureSelectionTestLibrary()
{
    ensureContainerTestLibrary();
    auto* root = Library::getRootLibrary();
    if (root == nullptr || root->getLibraryByName ("SelectionTests") != nullptr)
        return;
    auto* library = new NamedLibrary ("SelectionTests", {});
    library->addClass<Setlist>();
    root->addLibrary (library);
}

Setlist* SetlistTest::makeSetlist (std::initializer_list<const char*> trackNames)
{
    ensureSelectionTestLibrary();
    auto* setlist = create<Setlist>();
    for (auto* name : trackNames)
        setlist->tracks.append (makeTrack (name), false);
    return setlist;
}

juce::String SetlistTest::names (const ObjectSelection& selection)
{
    juce::StringArray result;
    for (size_t i = 0; i < selection.size(); ++i)
    {
        auto* member = selection.get (i);
        result.add (member != nullptr ? member->getFriendlyName() : juce::String ("<dead>"));
    }
    return result.joinIntoString (",");
}

std::vector<Object*> SetlistTest::members (const ObjectSelection& selection)
{
    std::vector<Object*> result;
    for (size_t i = 0; i < selection.size(); ++i)
        result.push_back (selection.get (i));
    return result;
}

} // namespace tov::test
