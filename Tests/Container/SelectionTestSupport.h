#pragma once

#include "ContainerTestSupport.h"
#include <Tov/Container/Selection.h>

// Set lists of tracks, with selections of some of them, in a space.
namespace tov::test
{

/** Tracks, the chosen ones, and a second choice whose losses go without a change. */
class Setlist : public Object
{
public:
    TOV_DECLARE_CLASS (Setlist, Object)

    String name;
    OwnedVector<Track> tracks;
    Selection<Track> chosen;
    ObjectSelection quiet;
};

/** Counts the changes of the object itself, not those that climb through it from below. */
class OwnChangeCounter : public View
{
public:
    explicit OwnChangeCounter (Object& object) : object (object)  { attachObject (&object); }
    void changedCallback (Object*, Object* changedObject) override  { count += changedObject == &object ? 1 : 0; }

    Object& object;
    int count = 0;
};

/** Makes the classes of these tests known to the library tree; safe to call more than once. */
void ensureSelectionTestLibrary();

/** A set list of the tracks "a" to "d", root of the space "show", in a running program. */
class SetlistTest : public ContainerTest
{
protected:
    SetlistTest()                                    { ensureSelectionTestLibrary(); }

    Setlist* setlist = makeSetlist ({ "a", "b", "c", "d" });
    NamedSpaces::Space& show = makeSpace ("show", setlist);

    static Setlist* makeSetlist (std::initializer_list<const char*> trackNames);
    Track* track (size_t index) const                { return setlist->tracks[index]; }
    /** The names of the members in order, "<dead>" for one whose track is gone, "," between them. */
    static juce::String names (const ObjectSelection& selection);
    /** The live objects of the members in order, null for one whose object is gone. */
    static std::vector<Object*> members (const ObjectSelection& selection);
    /** The service's flush of async triggers, where selections drop their dead elements. */
    void flushAsyncTriggers()                        { service.flushAsyncTriggers (service.context); }
    /** Deletes the track, and with it its selected weak pointers' objects. */
    void deleteTrack (size_t index)                  { setlist->tracks.remove (index, false); }
};

} // namespace tov::test
