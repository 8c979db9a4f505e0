#include "ContainerTestSupport.h"
#include "Support/RecordingSpaceView.h"

using namespace tov;
using namespace tov::test;

namespace
{
class OwnedVectorTest : public ContainerTest
{
protected:
    OwnedVector<Track> tracks;

    /** Tracks named by the texts, appended without notification. */
    void appendTracks (std::initializer_list<const char*> names)
    {
        for (auto* name : names)
            tracks.append (makeTrack (name), false);
    }

    juce::String names() const
    {
        juce::StringArray result;
        for (auto* track : tracks)
            result.add (track->name.get());
        return result.joinIntoString (",");
    }
};
} // namespace

TEST_F (OwnedVectorTest, AppendHoldsCountsAndParentsEachElement)
{
    ChangeCounter changes (tracks);
    Track* track = makeTrack ("a");
    tracks.append (track);
    ASSERT_EQ (tracks.size(), 1u);
    EXPECT_EQ (tracks[0], track);
    EXPECT_EQ (track->getParent(), &tracks);
    EXPECT_EQ (track->getReferenceCount(), 1u);
    EXPECT_EQ (changes.count, 1);
    EXPECT_EQ (tracks.getFirst(), track);
    EXPECT_EQ (tracks.getLast(), track);
}

TEST_F (OwnedVectorTest, InsertRefusesANullObjectAndAnIndexPastTheEnd)
{
    appendTracks ({ "a", "b" });
    ChangeCounter changes (tracks);
    tracks.insert (0, nullptr);
    Owned<Track> stray (makeTrack ("stray"));
    tracks.insert (3, stray.get());
    EXPECT_EQ (names(), "a,b");
    EXPECT_EQ (stray->getReferenceCount(), 0u);
    EXPECT_EQ (changes.count, 0);
    tracks.insert (2, stray.release());
    tracks.insert (0, makeTrack ("first"));
    EXPECT_EQ (names(), "first,a,b,stray");
}

TEST_F (OwnedVectorTest, ClearOfAnEmptyVectorDoesNotNotify)
{
    ChangeCounter changes (tracks);
    tracks.clear (true);
    EXPECT_EQ (changes.count, 0);
}

TEST_F (OwnedVectorTest, ClearNotifiesWithTheVectorEmptyAndTheElementsStillAlive)
{
    appendTracks ({ "a", "b" });
    DeletionWatcher first (*tracks[0]), second (*tracks[1]);
    ChangeProbe probe (tracks, [&] { return juce::String ((int) tracks.size()) + (first.deleted ? " deleted" : " alive"); });
    tracks.clear (true);
    EXPECT_EQ (probe.seen.joinIntoString ("|"), "0 alive");
    EXPECT_TRUE (first.deleted);
    EXPECT_TRUE (second.deleted);
}

TEST_F (OwnedVectorTest, RemoveNotifiesWhileTheElementIsGoneFromTheVectorYetAlive)
{
    appendTracks ({ "a", "b", "c" });
    Track* removed = tracks[1];
    DeletionWatcher watcher (*removed);
    ChangeProbe probe (tracks, [&]
    {
        return names() + (watcher.deleted ? " deleted" : " alive " + removed->name.get());
    });
    tracks.remove ((size_t) 1, true);
    EXPECT_EQ (probe.seen.joinIntoString ("|"), "a,c alive b");
    EXPECT_TRUE (watcher.deleted);
}

TEST_F (OwnedVectorTest, RemoveOfAnObjectSaysWhetherItWasThere)
{
    appendTracks ({ "a", "b" });
    Owned<Track> stranger (makeTrack ("x"));
    EXPECT_FALSE (tracks.remove (stranger.get()));
    EXPECT_TRUE (tracks.remove (tracks[0]));
    EXPECT_EQ (names(), "b");
    EXPECT_TRUE (tracks.removeByFriendlyName ("b"));
    EXPECT_FALSE (tracks.removeByFriendlyName ("b"));
    EXPECT_TRUE (tracks.isEmpty());
}

