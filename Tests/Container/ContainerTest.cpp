#include "ContainerTestSupport.h"
#include <Tov/Core/TypedVariablePath.h>

using namespace tov;
using namespace tov::test;

namespace
{
class ContainerDocumentTest : public ContainerTest
{
protected:
    juce::TemporaryFile file { ".txt" };

    /** An album with lists, maps and options of tracks, as the root of a space named "document". */
    Album* buildAlbum()
    {
        Album* album = make<Album>();
        makeSpace ("document", album);
        album->name.set ("Live", false);
        for (int i = 0; i < 5; ++i)
            album->tracks.append (makeTrack ("Track " + juce::String (i + 1), i));
        auto* text = make<TextTrack>();
        text->name.set ("Liner notes", false);
        text->text.set ("Recorded in one take", false);
        album->tracks.append (text);
        album->tags.set ({ "live", "2024" });
        album->tracksByMood.insert ("calm", makeTrack ("Lullaby", -3));
        album->tracksByMood.insert ("wild", make<TextTrack>());
        for (int i : { 4, 1, 2 })
            album->ratings.insert (new WeakPointer<Track> (album->tracks[(size_t) i]), makeInteger (i * 10));
        album->limit.setEnabled (true);
        album->limit.getValue()->set (60);
        album->bonus.getValue()->name.set ("Hidden track");
        static_cast<Track*> (album->settings.getByValueClass (&Track::staticClass))->gain.set (7);
        album->fog.setEnabled (true);
        album->fog.density.set (3);
        return album;
    }

    /** Each rating as the identifier of its track and its value. */
    static std::vector<std::pair<UniqueIdentifier, int64_t>> ratingsOf (const Album& album)
    {
        std::vector<std::pair<UniqueIdentifier, int64_t>> result;
        for (auto entry : album.ratings)
        {
            auto* track = entry.getKey()->get();
            result.emplace_back (track != nullptr ? track->getUniqueIdentifier() : UniqueIdentifier(), entry.getValue()->get());
        }
        return result;
    }
};
} // namespace

TEST_F (ContainerTest, TheContainerLibraryDeclaresItsClassesAndMakesGeneratedOnesWhenFirstNamed)
{
    auto* library = Library::getRootLibrary()->getLibraryByName ("Tov")->getLibraryByName ("Container");
    ASSERT_NE (library, nullptr);
    for (auto* name : { "Container", "ObjectOwnedVector", "StringVector", "ObjectMap", "NamedObjectMap", "ObjectOption", "Optional" })
        EXPECT_NE (getClass (name), nullptr) << name;
    EXPECT_EQ (getClass ("OwnedVector(String)")->getName(), "OwnedVector(String)");
    EXPECT_EQ (getClass ("OwnedVector(String)"), ownedVectorClass (&String::staticClass));
    EXPECT_EQ (getClass ("Map({key=String,value=Object})"), mapClass (&String::staticClass, &Object::staticClass));
    EXPECT_EQ (getClass ("Option(Track)"), optionClass (&Track::staticClass));
    EXPECT_EQ (getClass ("Option(Track)")->getClassAttribute ("value"), &Track::staticClass);
    EXPECT_EQ (getClass ("Map({key=String,value=Integer})")->getClassAttribute ("key"), &String::staticClass);
    EXPECT_EQ (getClass ("OwnedVector(NoSuchClass)"), nullptr);
}

TEST_F (ContainerTest, TheMirroringExclusionListOfASpaceIsAReflectedMap)
{
    ObjectSpace space;
    EXPECT_EQ (space.getMirroringExclusionList().getClass()->getName(), "Map({key = ObjectWeakPointer, value = Integer})");
    EXPECT_EQ (space.getMirroringExclusionList().getParent(), &space);
    Track track;
    space.addToMirroringExclusionList (track, -1);
    EXPECT_EQ (space.getMirroringExclusionList().toString().startsWith ("{"), true);
    EXPECT_FALSE (space.getMirroringExclusionList().isObjectInitialized());
}

TEST_F (ContainerTest, AVectorElementOfAnExcludedObjectIsNotExcluded)
{
    Owned<Album> album (make<Album>());
    album->tracks.append (makeTrack ("a"));
    ObjectSpace space;
    space.addToMirroringExclusionList (*album, -1);
    EXPECT_TRUE (space.isInMirroringExclusionList (album->tracks));
    EXPECT_FALSE (space.isInMirroringExclusionList (*album->tracks[0]));
    EXPECT_FALSE (space.isInMirroringExclusionList (album->tracks[0]->gain));
}

TEST_F (ContainerTest, ATypedPathStepsThroughAVectorOfOneElement)
{
    Owned<Album> album (make<Album>());
    album->tracks.append (makeTrack ("only"));
    TypedVariablePath path;
    ASSERT_TRUE (path.buildPath (album.get(), &album->tracks[0]->gain));
    ASSERT_EQ (path.getPath().size(), 3u);
    EXPECT_EQ (path.getPath()[0].name, "tracks");
    EXPECT_EQ (path.getPath()[1].name, "");
    EXPECT_EQ (path.getPath()[1].objectClass, &Track::staticClass);
    EXPECT_EQ (path.getPath()[2].name, "gain");

    Owned<Album> other (make<Album>());
    EXPECT_EQ (path.findObjectFromPath (other.get()), nullptr);
    other->tracks.append (makeTrack ("first"));
    other->tracks.append (makeTrack ("second"));
    EXPECT_EQ (path.findObjectFromPath (other.get()), &other->tracks[0]->gain);
}

