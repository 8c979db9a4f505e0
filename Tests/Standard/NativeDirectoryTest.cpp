#include "NativeFileTestSupport.h"
#include <Tov/Core/Class.h>
#include <Tov/Standard/NativeDirectory.h>

using namespace tov;
using namespace tov::test;

namespace
{
using Events = std::vector<juce::String>;

class NativeDirectoryTest : public NativeFileFixture {};
} // namespace

TEST_F (NativeDirectoryTest, IsANativeFile)
{
    EXPECT_TRUE (Class::inheritsFrom (&NativeDirectory::staticClass, &NativeFile::staticClass));
    const NativeDirectory directory (folder);
    EXPECT_EQ (directory.getFullPathName(), folder.getFullPathName());
    EXPECT_EQ (directory.makeState()->toShortString(), "\"" + folder.getFullPathName() + "\"");
}

TEST_F (NativeDirectoryTest, EnsureDirectoryIsCreatedMakesTheMissingParents)
{
    const auto directory = folder.getChildFile ("a/b/c");
    EXPECT_TRUE (NativeDirectory::ensureDirectoryIsCreated (directory));
    EXPECT_TRUE (directory.isDirectory());
    EXPECT_TRUE (NativeDirectory::ensureDirectoryIsCreated (directory));
    EXPECT_TRUE (NativeDirectory::ensureDirectoryIsCreated (juce::File ("/")));
}

TEST_F (NativeDirectoryTest, EnsureDirectoryIsCreatedFailsWhereAFileIs)
{
    const auto file = makeFile ("taken");
    EXPECT_FALSE (NativeDirectory::ensureDirectoryIsCreated (file));
    EXPECT_FALSE (NativeDirectory::ensureDirectoryIsCreated (file.getChildFile ("below")));
    EXPECT_TRUE (file.existsAsFile());
}

TEST_F (NativeDirectoryTest, DeleteDirectoryDeletesEverythingInIt)
{
    makeFile ("tree/one.txt");
    makeFile ("tree/sub/two.txt");
    const auto directory = folder.getChildFile ("tree");
    EXPECT_TRUE (NativeDirectory::deleteDirectory (context, directory));
    EXPECT_FALSE (directory.exists());
    EXPECT_EQ (events, (Events { "enter Delete directory " + directory.getFullPathName(), "leave" }));
}

TEST_F (NativeDirectoryTest, DeleteDirectoryOfAMissingDirectoryFails)
{
    const auto directory = folder.getChildFile ("missing");
    EXPECT_FALSE (NativeDirectory::deleteDirectory (context, directory));
    EXPECT_EQ (events, (Events { "enter Delete directory " + directory.getFullPathName(), "error Directory does not exists", "leave" }));
}

TEST_F (NativeDirectoryTest, DeleteDirectoryOnAFileFailsAndLeavesIt)
{
    const auto file = makeFile ("plain.txt");
    EXPECT_FALSE (NativeDirectory::deleteDirectory (context, file));
    EXPECT_TRUE (file.existsAsFile());
    EXPECT_EQ (events, (Events { "enter Delete directory " + file.getFullPathName(), "error plain.txt is not a directory", "leave" }));
}

// Nobody may delete the entries of /proc, not even root.
TEST_F (NativeDirectoryTest, DeleteDirectoryThatCannotBeDeletedFails)
{
    const juce::File directory ("/proc/self/fdinfo");
    ASSERT_TRUE (directory.isDirectory());
    EXPECT_FALSE (NativeDirectory::deleteDirectory (context, directory));
    EXPECT_EQ (events, (Events { "enter Delete directory /proc/self/fdinfo", "error Could not delete directory", "leave" }));
}

TEST_F (NativeDirectoryTest, OnlyAnExistingDirectoryIsWritable)
{
    EXPECT_TRUE (NativeDirectory::isDirectoryWritable (folder));
    EXPECT_FALSE (NativeDirectory::isDirectoryWritable (folder.getChildFile ("missing")));
    EXPECT_FALSE (NativeDirectory::isDirectoryWritable (makeFile ("plain.txt")));
}
