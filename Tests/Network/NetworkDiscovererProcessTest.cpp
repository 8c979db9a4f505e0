// Two servers in two processes find each other through real broadcast packets, on the veth
// pair of a network namespace of their own (see runInVethNamespace).
#include "DiscoveryTestSupport.h"
#include "Support/TestProcess.h"
#include <regex>

using namespace tov;
using namespace tov::test;

namespace
{
/** The parts of a line "found ADDRESS ALIVETIME OBJECT". */
struct Found
{
    juce::String address, state;
    juce::int64 aliveTime = 0;
};

bool findLine (const std::string& output, const juce::String& address, Found& found)
{
    std::smatch match;
    const std::regex line ("found " + std::regex_replace (address.toStdString(), std::regex ("\\."), "\\.") + " ([0-9]+) (.*)\n");
    if (! std::regex_search (output, match, line))
        return false;
    found.address = address;
    found.aliveTime = juce::String (match[1].str()).getLargeIntValue();
    found.state = match[2].str();
    return true;
}

juce::String sentState (const std::string& output)
{
    std::smatch match;
    return std::regex_search (output, match, std::regex ("sent (.*)\n")) ? juce::String (match[1].str()) : juce::String();
}
} // namespace

TEST (NetworkDiscovererProcessTest, TwoProcessesFindEachOtherThroughBroadcastPackets)
{
    std::string outputs[2];
    int exitCodes[2] = { -1, -1 };
    Found found[2];
    juce::int64 before = 0, after = 0;
    const juce::String addresses[2] = { "10.61.0.1:40001", "10.61.0.2:40002" };
    TOV_RUN_IN_VETH_NAMESPACE ([&]
    {
        before = juce::Time::currentTimeMillis();
        std::unique_ptr<TestProcess> servers[2];
        servers[0] = std::make_unique<TestProcess> (juce::StringArray { TOV_DISCOVERY_TEST_APPLICATION_PATH, "10.61.0.1", "40001", "40000", "editor-a", "7001" },
                                                    std::map<juce::String, juce::String>());
        servers[1] = std::make_unique<TestProcess> (juce::StringArray { TOV_DISCOVERY_TEST_APPLICATION_PATH, "10.61.0.2", "40002", "40000", "editor-b", "7002" },
                                                    std::map<juce::String, juce::String>());
        for (int i = 0; i < 2; ++i)
            servers[i]->waitForOutput ([&] (const std::string& output) { return findLine (output, addresses[1 - i], found[i]); }, 30000);
        after = juce::Time::currentTimeMillis();
        for (int i = 0; i < 2; ++i)
        {
            servers[i]->closeInput();
            exitCodes[i] = servers[i]->waitForExit (30000);
            outputs[i] = servers[i]->getOutput();
        }
    });
    for (int i = 0; i < 2; ++i)
    {
        EXPECT_EQ (exitCodes[i], 0) << outputs[i];
        EXPECT_EQ (found[i].address, addresses[1 - i]) << outputs[i];
        EXPECT_GE (found[i].aliveTime, before);
        EXPECT_LE (found[i].aliveTime, after);
        EXPECT_EQ (found[i].state, sentState (outputs[1 - i])) << outputs[i];
        // Class and identifier (the service port, 7001 or 7002) came with the object.
        const juce::String expectedStart = i == 0 ? "ServerAnnouncement 1b5a {name = \"editor-b\", " : "ServerAnnouncement 1b59 {name = \"editor-a\", ";
        EXPECT_TRUE (found[i].state.startsWith (expectedStart)) << found[i].state;
        EXPECT_FALSE (juce::String (outputs[i]).contains ("warning:") || juce::String (outputs[i]).contains ("error:")) << outputs[i];
    }
}