TEST_F (OwnedVectorTest, MakeUniqueLabelCountsOnAfterABlank)
{
    appendTracks ({ "Layer", "Layer 2" });
    EXPECT_EQ (tracks.makeUniqueLabel ("Layer"), "Layer 3");
    EXPECT_EQ (tracks.makeUniqueLabel ("Free"), "Free");
}

TEST_F (OwnedVectorTest, MakeUniqueLabelKeepsTheWidthOfTheDigits)
{
    appendTracks ({ "Take07" });
    EXPECT_EQ (tracks.makeUniqueLabel ("Take07"), "Take08");
    appendTracks ({ "Take08", "Take9" });
    EXPECT_EQ (tracks.makeUniqueLabel ("Take07"), "Take09");
    EXPECT_EQ (tracks.makeUniqueLabel ("Take9"), "Take10");
}

TEST_F (OwnedVectorTest, AppendWithAUniqueLabelRenamesTheNewcomer)
{
    appendTracks ({ "Intro" });
    tracks.append (makeTrack ("Intro"), true, true);
    tracks.append (makeTrack ("Intro"), true, true);
    EXPECT_EQ (names(), "Intro,Intro 2,Intro 3");
}

TEST_F (OwnedVectorTest, ResizeToTheCurrentSizeDoesNothing)
{
    appendTracks ({ "a", "b" });
    Track* first = tracks[0];
    ChangeCounter changes (tracks);
    tracks.resize (2, true);
    EXPECT_EQ (changes.count, 0);
    EXPECT_EQ (tracks[0], first);
}

TEST_F (OwnedVectorTest, ResizeGrowsWithObjectsOfTheTargetClassAndShrinksFromTheEnd)
{
    appendTracks ({ "a" });
    ChangeCounter changes (tracks);
    tracks.resize (3, true);
    ASSERT_EQ (tracks.size(), 3u);
    EXPECT_EQ (tracks[2]->getClass(), &Track::staticClass);
    EXPECT_EQ (tracks[2]->getParent(), &tracks);
    tracks.resize (1, true);
    EXPECT_EQ (names(), "a");
    EXPECT_EQ (changes.count, 2);
}

TEST_F (OwnedVectorTest, ToStringOf32ElementsShowsThemAll)
{
    OwnedVector<Integer> numbers;
    for (int i = 0; i < 32; ++i)
        numbers.append (makeInteger (i), false);
    const auto text = numbers.toString();
    EXPECT_TRUE (text.startsWith ("[0, 1, 2, "));
    EXPECT_TRUE (text.endsWith (", 30, 31]"));
    EXPECT_FALSE (text.contains ("others"));
}

TEST_F (OwnedVectorTest, ToStringOf33ElementsShowsTheFirst30AndCountsTheOthers)
{
    OwnedVector<Integer> numbers;
    for (int i = 0; i < 33; ++i)
        numbers.append (makeInteger (i), false);
    EXPECT_TRUE (numbers.toString().endsWith (", 28, 29 and 3 others]"));
    EXPECT_EQ (OwnedVector<Integer>().toString(), "[]");
}

TEST_F (OwnedVectorTest, ElementsAreNamedAfterTheVectorWithoutItsLastS)
{
    Owned<Playlist> playlist (make<Playlist>());
    playlist->items.append (makeTrack (""));
    playlist->items.append (makeTrack (""));
    EXPECT_EQ (playlist->items.getFriendlyName(), "Items");
    EXPECT_EQ (playlist->items.getObjectFriendlyName (0), "Item 1");
    EXPECT_EQ (playlist->items[1]->getFriendlyName(), "Item 2");
}

