#include "NativeFileTestSupport.h"
#include <Tov/Standard/NativeFile.h>
#include <set>

using namespace tov;
using namespace tov::test;

namespace
{

using Events = std::vector<juce::String>;

/** Takes the names in the set. */
class TakenNames : public NativeFile::SubFileExistsFunction
{
public:
    explicit TakenNames (std::set<juce::String> names) : names (std::move (names)) {}
    bool exists (const juce::String& fileName) const override   { return names.count (fileName) != 0; }

private:
    std::set<juce::String> names;
};

class NativeFileTest : public NativeFileFixture {};

} // namespace

TEST_F (NativeFileTest, ThePathAccessorsForwardToTheFile)
{
    const auto file = makeFile ("notes.backup.txt", "twelve bytes");
    const NativeFile native (file);
    EXPECT_EQ (native.get(), file);
    EXPECT_EQ (native.getFileName(), "notes.backup.txt");
    EXPECT_EQ (native.getFileNameWithoutExtension(), "notes.backup");
    EXPECT_EQ (native.getExtension(), ".txt");
    EXPECT_EQ (native.getFullPathName(), file.getFullPathName());
    EXPECT_EQ (native.toString(), file.getFullPathName());
    EXPECT_EQ (native.getSize(), 12);
    EXPECT_TRUE (native.exists());
    EXPECT_EQ (native.getLastModificationTime(), file.getLastModificationTime());
    EXPECT_EQ (native.getFileContentAsString(), "twelve bytes");
}

TEST_F (NativeFileTest, AMissingFileHasNoContent)
{
    const NativeFile native (folder.getChildFile ("missing.txt"));
    EXPECT_FALSE (native.exists());
    EXPECT_EQ (native.getSize(), 0);
    EXPECT_EQ (native.getFileContentAsString(), "");
}

TEST_F (NativeFileTest, SetNotifiesOnlyWhenAskedTo)
{
    NativeFile native;
    native.set (folder, false);
    EXPECT_EQ (native.getNumChanges(), 0u);
    native.set (folder.getChildFile ("other"), true);
    EXPECT_EQ (native.getNumChanges(), 1u);
    EXPECT_EQ (native.get(), folder.getChildFile ("other"));
}

TEST_F (NativeFileTest, TheExtensionOfAPathIsThatOfItsLastName)
{
    EXPECT_EQ (NativeFile::getFileNameExtension ("/data/archive.tar.gz"), ".gz");
    EXPECT_EQ (NativeFile::getFileNameExtension ("/data.d/readme"), "");
    EXPECT_EQ (NativeFile::getFileNameExtension ("image.PNG"), ".PNG");
}

//==============================================================================
TEST_F (NativeFileTest, CopyFileCreatesTheMissingParentsOfTheTarget)
{
    const auto source = makeFile ("source.txt", "copied");
    const auto target = folder.getChildFile ("a/b/c/target.txt");
    EXPECT_TRUE (NativeFile::copyFile (context, source, target));
    EXPECT_EQ (target.loadFileAsString(), "copied");
    EXPECT_EQ (source.loadFileAsString(), "copied");
    EXPECT_EQ (events, (Events { "enter Copy " + source.getFullPathName() + " to " + target.getFullPathName(), "leave" }));
}

TEST_F (NativeFileTest, CopyFileCopiesADirectoryWithEverythingInIt)
{
    makeFile ("tree/one.txt", "1");
    makeFile ("tree/sub/two.txt", "2");
    const auto target = folder.getChildFile ("copy");
    EXPECT_TRUE (NativeFile::copyFile (context, folder.getChildFile ("tree"), target));
    EXPECT_EQ (target.getChildFile ("one.txt").loadFileAsString(), "1");
    EXPECT_EQ (target.getChildFile ("sub/two.txt").loadFileAsString(), "2");
}

