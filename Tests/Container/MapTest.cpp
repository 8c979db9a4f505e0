#include "ContainerTestSupport.h"
#include "Support/RecordingSpaceView.h"

using namespace tov;
using namespace tov::test;

namespace
{
class MapTest : public ContainerTest
{
protected:
    StringMap<Track> tracks;

    juce::String entries() const
    {
        juce::StringArray result;
        for (auto entry : tracks)
            result.add (entry.getKey()->get() + "=" + entry.getValue()->name.get());
        return result.joinIntoString (",");
    }
};
} // namespace

TEST_F (MapTest, InsertingAnEqualKeyTwiceLeavesOneEntryWithTheSecondValue)
{
    tracks.insert ("calm", makeTrack ("first"));
    Track* first = tracks.find ("calm");
    DeletionWatcher watcher (*first);
    tracks.insert ("calm", makeTrack ("second"));
    EXPECT_EQ (tracks.size(), 1u);
    EXPECT_EQ (entries(), "calm=second");
    EXPECT_TRUE (watcher.deleted);
}

TEST_F (MapTest, TwoDistinctKeyObjectsWithEqualContentFindTheSameEntry)
{
    Map<Track, Integer> gains;
    gains.insert (makeTrack ("a", 1), makeInteger (10));
    Owned<Track> probe (makeTrack ("a", 1));
    ASSERT_NE (probe.get(), gains.begin().getKey());
    Integer* found = gains.find (*probe);
    ASSERT_NE (found, nullptr);
    EXPECT_EQ (found->get(), 10);
    probe->gain.set (2, false);
    EXPECT_EQ (gains.find (*probe), nullptr);
}

TEST_F (MapTest, AnEntryWhoseKeyIsAWeakPointerWithoutAnAddressIsNotSaved)
{
    Map<WeakPointer<Track>, Integer> ratings;
    Owned<Track> loose (makeTrack ("loose"));
    auto* key = new WeakPointer<Track> (loose.get());
    ratings.insert (key, makeInteger (5));
    EXPECT_TRUE (key->getAddress().isNull());
    EXPECT_EQ (ratings.size(), 1u);
    EXPECT_EQ (textOf (ratings), "void");

    auto& space = makeSpace ("document", makeNode ("root"));
    ratings.insert (new WeakPointer<Track> (static_cast<Track*> (space.getRootObject())), makeInteger (4));
    EXPECT_EQ (textOf (ratings), "{{key = => {\"document\", -> @1}, value = => 4}}");
}

TEST_F (MapTest, ToStringOfAnEmptyMapIsBraces)
{
    EXPECT_EQ (tracks.toString(), "{}");
    StringMap<Integer> counts;
    counts.insert ("a", makeInteger (1));
    counts.insert ("b", makeInteger (2));
    EXPECT_EQ (counts.toString(), "{a = 1, b = 2}");
}

TEST_F (MapTest, GetByValueClassTwiceGivesTheSameObject)
{
    NamedObjectMap settings;
    Object* first = settings.getByValueClass (&Track::staticClass);
    ASSERT_NE (first, nullptr);
    EXPECT_EQ (first->getClass(), &Track::staticClass);
    EXPECT_EQ (settings.getByValueClass (&Track::staticClass), first);
    EXPECT_EQ (settings.find ("track"), first);
    EXPECT_EQ (settings.size(), 1u);
    EXPECT_EQ (settings.getClass()->getName(), "NamedObjectMap");
}

TEST_F (MapTest, GetMakesAValueOfTheValueClassOrDestroysTheGivenKey)
{
    Track* made = tracks.get ("calm");
    ASSERT_NE (made, nullptr);
    EXPECT_EQ (made->getClass(), &Track::staticClass);
    EXPECT_EQ (made->getParent(), &tracks);

    auto* duplicate = makeString ("calm");
    DeletionWatcher watcher (*duplicate);
    EXPECT_EQ (tracks.get (duplicate), made);
    EXPECT_TRUE (watcher.deleted);
    EXPECT_EQ (tracks.size(), 1u);
}

TEST_F (MapTest, EntriesKeepTheOrderOfInsertion)
{
    for (auto* key : { "d", "a", "c", "b" })
        tracks.insert (key, makeTrack (juce::String (key).toUpperCase()));
    EXPECT_EQ (entries(), "d=D,a=A,c=C,b=B");
    EXPECT_TRUE (tracks.remove ("a"));
    EXPECT_FALSE (tracks.remove ("a"));
    tracks.insert ("a", makeTrack ("A2"));
    EXPECT_EQ (entries(), "d=D,c=C,b=B,a=A2");
}

TEST_F (MapTest, ManyEntriesAreAllFoundAfterTheTableGrows)
{
    StringMap<Integer> counts;
    for (int i = 0; i < 1000; ++i)
        counts.insert ("key " + juce::String (i), makeInteger (i), false);
    ASSERT_EQ (counts.size(), 1000u);
    for (int i = 0; i < 1000; i += 7)
        ASSERT_EQ (counts.find ("key " + juce::String (i))->get(), i);
    EXPECT_EQ (counts.find ("key 1000"), nullptr);
}

TEST_F (MapTest, RemoveLetsGoOfKeyAndValueAndThenNotifies)
{
    tracks.insert ("calm", makeTrack ("a"));
    DeletionWatcher value (*tracks.find ("calm"));
    DeletionWatcher key (*tracks.begin().getKey());
    ChangeProbe probe (tracks, [&] { return juce::String ((int) tracks.size()) + (value.deleted && key.deleted ? " released" : " held"); });
    tracks.remove ("calm");
    EXPECT_EQ (probe.seen.joinIntoString ("|"), "0 released");
}

