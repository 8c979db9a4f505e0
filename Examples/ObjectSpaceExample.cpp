// Builds a small document in an object space, with a view that prints what the
// space tells it: a playlist as root, songs below it, a few edits, a deletion,
// and the end of the whole document.
#include <Tov/Atomic/Atomic.h>
#include <Tov/Core/Library.h>
#include <Tov/Core/ObjectSpace.h>
#include <algorithm>
#include <iostream>

using namespace tov;

// A song: a name (which labels it) and a rating.
class Song : public NameableObject
{
public:
    TOV_DECLARE_CLASS (Song, NameableObject)
    Integer rating;
};

// The root of the document. It owns its songs itself, as an owned vector would:
// it counts a reference on each, is their parent and initialises them in its space.
class Playlist : public NameableObject
{
public:
    TOV_DECLARE_CLASS (Playlist, NameableObject)

    ~Playlist() override
    {
        for (auto* song : songs)
            song->decrementReferenceCounter (true);
    }

    Song* addSong (const juce::String& songName, int64_t rating)
    {
        auto* song = static_cast<Song*> (Song::staticClass.createObject (this));
        song->name.set (songName, false);
        song->rating.set (rating, false);
        song->incrementReferenceCounter();
        songs.push_back (song);
        song->callInitializeObject (getSpace(), nullptr, this);
        changed();
        return song;
    }

    void removeSong (Song* song)
    {
        songs.erase (std::find (songs.begin(), songs.end(), song));
        song->decrementReferenceCounter (true);
        changed();
    }

    // What is owned is deinitialised and marked with its owner.
    void deinitializeObject() override
    {
        NameableObject::deinitializeObject();
        for (auto* song : songs)
            song->callDeinitializeObject();
    }

    void markObjectsAsBeingDestroyed() override
    {
        NameableObject::markObjectsAsBeingDestroyed();
        for (auto* song : songs)
            song->markObjectsAsBeingDestroyed();
    }

private:
    std::vector<Song*> songs;
};

TOV_BEGIN_CLASS (Song)
    TOV_VARIABLE (rating, { "default", "3" })
TOV_END_CLASS()

TOV_BEGIN_CLASS (Playlist)
TOV_END_CLASS()

// Prints every event with the object's class and friendly name; a member variable is
// named after its owner, with its value.
class PrintingView : public ObjectSpaceView
{
public:
    using ObjectSpaceView::ObjectSpaceView;

    void objectCreated (Object* object) override  { print ("created", object); }
    void objectChanged (Object* object) override  { print ("changed", object); }
    void objectDestroyed (Object* object) override { print ("destroyed", object); }

    void objectPreDeleted (Object* object) override
    {
        // Member variables are deinitialised with their owner; the owner is enough here.
        if (! object->hasStaticAllocationFlag())
            print ("pre-deleted", object);
    }

private:
    static void print (const char* event, Object* object)
    {
        std::cout << "  view: " << event << " " << describe (object) << "\n";
    }

    static juce::String describe (Object* object)
    {
        if (object->hasStaticAllocationFlag() && object->getSignature() != nullptr)
            return describe (object->getParent()) + "." + object->getSignature()->getName() + " = " + object->toString();
        return object->getClassName() + " \"" + object->getFriendlyName() + "\"";
    }
};

static void printTable (const ObjectSpace& space)
{
    std::vector<ObjectSpace::ObjectDescription> descriptions;
    space.getObjectDescriptions (descriptions, nullptr, false);
    std::sort (descriptions.begin(), descriptions.end(),
               [] (const auto& a, const auto& b) { return std::get<2> (a) < std::get<2> (b); });
    std::cout << "  " << space.getNumObjects() << " objects in \"" << space.getName() << "\":";
    for (const auto& [identifier, objectClass, friendlyName] : descriptions)
        std::cout << " " << friendlyName << " (" << objectClass->getName() << ")";
    std::cout << "\n";
}

int main()
{
    auto* example = new NamedLibrary ("Example", {});
    example->addClass<Song>();
    example->addClass<Playlist>();
    initializeTov()->addLibrary (example);
    {
        ObjectSpace space ("Library");
        space.addView (new PrintingView (space));

        std::cout << "== The root, by the root identifier\n";
        auto* playlist = static_cast<Playlist*> (Playlist::staticClass.createObject());
        playlist->name.set ("Road Trip", false);
        space.setRootObject (playlist, true);
        std::cout << "  root identifier " << space.getRootObject()->getUniqueIdentifier().to64BitsHexadecimalString() << "\n";

        std::cout << "== Three songs\n";
        auto* first = playlist->addSong ("Morning Drive", 4);
        playlist->addSong ("Long Straight Road", 3);
        auto* last = playlist->addSong ("Arrival", 5);
        printTable (space);

        std::cout << "== Edits\n";
        first->rating.set (5);
        first->name.set ("Early Morning Drive");
        playlist->name.set ("Summer Road Trip");

        std::cout << "== One song out\n";
        playlist->removeSong (last);
        printTable (space);

        std::cout << "== The whole document\n";
        space.deleteRootObject();
        printTable (space);
    }
    deinitializeTov();
    return 0;
}
