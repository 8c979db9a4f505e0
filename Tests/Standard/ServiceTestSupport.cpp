#include "ServiceTestSupport.h"
#include <Tov/Core/Library.h>

namespace tov::test
{

TOV_BEGIN_CLASS (Marker)
TOV_END_CLASS()

TOV_BEGIN_CLASS (SpacesService)
    TOV_VARIABLE (scene)
    TOV_VARIABLE (audio)
TOV_END_CLASS()

Marker::~Marker()
{
    if (events != nullptr)
        events->push_back (label + " deleted");
}

void ensureServiceTestLibrary()
{
    TestProgram::ensureTestLibraryTree();
    auto* root = Library::getRootLibrary();
    if (root->getLibraryByName ("ServiceTests") != nullptr)
        return;
    auto* library = new NamedLibrary ("ServiceTests", {});
    library->addClass<Marker>();
    library->addClass<SpacesService>();
    root->addLibrary (library);
}

Marker& setMarkerRoot (ObjectSpace& space, const juce::String& label, std::vector<juce::String>& events)
{
    auto* marker = static_cast<Marker*> (Marker::staticClass.createObject());
    marker->events = &events;
    marker->label = label;
    space.setRootObject (marker, true);
    return *marker;
}

} // namespace tov::test