TEST_F (OwnedVectorTest, GetByLabelFindsAnUnlabelledElementThroughItsAutomaticFriendlyName)
{
    Owned<Playlist> playlist (make<Playlist>());
    playlist->items.append (makeTrack ("Item 2"));
    playlist->items.append (makeTrack (""));
    EXPECT_EQ (playlist->items.getByLabel ("Item 2"), playlist->items[0]);
    playlist->items[0]->name.set ("Opening");
    EXPECT_EQ (playlist->items.getByLabel ("Item 2"), playlist->items[1]);
    EXPECT_EQ (playlist->items.getByLabel ("Opening"), playlist->items[0]);
    EXPECT_EQ (playlist->items.getByLabel ("Item 1"), nullptr);
}

TEST_F (OwnedVectorTest, MoveTakesTheElementOutAndInsertsItInTheShortenedVector)
{
    appendTracks ({ "a", "b", "c", "d" });
    ChangeCounter changes (tracks);
    tracks.move (0, 2);
    EXPECT_EQ (names(), "b,c,a,d");
    tracks.move (3, 0);
    EXPECT_EQ (names(), "d,b,c,a");
    tracks.move (1, 1);
    EXPECT_EQ (changes.count, 2);
}

TEST_F (OwnedVectorTest, InsertByFriendlyNameOrderPlacesTheElementAmongSortedOnes)
{
    appendTracks ({ "b", "d" });
    tracks.insertByFriendlyNameOrder (makeTrack ("c"));
    tracks.insertByFriendlyNameOrder (makeTrack ("a"));
    tracks.insertByFriendlyNameOrder (makeTrack ("e"));
    EXPECT_EQ (names(), "a,b,c,d,e");
    tracks[0]->name.set ("f", false);
    tracks.moveToFriendlyNameOrderedVector (0);
    EXPECT_EQ (names(), "b,c,d,e,f");
}

TEST_F (OwnedVectorTest, SetHoldsTheNewElementsBeforeLettingGoOfTheOld)
{
    appendTracks ({ "a", "b" });
    Track* kept = tracks[1];
    DeletionWatcher dropped (*tracks[0]);
    Track* added = makeTrack ("c");
    tracks.set ({ kept, added });
    EXPECT_EQ (names(), "b,c");
    EXPECT_TRUE (dropped.deleted);
    EXPECT_EQ (kept->getReferenceCount(), 1u);
    EXPECT_EQ (kept->getParent(), &tracks);

    ChangeCounter changes (tracks);
    tracks.set ({ kept, added });
    EXPECT_EQ (changes.count, 0);
    EXPECT_TRUE (tracks.equalsVector ({ kept, added }));
}

TEST_F (OwnedVectorTest, SetShallowSharesTheElementsWhichOutliveEitherVector)
{
    appendTracks ({ "a", "b" });
    Track* first = tracks[0];
    DeletionWatcher watcher (*first);
    {
        OwnedVector<Track> copy;
        copy.setShallow (tracks);
        EXPECT_EQ (copy[0], first);
        EXPECT_EQ (first->getReferenceCount(), 2u);
        tracks.clear();
        EXPECT_FALSE (watcher.deleted);
        EXPECT_EQ (first->getReferenceCount(), 1u);
    }
    EXPECT_TRUE (watcher.deleted);
}

TEST_F (OwnedVectorTest, AnElementMovesToAnotherVectorAndStaysTheSameObject)
{
    appendTracks ({ "a", "b" });
    OwnedVector<Track> other;
    Track* moved = tracks[0];
    DeletionWatcher watcher (*moved);
    moved->incrementReferenceCounter();
    tracks.remove (moved);
    other.append (moved);
    moved->decrementReferenceCounter (false);
    EXPECT_FALSE (watcher.deleted);
    EXPECT_EQ (other[0], moved);
    EXPECT_EQ (moved->getParent(), &other);
    EXPECT_EQ (moved->getReferenceCount(), 1u);
    EXPECT_EQ (names(), "b");
}

