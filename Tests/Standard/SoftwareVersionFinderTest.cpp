#include "Support/ScratchDirectory.h"
#include <Tov/Standard/SoftwareVersionFinder.h>
#include <gtest/gtest.h>

using namespace tov;
using namespace tov::test;

namespace
{
class SoftwareVersionFinderTest : public ::testing::Test
{
protected:
    juce::File add (const juce::String& path)
    {
        auto file = root.getChildFile (path);
        EXPECT_TRUE (file.getParentDirectory().createDirectory());
        EXPECT_TRUE (file.replaceWithText ("build"));
        return file;
    }

    ScratchDirectory scratch;
    const juce::File root = scratch.getFile();
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

namespace
{
/** Serves fixed pages over HTTP on the loopback, one request per connection. */
class ListingServer : public juce::Thread
{
public:
    explicit ListingServer (std::map<juce::String, juce::String> pages) : Thread ("Listing server"), pages (std::move (pages))
    {
        listening = socket.createListener (0, "127.0.0.1");
        if (listening)
            startThread();
    }
    ~ListingServer() override
    {
        signalThreadShouldExit();
        socket.close();
        stopThread (10000);
    }

    int getPort() const     { return socket.getBoundPort(); }
    bool isListening() const { return listening; }

    void run() override
    {
        while (! threadShouldExit())
        {
            std::unique_ptr<juce::StreamingSocket> connection (socket.waitForNextConnection());
            if (connection == nullptr)
                return;
            // The request may come in pieces: read until the end of its head.
            juce::String request;
            while (! request.contains ("\r\n\r\n") && connection->waitUntilReady (true, 10000) == 1)
            {
                char buffer[4096];
                const int numRead = connection->read (buffer, sizeof (buffer), false);
                if (numRead <= 0)
                    break;
                request += juce::String (buffer, (size_t) numRead);
            }
            const auto path = request.fromFirstOccurrenceOf ("GET ", false, false).upToFirstOccurrenceOf (" ", false, false);
            const auto found = pages.find (path);
            const auto body = found != pages.end() ? found->second : juce::String();
            const auto response = juce::String (found != pages.end() ? "HTTP/1.0 200 OK" : "HTTP/1.0 404 Not Found")
                                + "\r\nContent-Type: text/html\r\nContent-Length: " + juce::String (body.getNumBytesAsUTF8())
                                + "\r\nConnection: close\r\n\r\n" + body;
            connection->write (response.toRawUTF8(), (int) response.getNumBytesAsUTF8());
        }
    }

private:
    juce::StreamingSocket socket;
    bool listening = false;
    std::map<juce::String, juce::String> pages;
};
} // namespace

TEST_F (SoftwareVersionFinderTest, WebListingsAreReadThroughTheirLinks)
{
    ListingServer server ({
        { "/builds/", "<a href=\"../\">up</a> <a href=\"tool-main-1.0.0.a-linux\">a</a> <a href=\"sub/\">sub</a> "
                      "<a href=\"/builds/tool-main-2.0.0.b\">b</a> <a href=\"notes.txt\">notes</a>" },
        { "/builds/sub/", "<a href=\"tool-main-3.0.0.c\">c</a>" } });
    ASSERT_TRUE (server.isListening());
    const auto base = "http://127.0.0.1:" + juce::String (server.getPort());
    const juce::URL listing (base + "/builds/");

    std::vector<SoftwareVersionFinder::Entry> entries;
    EXPECT_TRUE (SoftwareVersionFinder::getDataBaseFromUrl (entries, listing, "tool-*", 0, nullptr));
    ASSERT_EQ (entries.size(), 2u);
    EXPECT_EQ (entries[0].second.toString(), "tool-main-1.0.0.a-linux");
    EXPECT_EQ (entries[0].first.toString (false), base + "/builds/tool-main-1.0.0.a-linux");
    EXPECT_EQ (entries[1].first.toString (false), base + "/builds/tool-main-2.0.0.b");

    SoftwareVersionFinder finder;
    finder.addUrl (listing);
    SoftwareVersion version;
    juce::URL where;
    ASSERT_TRUE (finder.findLastVersion (version, where, "tool-*", 1, nullptr));
    EXPECT_EQ (version.toString(), "tool-main-3.0.0.c");
    EXPECT_EQ (where.toString (false), base + "/builds/sub/tool-main-3.0.0.c");
}
