#include "Support/FreePort.h"
#include "Support/ScratchDirectory.h"
#include "Support/TestProcess.h"
#include <gtest/gtest.h>
#include <regex>

using namespace tov;
using namespace tov::test;

// A source of 10,000 items edited at 1,000 edits a second, mirrored to two other processes,
// which compare their copy with the source's at every pause (MirroringSoakApplication). Runs for
// TOV_MIRRORING_SOAK_SECONDS, 30 by default.
namespace
{
struct Round
{
    int number;
    bool equal;
    int64_t residentKilobytes;
};

/** The rounds a mirror wrote down: "<name> round N equal|different rss KB". */
std::vector<Round> roundsOf (const std::string& output, const std::string& name)
{
    std::vector<Round> rounds;
    const std::regex line (name + " round ([0-9]+) (equal|different) rss ([0-9]+)");
    for (std::sregex_iterator match (output.begin(), output.end(), line), end; match != end; ++match)
        rounds.push_back ({ std::stoi ((*match)[1]), (*match)[2] == "equal", std::stoll ((*match)[3]) });
    return rounds;
}

double soakSeconds()
{
    const char* text = std::getenv ("TOV_MIRRORING_SOAK_SECONDS");
    return text != nullptr ? std::atof (text) : 30.0;
}
} // namespace

TEST (MirroringSoakTest, TwoMirrorsOfRandomEditsStayEqualToTheSourceWithoutGrowing)
{
    const int port = findFreePort();
    const double seconds = soakSeconds();
    const ScratchDirectory home;
    const std::map<juce::String, juce::String> environment { { "HOME", home.getFullPathName() } };
    const juce::String path (TOV_MIRRORING_SOAK_APPLICATION_PATH);

    TestProcess source ({ path, "source", juce::String (port), juce::String (seconds), "2" }, environment);
    ASSERT_TRUE (source.waitForLine ("listening", 60000)) << source.getOutput();
    TestProcess first ({ path, "mirror", juce::String (port), "first" }, environment);
    TestProcess second ({ path, "mirror", juce::String (port), "second" }, environment);

    const int timeOut = (int) (seconds * 1000.0) + 120000;
    EXPECT_EQ (source.waitForExit (timeOut), 0) << source.getOutput();
    EXPECT_EQ (first.waitForExit (30000), 0) << first.getOutput();
    EXPECT_EQ (second.waitForExit (30000), 0) << second.getOutput();

    std::smatch summary;
    const auto& sourceOutput = source.getOutput();
    ASSERT_TRUE (std::regex_search (sourceOutput, summary, std::regex ("source: ([0-9]+) rounds, ([0-9]+) differences, ([0-9]+) edits"))) << sourceOutput;
    const int numRounds = std::stoi (summary[1]);
    EXPECT_EQ (summary[2], "0");
    // A round is half a second of edits and a pause in which three processes save 10,000
    // objects, which takes what the machine gives: some rounds, each with half its edits.
    EXPECT_GE (numRounds, 3);
    EXPECT_GE (std::stoll (summary[3]), (int64_t) numRounds * 250);

    for (const auto* mirror : { &first, &second })
    {
        const auto name = mirror == &first ? "first" : "second";
        const auto rounds = roundsOf (mirror->getOutput(), name);
        ASSERT_EQ ((int) rounds.size(), numRounds) << mirror->getOutput();
        for (const auto& round : rounds)
            EXPECT_TRUE (round.equal) << name << " round " << round.number;

        // Memory after the first seconds, against the end: the same document, edited, in the
        // same space, needs no more.
        const auto& settled = rounds[std::min (rounds.size() - 1, (size_t) 6)];
        const auto& last = rounds.back();
        std::printf ("%s: resident %lld KB at round %d, %lld KB at round %d\n", name, (long long) settled.residentKilobytes, settled.number,
                     (long long) last.residentKilobytes, last.number);
        EXPECT_LE (last.residentKilobytes, settled.residentKilobytes + settled.residentKilobytes / 20 + 2048)
            << name << " grew from " << settled.residentKilobytes << " KB at round " << settled.number << " to " << last.residentKilobytes << " KB";
    }
}
