// The studio example's scripted session, run as the README's main command runs it: an editor
// process that starts a viewer process, in a scratch home folder.
#include "Support/FreePort.h"
#include "Support/ScratchDirectory.h"
#include "Support/TestProcess.h"
#include "Support/Waiting.h"
#include <gtest/gtest.h>
#include <regex>
#include <sstream>

using namespace tov::test;

namespace
{
class StudioExampleTest : public ::testing::Test
{
protected:
    ScratchDirectory home;
    juce::File programData = home.getChildFile (".config/StudioExample");

    /** Runs a session to its end: its exit code, and its own lines (debug output left out) in
        lines, with what changes from run to run replaced by names in angle brackets. Debug
        output shares the pipe and is written in pieces (the text, then its end of line), so a
        line of the session's own may follow such a piece on the same line. */
    int runSession (std::vector<std::string>& lines, const juce::StringArray& options = {})
    {
        juce::StringArray arguments { TOV_STUDIO_EXAMPLE_PATH, "session", juce::String (findFreePort()) };
        arguments.addArray (options);
        TestProcess session (arguments, { { "HOME", home.getFullPathName() } });
        const int exitCode = session.waitForExit (120000);
        std::istringstream output (session.getOutput());
        const std::regex ownLine ("(studio|editor|viewer): ");
        std::smatch found;
        for (std::string line; std::getline (output, line);)
            if (std::regex_search (line, found, ownLine))
                lines.push_back (normalise (line.substr ((size_t) found.position (0))));
        return exitCode;
    }

    std::string normalise (std::string line) const
    {
        line = std::regex_replace (line, std::regex (home.getFullPathName().toStdString()), "<home>");
        line = std::regex_replace (line, std::regex ("127\\.0\\.0\\.1:[0-9]+"), "127.0.0.1:<port>");
        line = std::regex_replace (line, std::regex ("announced to port [0-9]+"), "announced to port <port>");
        line = std::regex_replace (line, std::regex ("text hash [0-9a-f]+"), "text hash <hash>");
        line = std::regex_replace (line, std::regex (" +\\(Remaining time: [^)]*\\)"), "");
        return std::regex_replace (line, std::regex ("Program [0-9_-]+\\.txt"), "Program <start time>.txt");
    }
};
} // namespace

TEST_F (StudioExampleTest, TheSessionEditsUndoesMirrorsCallsRendersSavesAndReloads)
{
    std::vector<std::string> lines;
    ASSERT_EQ (runSession (lines), 0);
    const std::vector<std::string> expected {
        "studio: run 1, configured in <home>/.config/StudioExample/configurations, logging to <home>/.config/StudioExample/logs/StudioExample main Program <start time>.txt",
        "editor: created the scene \"Opening\": Background 100 %, Logo 100 %, Lower third 100 %",
        "editor: edited \"Opening\": Background 100 %, Logo 50 %, Lower third 100 % (mask Logo)",
        "editor: undid both: \"Opening\": Background 100 %, Logo 100 %, Lower third 100 %",
        "editor: redid \"Fade the logo\": \"Opening\": Background 100 %, Logo 50 %, Lower third 100 %",
        "editor: serving the scene on 127.0.0.1:<port>, announced to port <port>; starting a viewer",
        "viewer: found the editor (StudioExample-main-1.0.0.example) at 127.0.0.1:<port>",
        "viewer: mirrors \"Opening\": Background 100 %, Logo 50 %, Lower third 100 %",
        "viewer: the editor's getSoftwareVersion answered StudioExample-main-1.0.0.example",
        "viewer: the editor's addLayer (\"Titles\") answered \"Titles\"",
        "viewer: mirrors \"Opening\": Background 100 %, Logo 50 %, Lower third 100 %, Titles 100 %",
        "editor: Render preview 25 %: Frame 25 of 100",
        "editor: Render preview 50 %: Frame 50 of 100",
        "editor: Render preview 75 %: Frame 75 of 100",
        "editor: Render preview 100 %: Frame 100 of 100",
        "editor: the preview's mean light is 3.50",
        "editor: saved the scene to <home>/.config/StudioExample/scenes/Opening.txt and loaded it again: the same scene",
        "editor: the viewer's copy is the editor's scene (text hash <hash>); 6 envelops of changes went to the renderer, 3 entries in the history",
    };
    EXPECT_EQ (lines, expected);
}

TEST_F (StudioExampleTest, TheSessionLeavesItsConfigurationLogsAndSceneAndCountsItsRuns)
{
    std::vector<std::string> first, second;
    ASSERT_EQ (runSession (first), 0);
    // Log files are named by their start time in seconds, and the first run's last process (the
    // viewer) may have started in the second its run ended: the second run starts in a later one.
    const auto firstEnd = juce::Time::currentTimeMillis() / 1000;
    ASSERT_TRUE (waitUntil ([&] { return juce::Time::currentTimeMillis() / 1000 != firstEnd; }, 5000));
    ASSERT_EQ (runSession (second), 0);
    ASSERT_FALSE (second.empty());
    EXPECT_EQ (second[0].substr (0, 14), "studio: run 2,");

    const auto configuration = programData.getChildFile ("configurations/Studio_1_0_0.configuration").loadFileAsString();
    EXPECT_TRUE (configuration.contains ("numRuns = 2")) << configuration;
    const auto scene = programData.getChildFile ("scenes/Opening.txt").loadFileAsString();
    EXPECT_TRUE (scene.startsWith ("'Scene")) << scene;
    EXPECT_TRUE (scene.contains ("name = \"Titles\"")) << scene;

    // Per run: the program's log and the editor service's; the viewer logs into a folder of its own.
    const auto logs = programData.getChildFile ("logs").findChildFiles (juce::File::findFiles, false, "*.txt");
    int numProgramLogs = 0, numEditorLogs = 0;
    for (const auto& log : logs)
    {
        numProgramLogs += log.getFileName().startsWith ("StudioExample main Program ") ? 1 : 0;
        numEditorLogs += log.getFileName().startsWith ("StudioExample main Editor ") ? 1 : 0;
    }
    EXPECT_EQ (numProgramLogs, 2);
    EXPECT_EQ (numEditorLogs, 2);
    EXPECT_EQ (home.getChildFile (".config/StudioViewer/logs").getNumberOfChildFiles (juce::File::findFiles, "StudioViewer main Program *.txt"), 2);
}

TEST_F (StudioExampleTest, ATracedSessionLeavesATraceOfItsStepsThatTovTraceReads)
{
    std::vector<std::string> lines;
    ASSERT_EQ (runSession (lines, { "--profiler=Unreal", "--profilerMode=file" }), 0);
    const auto traces = programData.getChildFile ("traces").findChildFiles (juce::File::findFiles, false, "*.utrace");
    ASSERT_EQ (traces.size(), 1);
    EXPECT_TRUE (traces[0].getFileName().startsWith ("StudioExample main Trace ")) << traces[0].getFileName();

    TestProcess summary ({ TOV_TRACE_TOOL_PATH, "summary", traces[0].getFullPathName() }, {});
    ASSERT_EQ (summary.waitForExit (60000), 0) << summary.getOutput();
    for (const auto* expected : { "  \"EditAndUndo\" count=1 ", "  \"RenderFrame\" count=100 ", "  \"SaveAndReload\" count=1 " })
        EXPECT_NE (summary.getOutput().find (expected), std::string::npos) << expected << "\n" << summary.getOutput();
}
