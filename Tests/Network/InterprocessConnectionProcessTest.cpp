#include "Support/FreePort.h"
#include "Support/ScratchDirectory.h"
#include "Support/TestProcess.h"
#include <gtest/gtest.h>
#include <regex>
#include <signal.h>

using namespace tov;
using namespace tov::test;

// A server and a client in two processes of ConnectionTestApplication: pings one way, pongs the
// other, the server killed and started again, and the client connecting again by itself.
namespace
{
class InterprocessConnectionProcessTest : public ::testing::Test
{
protected:
    const int port = findFreePort();
    const juce::String portText { port };
    ScratchDirectory home;
    const std::map<juce::String, juce::String> environment { { "HOME", home.getFullPathName() }, { "ProgramData", home.getFullPathName() } };

    std::unique_ptr<TestProcess> start (const juce::String& mode)
    {
        return std::make_unique<TestProcess> (juce::StringArray { TOV_CONNECTION_TEST_APPLICATION_PATH, mode, portText }, environment);
    }

    /** Finds the server's line for a client's connection, whatever the client's port. */
    std::function<bool (const std::string&)> connectedTo() const
    {
        const std::string server = "127\\.0\\.0\\.1:" + portText.toStdString();
        const std::regex line ("== NETWORK SERVER == Connected to " + server + "<-127\\.0\\.0\\.1:[0-9]+ \\(127\\.0\\.0\\.1\\)\n");
        return [line] (const std::string& output) { return std::regex_search (output, line); };
    }
};
} // namespace

TEST_F (InterprocessConnectionProcessTest, TheClientConnectsAgainAfterTheServerWasKilledAndTrafficResumes)
{
    auto server = start ("server");
    ASSERT_TRUE (server->waitForLine ("listening", 30000)) << server->getOutput();
    auto client = start ("client");
    ASSERT_TRUE (client->waitForLine ("client connected 1", 30000)) << client->getOutput();
    ASSERT_TRUE (client->waitForLine ("client received 3 pongs on connection 1", 30000)) << client->getOutput();
    ASSERT_TRUE (server->waitForLine ("server received ping 3", 30000)) << server->getOutput();
    EXPECT_TRUE (server->waitForOutput (connectedTo(), 30000)) << server->getOutput();

    ASSERT_EQ (::kill (server->getProcessId(), SIGKILL), 0);
    EXPECT_EQ (server->waitForExit (30000), -1);
    ASSERT_TRUE (client->waitForLine ("client disconnected 1", 30000)) << client->getOutput();

    auto restarted = start ("server");
    ASSERT_TRUE (restarted->waitForLine ("listening", 30000)) << restarted->getOutput();
    ASSERT_TRUE (client->waitForLine ("client connected 2", 30000)) << client->getOutput();
    ASSERT_TRUE (client->waitForLine ("client received 3 pongs on connection 2", 30000)) << client->getOutput();
    EXPECT_TRUE (restarted->waitForOutput (connectedTo(), 30000)) << restarted->getOutput();

    client->closeInput();
    EXPECT_EQ (client->waitForExit (30000), 0) << client->getOutput();
    EXPECT_EQ (client->getOutput().find ("out of order"), std::string::npos) << client->getOutput();
    restarted->closeInput();
    EXPECT_EQ (restarted->waitForExit (30000), 0) << restarted->getOutput();
    EXPECT_NE (restarted->getOutput().find ("== NETWORK SERVER == Disconnected from 127.0.0.1:" + portText.toStdString() + "<-127.0.0.1:"), std::string::npos)
        << restarted->getOutput();
}