TEST_F (OwnedVectorTest, EqualsComparesClassesAndContentsInOrder)
{
    appendTracks ({ "a", "b" });
    OwnedVector<Track> same, reordered, otherClass;
    same.append (makeTrack ("a"));
    same.append (makeTrack ("b"));
    reordered.append (makeTrack ("b"));
    reordered.append (makeTrack ("a"));
    otherClass.append (makeTrack ("a"));
    auto* text = make<TextTrack>();
    text->name.set ("b", false);
    otherClass.append (text);
    EXPECT_TRUE (tracks.equals (same));
    EXPECT_FALSE (tracks.equals (reordered));
    EXPECT_FALSE (tracks.equals (otherClass));
    same.removeLast();
    EXPECT_FALSE (tracks.equals (same));
}

TEST_F (OwnedVectorTest, CopyToKeepsTheTargetsElementsOfTheSameClass)
{
    appendTracks ({ "a", "b" });
    OwnedVector<Track> target;
    target.append (makeTrack ("x"));
    Track* kept = target[0];
    ChangeCounter changes (target);
    tracks.copyTo (target);
    EXPECT_EQ (target[0], kept);
    EXPECT_EQ (kept->name.get(), "a");
    EXPECT_EQ (target[1]->name.get(), "b");
    EXPECT_NE (target[1], tracks[1]);
    EXPECT_EQ (target[1]->getParent(), &target);
    EXPECT_TRUE (target.equals (tracks));
    EXPECT_GE (changes.count, 1);
}

TEST_F (OwnedVectorTest, CopyToReplacesElementsOfAnotherClassAndShortensALongerTarget)
{
    appendTracks ({ "a" });
    OwnedVector<Track> target;
    target.append (make<TextTrack>());
    target.append (makeTrack ("extra"));
    DeletionWatcher replaced (*target[0]), dropped (*target[1]);
    tracks.copyTo (target);
    ASSERT_EQ (target.size(), 1u);
    EXPECT_EQ (target[0]->getClass(), &Track::staticClass);
    EXPECT_TRUE (replaced.deleted);
    EXPECT_TRUE (dropped.deleted);

    ChangeCounter changes (target);
    tracks.copyTo (target);
    EXPECT_EQ (changes.count, 0);
}

TEST_F (OwnedVectorTest, SavesUnnamedElementsNamingOnlyAnotherClass)
{
    appendTracks ({ "a" });
    auto* text = make<TextTrack>();
    text->text.set ("words", false);
    tracks.append (text);
    EXPECT_EQ (textOf (tracks), "{=> {name = \"a\"}, => 'TextTrack {text = \"words\"}}");
    EXPECT_EQ (textOf (OwnedVector<Track>()), "void");
}

TEST_F (OwnedVectorTest, LoadMakesTheElementsOfTheState)
{
    appendTracks ({ "a" });
    Track* old = tracks[0];
    DeletionWatcher watcher (*old);
    auto state = parseState ("{=> {name = \"x\", gain = 3}, => 'TextTrack {name = \"y\"}}");
    ChangeCounter changes (tracks);
    const auto outcome = loadFromState (tracks, state);
    EXPECT_TRUE (outcome.result);
    EXPECT_EQ (outcome.messages, "");
    EXPECT_EQ (names(), "x,y");
    EXPECT_EQ (tracks[0]->gain.get(), 3);
    EXPECT_EQ (tracks[1]->getClass(), &TextTrack::staticClass);
    EXPECT_EQ (tracks[1]->getParent(), &tracks);
    EXPECT_TRUE (watcher.deleted);
    EXPECT_EQ (changes.count, 1);
}

TEST_F (OwnedVectorTest, LoadReportsANullElementAndKeepsTheOthers)
{
    const auto outcome = loadFromState (tracks, parseState ("{=> {name = \"a\"}, -> nil, => {name = \"b\"}}"));
    EXPECT_FALSE (outcome.result);
    EXPECT_EQ (outcome.messages, "Error: null pointer (in ObjectOwnedVector::load)\n");
    EXPECT_EQ (names(), "a,b");
}