TEST_F (NativeFileTest, CopyFileOfAMissingSourceFails)
{
    const auto source = folder.getChildFile ("missing.txt"), target = folder.getChildFile ("target.txt");
    EXPECT_FALSE (NativeFile::copyFile (context, source, target));
    EXPECT_FALSE (target.exists());
    EXPECT_EQ (events, (Events { "enter Copy " + source.getFullPathName() + " to " + target.getFullPathName(),
                                 "error Source file does not exists", "leave" }));
}

TEST_F (NativeFileTest, CopyFileBelowAFileFails)
{
    const auto source = makeFile ("source.txt");
    const auto blocking = makeFile ("blocking");
    EXPECT_FALSE (NativeFile::copyFile (context, source, blocking.getChildFile ("target.txt")));
    EXPECT_EQ (events[1], "error Could not copy file");
    EXPECT_EQ (events.back(), "leave");
}

TEST_F (NativeFileTest, CopyFileOfADirectoryOntoAFileFails)
{
    makeFile ("tree/one.txt");
    const auto blocking = makeFile ("blocking");
    EXPECT_FALSE (NativeFile::copyFile (context, folder.getChildFile ("tree"), blocking));
    EXPECT_EQ (events[1], "error Could not copy directory");
    EXPECT_EQ (blocking.loadFileAsString(), "content");
}

//==============================================================================
TEST_F (NativeFileTest, DeleteFileDeletesAFile)
{
    const auto file = makeFile ("doomed.txt");
    EXPECT_TRUE (NativeFile::deleteFile (context, file));
    EXPECT_FALSE (file.exists());
    EXPECT_EQ (events, (Events { "enter Delete file " + file.getFullPathName(), "leave" }));
}

TEST_F (NativeFileTest, DeleteFileOnADirectoryFailsAndLeavesIt)
{
    const auto directory = folder.getChildFile ("kept");
    makeFile ("kept/inside.txt");
    EXPECT_FALSE (NativeFile::deleteFile (context, directory));
    EXPECT_TRUE (directory.isDirectory());
    EXPECT_TRUE (directory.getChildFile ("inside.txt").existsAsFile());
    EXPECT_EQ (events, (Events { "enter Delete file " + directory.getFullPathName(), "error kept is a directory", "leave" }));
}

TEST_F (NativeFileTest, DeleteFileOfAMissingFileFails)
{
    EXPECT_FALSE (NativeFile::deleteFile (context, folder.getChildFile ("missing.txt")));
    EXPECT_EQ (events[1], "error Files does not exists");
}

// Nobody may delete the files of /proc, not even root.
TEST_F (NativeFileTest, DeleteFileThatCannotBeDeletedFails)
{
    const juce::File file ("/proc/self/status");
    ASSERT_TRUE (file.existsAsFile());
    EXPECT_FALSE (NativeFile::deleteFile (context, file));
    EXPECT_EQ (events, (Events { "enter Delete file /proc/self/status", "error Could not delete file", "leave" }));
}

//==============================================================================
TEST_F (NativeFileTest, AnExistingFileIsOverwritableAndStaysAsItWas)
{
    const auto file = makeFile ("kept.txt", "unchanged");
    EXPECT_TRUE (NativeFile::ensureExistingFileIsOverwritable (file));
    EXPECT_EQ (file.loadFileAsString(), "unchanged");
}

TEST_F (NativeFileTest, AMissingFileOrADirectoryIsNotOverwritable)
{
    EXPECT_FALSE (NativeFile::ensureExistingFileIsOverwritable (folder.getChildFile ("missing.txt")));
    EXPECT_FALSE (folder.getChildFile ("missing.txt").exists());
    EXPECT_FALSE (NativeFile::ensureExistingFileIsOverwritable (folder));
}

//==============================================================================
TEST_F (NativeFileTest, AFreeNameIsTakenAsItIs)
{
    EXPECT_EQ (NativeFile::makeUniqueFileName ("image", "png", TakenNames ({})), "image.png");
    EXPECT_EQ (NativeFile::makeUniqueFileName ("image.png", "png", TakenNames ({})), "image.png");
    EXPECT_EQ (NativeFile::makeUniqueFileName ("notes", "", TakenNames ({})), "notes");
}