TEST_F (ContainerTest, ATypedPathDoesNotStepThroughAVectorOfSeveralElements)
{
    Owned<Album> album (make<Album>());
    album->tracks.append (makeTrack ("a"));
    album->tracks.append (makeTrack ("b"));
    TypedVariablePath path;
    EXPECT_FALSE (path.buildPath (album.get(), album->tracks[1]));
}

TEST_F (ContainerDocumentTest, ADocumentOfListsMapsAndOptionsLoadsWholeIntoAnotherSpace)
{
    Album* original = buildAlbum();
    const auto text = original->makeState()->saveToString();
    const auto hash = original->computeHash();
    const auto ratings = ratingsOf (*original);
    ASSERT_EQ (ratings.size(), 3u);
    EXPECT_TRUE (text.contains ("=> 'TextTrack @"));

    ToStringExecutionContext saving;
    ASSERT_TRUE (original->saveToFile (saving, file.getFile()));
    spaces.remove ("document");

    juce::String messages;
    ToStringExecutionContext loading (messages);
    Album* loaded = make<Album>();
    auto& space = makeSpace ("document", loaded);
    ASSERT_TRUE (loaded->loadFromFile (loading, file.getFile()));
    EXPECT_EQ (messages, "");

    EXPECT_EQ (loaded->makeState()->saveToString(), text);
    EXPECT_EQ (loaded->computeHash(), hash);
    EXPECT_EQ (ratingsOf (*loaded), ratings);
    ASSERT_EQ (loaded->tracks.size(), 6u);
    EXPECT_EQ (loaded->tracks[5]->getClass(), &TextTrack::staticClass);
    EXPECT_EQ (space.getObject (loaded->tracks[2]->getUniqueIdentifier()), loaded->tracks[2]);
    EXPECT_EQ (loaded->tracksByMood.find ("calm")->gain.get(), -3);
    EXPECT_EQ (loaded->limit.getValue()->get(), 60);
    EXPECT_EQ (loaded->settings.find ("track")->getSpace(), &space);
    EXPECT_TRUE (loaded->fog.isEnabled());
}

TEST_F (ContainerDocumentTest, LoadingTheSavedStateAgainKeepsEveryElement)
{
    Album* album = buildAlbum();
    auto state = album->makeState();
    const auto before = album->tracks.getVector();
    Track* calm = album->tracksByMood.find ("calm");

    ToStringExecutionContext loading;
    ASSERT_TRUE (album->loadFromState (loading, state));
    EXPECT_TRUE (album->tracks.equalsVector (before));
    EXPECT_EQ (album->tracksByMood.find ("calm"), calm);
    for (auto* track : album->tracks)
    {
        EXPECT_EQ (track->getReferenceCount(), 1u);
        EXPECT_EQ (track->getParent(), &album->tracks);
    }
}

TEST_F (ContainerDocumentTest, AShallowStateNamesElementsByIdentifierAndLoadsThemShared)
{
    Album* album = buildAlbum();
    auto shallow = StateObjectExporter::make (album->tracks, exportOwnedPointersAsIdentifiers, false);
    EXPECT_EQ (shallow->getNumVariables(), 6u);
    EXPECT_EQ (shallow->getVariableState (0)->getType(), StateType::weakPointerType);

    auto* copy = make<Playlist>();
    album->settings.insert ("playlist", copy);
    ToStringExecutionContext loading;
    ASSERT_TRUE (copy->items.loadFromState (loading, shallow));
    ASSERT_EQ (copy->items.size(), 6u);
    EXPECT_EQ (copy->items[3], album->tracks[3]);
    EXPECT_EQ (album->tracks[3]->getReferenceCount(), 2u);
}

TEST_F (ContainerDocumentTest, AMapLoadsItsShallowStateBackWithTheSameKeysAndValues)
{
    Album* album = buildAlbum();
    auto shallow = StateObjectExporter::make (album->tracksByMood, exportOwnedPointersAsIdentifiers, false);
    EXPECT_EQ (shallow->getVariableState (0)->getVariableStateByName ("value")->getType(), StateType::weakPointerType);
    Track* calm = album->tracksByMood.find ("calm");
    Object* calmKey = album->tracksByMood.begin().getKey();

    ChangeCounter changes (album->tracksByMood);
    ToStringExecutionContext loading;
    ASSERT_TRUE (album->tracksByMood.loadFromState (loading, shallow));
    EXPECT_EQ (album->tracksByMood.find ("calm"), calm);
    EXPECT_EQ (album->tracksByMood.begin().getKey(), calmKey);
    EXPECT_EQ (calm->getReferenceCount(), 1u);
    EXPECT_EQ (calm->getParent(), &album->tracksByMood);
    EXPECT_EQ (album->tracksByMood.size(), 2u);
    EXPECT_EQ (changes.count, 0);
}