TEST_F (OwnedVectorTest, LoadReportsAnElementOfAClassThatIsNoTarget)
{
    const auto outcome = loadFromState (tracks, parseState ("{=> 'Node {name = \"n\"}, => {name = \"b\"}}"));
    EXPECT_FALSE (outcome.result);
    EXPECT_EQ (outcome.messages, "Error: Node does not inherit from Track (in ObjectOwnedVector::load)\n");
    EXPECT_EQ (names(), "b");
}

TEST_F (OwnedVectorTest, TheGeneratedClassNamesItsTarget)
{
    Class* vectorClass = tracks.getClass();
    ASSERT_NE (vectorClass, nullptr);
    EXPECT_EQ (vectorClass->getName(), "OwnedVector(Track)");
    EXPECT_EQ (vectorClass, getClass ("OwnedVector(Track)"));
    EXPECT_EQ (vectorClass->getFriendlyName(), "List of Tracks");
    EXPECT_TRUE (vectorClass->inheritsFrom (&ObjectOwnedVector::staticClass));
    EXPECT_EQ (tracks.getTargetClass(), &Track::staticClass);
    EXPECT_TRUE (tracks.canUserRemoveObject());
    EXPECT_EQ (ObjectOwnedVector().getTargetClass(), &Object::staticClass);

    ObjectOwnedVector strings (&String::staticClass);
    EXPECT_EQ (strings.getClass()->getName(), "OwnedVector(String)");
    EXPECT_EQ (strings.getTargetClass(), &String::staticClass);
}

TEST_F (OwnedVectorTest, ElementsEnterTheSpaceOfTheVectorAndLeaveItWhenRemoved)
{
    Album* album = make<Album>();
    auto& space = makeSpace ("document", nullptr);
    space.setRootObject (album, true);
    std::vector<juce::String> log;
    addRecordingView (space, log);

    Track* track = makeTrack ("a");
    album->tracks.append (track);
    EXPECT_TRUE (track->isObjectInitialized());
    EXPECT_EQ (track->getSpace(), &space);
    EXPECT_EQ (space.getObject (track->getUniqueIdentifier()), track);
    const auto identifier = track->getUniqueIdentifier();

    album->tracks.remove (track);
    EXPECT_FALSE (space.hasObject (identifier));
    EXPECT_EQ (log, (std::vector<juce::String> { "created Track", "changed tracks", "changed tracks", "destroyed Track",
                                                 "preDeleted Track", "preDeleted name", "preDeleted gain" }));
    // The log goes before the space does.
    space.deleteViews();
}

TEST_F (OwnedVectorTest, DeinitialisingTheVectorDeinitialisesOnlyTheElementsItHoldsAlone)
{
    Album* album = make<Album>();
    auto& space = makeSpace ("document", nullptr);
    space.setRootObject (album, true);
    album->tracks.append (makeTrack ("own"));
    album->tracks.append (makeTrack ("shared"));
    Track* own = album->tracks[0];
    Track* shared = album->tracks[1];
    shared->incrementReferenceCounter();

    album->tracks.callDeinitializeObject();
    EXPECT_FALSE (own->isObjectInitialized());
    EXPECT_TRUE (shared->isObjectInitialized());
    album->tracks.clear (false);
    EXPECT_EQ (shared->getReferenceCount(), 1u);
    shared->callDeinitializeObject();
    shared->deleteThis();
}

TEST_F (OwnedVectorTest, ObjectPathsCountTheIndexInTheVector)
{
    Owned<Album> album (make<Album>());
    album->tracks.append (makeTrack ("a"));
    album->tracks.append (makeTrack ("b"));
    std::vector<uint64_t> path;
    album->tracks[1]->getObjectPath (path);
    EXPECT_EQ (path, (std::vector<uint64_t> { 1, 1 }));
    EXPECT_FALSE (album->tracks.isAnimatable());
}