TEST_F (NativeFileTest, ATakenNameIsFollowedByANumberFrom2)
{
    EXPECT_EQ (NativeFile::makeUniqueFileName ("image", "png", TakenNames ({ "image.png" })), "image 2.png");
    EXPECT_EQ (NativeFile::makeUniqueFileName ("image", "png", TakenNames ({ "image.png", "image 2.png", "image 3.png" })), "image 4.png");
    EXPECT_EQ (NativeFile::makeUniqueFileName ("notes", "", TakenNames ({ "notes" })), "notes 2");
}

TEST_F (NativeFileTest, ANameThatEndsInDigitsCountsThemUp)
{
    EXPECT_EQ (NativeFile::makeUniqueFileName ("shot9", ".png", TakenNames ({ "shot9.png" })), "shot10.png");
    EXPECT_EQ (NativeFile::makeUniqueFileName ("shot9", ".png", TakenNames ({ "shot9.png", "shot10.png" })), "shot11.png");
    EXPECT_EQ (NativeFile::makeUniqueFileName ("take 007", "wav", TakenNames ({ "take 007.wav" })), "take 8.wav");
    EXPECT_EQ (NativeFile::makeUniqueFileName ("2024", "txt", TakenNames ({ "2024.txt" })), "2025.txt");
}

TEST_F (NativeFileTest, AnExtensionWithOrWithoutItsDotGivesTheSameName)
{
    const TakenNames taken ({ "image.png", "image 2.png", "shot9.png" });
    for (const auto* name : { "image", "image.png", "shot9", "shot9.png", "free" })
        EXPECT_EQ (NativeFile::makeUniqueFileName (name, ".png", taken), NativeFile::makeUniqueFileName (name, "png", taken)) << name;
    EXPECT_EQ (NativeFile::makeUniqueFileName ("image.png", ".png", taken), "image 3.png");
}

TEST_F (NativeFileTest, UniqueNamesInADirectoryAvoidItsFilesAndFolders)
{
    makeFile ("render.exr");
    folder.getChildFile ("render 2.exr").createDirectory();
    EXPECT_EQ (NativeFile::makeUniqueFileName (folder, "render", "exr"), "render 3.exr");
    EXPECT_EQ (NativeFile::makeUniqueFileName (folder, "other", "exr"), "other.exr");
}

//==============================================================================
TEST_F (NativeFileTest, VolumeFileIdentitiesAreNotAvailableHere)
{
    const auto file = makeFile ("identified.txt");
    EXPECT_EQ (NativeFile::getVolumeFileUuid (file), juce::Uuid::null());
    EXPECT_EQ (NativeFile::getByVolumeFileUuid (juce::File ("/"), juce::Uuid()), juce::File());
}

TEST_F (NativeFileTest, ProgramsAreInstalledBelowUsrAndOpt)
{
    EXPECT_TRUE (NativeFile::isChildOfGlobalApplicationsDirectory (juce::File ("/usr/bin/env")));
    EXPECT_TRUE (NativeFile::isChildOfGlobalApplicationsDirectory (juce::File ("/opt/Studio/studio")));
    EXPECT_FALSE (NativeFile::isChildOfGlobalApplicationsDirectory (juce::File ("/usr")));
    EXPECT_FALSE (NativeFile::isChildOfGlobalApplicationsDirectory (juce::File ("/usrlocal/bin")));
    EXPECT_FALSE (NativeFile::isChildOfGlobalApplicationsDirectory (folder));
}

TEST_F (NativeFileTest, TheStateFormIsTheFullPath)
{
    const NativeFile native (folder.getChildFile ("scene.txt"));
    EXPECT_EQ (native.makeState()->toShortString(), "\"" + folder.getChildFile ("scene.txt").getFullPathName() + "\"");
    NativeFile loaded;
    juce::String errors;
    ToStringExecutionContext reporting (errors);
    EXPECT_TRUE (loaded.loadFromState (reporting, native.makeState()));
    EXPECT_EQ (loaded.get(), native.get());
    EXPECT_EQ (errors, "");
}
