#include <Tov/Standard/SoftwareVersionFinder.h>
#include <gtest/gtest.h>

using namespace tov;

namespace
{
class SoftwareVersionFinderTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        root = juce::File::createTempFile ("finder");
        ASSERT_TRUE (root.createDirectory());
    }
    void TearDown() override   { root.deleteRecursively(); }

    juce::File add (const juce::String& path)
    {
        auto file = root.getChildFile (path);
        EXPECT_TRUE (file.getParentDirectory().createDirectory());
        EXPECT_TRUE (file.replaceWithText ("build"));
        return file;
    }

    juce::File root;
};
} // namespace

TEST_F (SoftwareVersionFinderTest, FindsTheNewestBuildOfADirectory)
{
    add ("tool-main-1.2.3.abc-linux64");
    const auto newest = add ("tool-main-1.10.0.def-linux64");
    add ("tool-feature-1.9.9.fff-linux64");
    add ("readme.txt");

    SoftwareVersionFinder finder;
    finder.addDirectory (root);
    SoftwareVersion version;
    juce::URL where;
    ASSERT_TRUE (finder.findLastVersion (version, where, SoftwareVersion::getWildcardString(), 0, nullptr));
    EXPECT_EQ (version.toString(), "tool-main-1.10.0.def-linux64");
    EXPECT_EQ (where.getLocalFile(), newest);
}

TEST_F (SoftwareVersionFinderTest, TheMinimumDropsOlderBuilds)
{
    add ("tool-main-1.2.3.abc");
    add ("tool-main-1.4.0.abc");
    std::vector<SoftwareVersionFinder::Entry> entries;
    const SoftwareVersion minimum ({}, {}, 1, 3, 0, {});
    EXPECT_TRUE (SoftwareVersionFinder::getDataBaseFromUrl (entries, juce::URL (root), SoftwareVersion::getWildcardString(), 0, &minimum));
    ASSERT_EQ (entries.size(), 1u);
    EXPECT_EQ (entries[0].second.toString(), "tool-main-1.4.0.abc");

    const SoftwareVersion tooHigh ({}, {}, 9, 0, 0, {});
    SoftwareVersionFinder finder;
    finder.addDirectory (root);
    SoftwareVersion version;
    juce::URL where;
    EXPECT_FALSE (finder.findLastVersion (version, where, SoftwareVersion::getWildcardString(), 0, &tooHigh));
}

TEST_F (SoftwareVersionFinderTest, ChildDirectoriesAreFollowedDownToTheDepth)
{
    add ("tool-main-1.0.0.a");
    add ("one/tool-main-2.0.0.b");
    add ("one/two/tool-main-3.0.0.c");
    const auto wildcard = SoftwareVersion::getWildcardString();

    for (int depth = 0; depth < 3; ++depth)
    {
        std::vector<SoftwareVersionFinder::Entry> entries;
        SoftwareVersionFinder::getDataBaseFromUrl (entries, juce::URL (root), wildcard, depth, nullptr);
        EXPECT_EQ (entries.size(), (size_t) depth + 1) << depth;
    }
}

TEST_F (SoftwareVersionFinderTest, PlacesAreSearchedTogetherAndTheWildcardRespectsCase)
{
    add ("a/tool-main-1.0.0.x");
    add ("b/tool-main-2.0.0.y");
    add ("b/TOOL-main-3.0.0.z");
    SoftwareVersionFinder finder;
    finder.addDirectory (root.getChildFile ("a"));
    finder.addUrl (juce::URL (root.getChildFile ("b")));
    EXPECT_EQ (finder.getUrls().size(), 2u);

    SoftwareVersion version;
    juce::URL where;
    ASSERT_TRUE (finder.findLastVersion (version, where, "tool-*", 0, nullptr));
    EXPECT_EQ (version.toString(), "tool-main-2.0.0.y");

    SoftwareVersionFinder empty;
    EXPECT_FALSE (empty.findLastVersion (version, where, "tool-*", 0, nullptr));
    EXPECT_EQ (version.toString(), "tool-main-2.0.0.y") << "a failed search leaves the outputs";
}
