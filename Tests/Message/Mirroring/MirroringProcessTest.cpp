#include "Support/FreePort.h"
#include "Support/ScratchDirectory.h"
#include "Support/TestProcess.h"
#include <gtest/gtest.h>
#include <signal.h>

using namespace tov;
using namespace tov::test;

// The mirroring example in two real processes: an editor that edits its scene and a viewer
// that mirrors it over loopback. Each writes the saved text of its scene to a file at the end.
namespace
{
class MirroringProcessTest : public ::testing::Test
{
protected:
    const int port = findFreePort();
    ScratchDirectory home;
    juce::File editorText = home.getChildFile ("editor.txt");
    juce::File viewerText = home.getChildFile ("viewer.txt");

    std::unique_ptr<TestProcess> start (const juce::StringArray& arguments)
    {
        juce::StringArray all { juce::String (TOV_MIRRORING_EXAMPLE_PATH) };
        all.addArray (arguments);
        return std::make_unique<TestProcess> (all, std::map<juce::String, juce::String> { { "HOME", home.getFullPathName() } });
    }

    std::unique_ptr<TestProcess> startEditor (int numEdits)
    {
        auto editor = start ({ "editor", juce::String (port), juce::String (numEdits), editorText.getFullPathName() });
        EXPECT_TRUE (editor->waitForLine ("editor: listening on 127.0.0.1:" + juce::String (port), 30000)) << editor->getOutput();
        return editor;
    }

    std::unique_ptr<TestProcess> startViewer() { return start ({ "viewer", juce::String (port), viewerText.getFullPathName() }); }

    /** Both texts exist, hold a scene with clips, and are the same. */
    void expectSameScenes()
    {
        const auto editorScene = editorText.loadFileAsString();
        EXPECT_TRUE (editorScene.startsWith ("'Scene @1")) << editorScene;
        EXPECT_TRUE (editorScene.contains ("=> @")) << editorScene;
        EXPECT_EQ (viewerText.loadFileAsString(), editorScene);
    }
};
} // namespace

TEST_F (MirroringProcessTest, TheViewersCopySavesToTheSameTextAsTheEditorsSceneOnceTheEditsStop)
{
    auto editor = startEditor (60);
    auto viewer = startViewer();
    EXPECT_EQ (viewer->waitForExit (60000), 0) << viewer->getOutput();
    EXPECT_EQ (editor->waitForExit (60000), 0) << editor->getOutput();
    EXPECT_NE (viewer->getOutput().find ("viewer: asked for a mirror of \"Scene\""), std::string::npos) << viewer->getOutput();
    EXPECT_NE (editor->getOutput().find ("editor: 60 edits made"), std::string::npos) << editor->getOutput();
    expectSameScenes();
}

TEST_F (MirroringProcessTest, AKilledViewerStartedAgainAsksAgainAndConverges)
{
    auto editor = startEditor (400);
    auto first = startViewer();
    ASSERT_TRUE (first->waitForOutput ([] (const std::string& output) { return output.find ("\"Take 2\"") != std::string::npos; }, 60000))
        << first->getOutput();
    ASSERT_EQ (::kill (first->getProcessId(), SIGKILL), 0);
    EXPECT_EQ (first->waitForExit (30000), -1);
    EXPECT_FALSE (viewerText.exists());

    auto second = startViewer();
    EXPECT_EQ (second->waitForExit (60000), 0) << second->getOutput();
    EXPECT_EQ (editor->waitForExit (60000), 0) << editor->getOutput();
    expectSameScenes();
}

TEST_F (MirroringProcessTest, AViewerFindsTheEditorByItsAlifePacketsAndConverges)
{
    const int discoveryPort = findFreePort();
    auto editor = start ({ "editor", juce::String (port), "60", editorText.getFullPathName(), "--announce", juce::String (discoveryPort) });
    ASSERT_TRUE (editor->waitForLine ("editor: announcing itself to port " + juce::String (discoveryPort), 30000)) << editor->getOutput();
    auto viewer = start ({ "viewer", "--discover", juce::String (discoveryPort), viewerText.getFullPathName() });
    EXPECT_EQ (viewer->waitForExit (60000), 0) << viewer->getOutput();
    EXPECT_EQ (editor->waitForExit (60000), 0) << editor->getOutput();
    EXPECT_NE (viewer->getOutput().find ("viewer: looking for an editor on port " + std::to_string (discoveryPort) + "\n"), std::string::npos)
        << viewer->getOutput();
    EXPECT_NE (viewer->getOutput().find ("viewer: found editor MirroringExample-main-1.0.0.example at 127.0.0.1, port "
                                         + std::to_string (port) + "\n"), std::string::npos) << viewer->getOutput();
    expectSameScenes();
}