TEST_F (MapTest, ClearNotifiesWhileTheEntriesAreStillAlive)
{
    tracks.insert ("calm", makeTrack ("a"));
    DeletionWatcher value (*tracks.find ("calm"));
    ChangeProbe probe (tracks, [&] { return juce::String ((int) tracks.size()) + (value.deleted ? " released" : " held"); });
    tracks.clear();
    EXPECT_EQ (probe.seen.joinIntoString ("|"), "0 held");
    EXPECT_TRUE (value.deleted);
    tracks.clear();
    EXPECT_EQ (probe.seen.size(), 1);
}

TEST_F (MapTest, SavesEntriesAsKeyAndValueAndLoadsThemBack)
{
    tracks.insert ("calm", makeTrack ("a", 1));
    auto* text = make<TextTrack>();
    text->text.set ("t", false);
    tracks.insert ("wild", text);
    auto state = tracks.makeState (true, false);
    EXPECT_EQ (state->saveToString().trimEnd(), "{{key = => \"calm\", value = => {name = \"a\", gain = 1}}, {key = => \"wild\", value = => 'TextTrack {text = \"t\"}}}");

    StringMap<Track> loaded;
    ChangeCounter changes (loaded);
    const auto outcome = loadFromState (loaded, state);
    EXPECT_TRUE (outcome.result);
    EXPECT_EQ (outcome.messages, "");
    EXPECT_TRUE (loaded.equals (tracks));
    EXPECT_EQ (loaded.find ("wild")->getClass(), &TextTrack::staticClass);
    EXPECT_EQ (changes.count, 1);
}

TEST_F (MapTest, LoadingKeepsTheValueOfAKeyThatWasAlreadyThere)
{
    tracks.insert ("calm", makeTrack ("a", 1));
    tracks.insert ("gone", makeTrack ("g"));
    Track* kept = tracks.find ("calm");
    DeletionWatcher dropped (*tracks.find ("gone"));
    const auto outcome = loadFromState (tracks, parseState ("{{key = => \"calm\", value = => {gain = 7}}, {key = => \"new\", value = => {}}}"));
    EXPECT_TRUE (outcome.result);
    EXPECT_EQ (tracks.find ("calm"), kept);
    EXPECT_EQ (kept->gain.get(), 7);
    EXPECT_EQ (kept->getReferenceCount(), 1u);
    EXPECT_EQ (kept->getParent(), &tracks);
    EXPECT_TRUE (dropped.deleted);
    EXPECT_EQ (tracks.size(), 2u);
}

TEST_F (MapTest, LoadingSkipsEntriesWithoutValueOrWithARepeatedKeyAndIgnoresOtherNames)
{
    const auto outcome = loadFromState (tracks, parseState (
        "{{key = => \"a\"}, {key = => \"b\", colour = 3, value = => {name = \"B\"}}, {key = => \"b\", value = => {name = \"again\"}}, {value = => {}}}"));
    EXPECT_TRUE (outcome.result);
    EXPECT_EQ (entries(), "b=B");
}

TEST_F (MapTest, EqualsComparesValuesByKeyWhateverTheOrder)
{
    StringMap<Integer> a, b;
    a.insert ("x", makeInteger (1));
    a.insert ("y", makeInteger (2));
    b.insert ("y", makeInteger (2));
    b.insert ("x", makeInteger (1));
    EXPECT_TRUE (a.equals (b));
    b.find ("x")->set (3, false);
    EXPECT_FALSE (a.equals (b));
    b.remove ("x");
    EXPECT_FALSE (a.equals (b));
}

TEST_F (MapTest, CopyToGoesThroughTheSavedForm)
{
    tracks.insert ("calm", makeTrack ("a", 1));
    StringMap<Track> copy;
    copy.insert ("other", makeTrack ("o"));
    tracks.copyTo (copy);
    EXPECT_TRUE (copy.equals (tracks));
    EXPECT_NE (copy.find ("calm"), tracks.find ("calm"));
    EXPECT_EQ (copy.find ("other"), nullptr);
}

TEST_F (MapTest, TheGeneratedClassNamesKeyAndValue)
{
    Class* mapClass = tracks.getClass();
    ASSERT_NE (mapClass, nullptr);
    EXPECT_EQ (mapClass->getName(), "Map({key = String, value = Track})");
    EXPECT_EQ (mapClass, getClass ("Map({key=String,value=Track})"));
    EXPECT_EQ (mapClass->getFriendlyName(), "List of Tracks per " + String::staticClass.getFriendlyName());
    EXPECT_TRUE (mapClass->inheritsFrom (&ObjectMap::staticClass));
    EXPECT_EQ (tracks.getKeyClass(), &String::staticClass);
    EXPECT_EQ (tracks.getValueClass(), &Track::staticClass);
    EXPECT_EQ (ObjectMap().getValueClass(), &Object::staticClass);
}

TEST_F (MapTest, KeysAndValuesEnterTheSpaceOfTheMap)
{
    Album* album = make<Album>();
    auto& space = makeSpace ("document", nullptr);
    space.setRootObject (album, true);
    album->tracksByMood.insert ("calm", makeTrack ("a"));
    Track* value = album->tracksByMood.find ("calm");
    Object* key = album->tracksByMood.begin().getKey();
    EXPECT_EQ (space.getObject (value->getUniqueIdentifier()), value);
    EXPECT_EQ (space.getObject (key->getUniqueIdentifier()), key);
    const auto valueIdentifier = value->getUniqueIdentifier();
    album->tracksByMood.remove ("calm");
    EXPECT_FALSE (space.hasObject (valueIdentifier));
}
