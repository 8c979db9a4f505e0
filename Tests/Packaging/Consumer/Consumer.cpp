// Declares a reflected class, makes an object of it and prints the State text it saves to.
#include <Tov/Atomic/Atomic.h>
#include <Tov/Core/Library.h>
#include <Tov/Core/StateObjectExporter.h>
#include <Tov/TovLibrary.h>
#include <iostream>

class Track : public tov::Object
{
public:
    TOV_DECLARE_CLASS (Track, Object)

    tov::String name;
    tov::Integer channels;
};

TOV_BEGIN_CLASS (Track)
    TOV_VARIABLE (name, { "default", "\"Untitled\"" })
    TOV_VARIABLE (channels, { "default", "2" })
TOV_END_CLASS()

int main()
{
    auto* library = new tov::NamedLibrary ("Consumer", {});
    library->addClass<Track>();
    tov::initializeTov()->addLibrary (library);

    auto* track = static_cast<Track*> (Track::staticClass.createObject());
    track->channels.set (6, false);
    std::cout << tov::StateObjectExporter::make (*track, 0, false)->saveToString();
    track->deleteThis();
    tov::deinitializeTov();
    return 0;
}
