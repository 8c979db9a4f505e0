#include "Support/ScratchDirectory.h"
#include <gtest/gtest.h>
#include <juce_core/juce_core.h>
#include <sys/wait.h>

namespace
{
/** What one run of the tool printed, and how it ended. */
struct ToolRun
{
    juce::String out, err;
    int exitCode = -1;
};

/** Runs tov-state in a scratch directory, with the given text on standard input. */
class StateToolTest : public ::testing::Test
{
protected:
    tov::test::ScratchDirectory directory;

    juce::File file (const char* name) const { return directory.getChildFile (name); }

    void write (const char* name, const juce::String& text) const { file (name).replaceWithText (text, false, false, "\n"); }

    ToolRun run (const juce::String& arguments, const juce::String& input = {}) const
    {
        file ("stdin").replaceWithText (input, false, false, "\n");
        const auto command = "cd " + directory.getFullPathName().quoted() + " && " + juce::String (TOV_STATE_TOOL_PATH).quoted()
                           + " " + arguments + " <stdin >stdout 2>stderr";
        const int status = std::system (command.toRawUTF8());
        ToolRun result;
        result.out = file ("stdout").loadFileAsString();
        result.err = file ("stderr").loadFileAsString();
        result.exitCode = WIFEXITED (status) ? WEXITSTATUS (status) : -1;
        return result;
    }

    /** Runs tov-state with its standard streams on a pseudo-terminal, through script(1); what
        the terminal received, with its line ends as the terminal makes them (CR LF). */
    ToolRun runOnTerminal (const juce::String& arguments) const
    {
        const auto tool = juce::String (TOV_STATE_TOOL_PATH).quoted() + " " + arguments;
        const auto command = "cd " + directory.getFullPathName().quoted() + " && script -qec " + tool.quoted ('\'')
                           + " /dev/null </dev/null >terminal 2>&1";
        const int status = std::system (command.toRawUTF8());
        ToolRun result;
        result.out = file ("terminal").loadFileAsString();
        result.exitCode = WIFEXITED (status) ? WEXITSTATUS (status) : -1;
        return result;
    }

    /** What stays visible of the last line on a terminal: the text after its last carriage
        return, without the erase-to-end sequences. */
    static juce::String lastVisibleLine (const juce::String& terminal)
    {
        // Split at line feeds only: a lone carriage return stays inside its line.
        auto lines = juce::StringArray::fromTokens (terminal, "\n", "");
        lines.removeEmptyStrings();
        const auto last = lines[lines.size() - 1].trimCharactersAtEnd ("\r");
        return last.fromLastOccurrenceOf ("\r", false, false).replace ("\x1b[K", "");
    }
};
}

TEST_F (StateToolTest, FormatPrintsAsTheLibraryDoes)
{
    write ("doc.txt", "{ a=1 ,b= { \"x\" ,2.50 } }");
    auto result = run ("format doc.txt");
    EXPECT_EQ (result.out, "{a = 1, b = {\"x\", 2.5}}\n");
    EXPECT_EQ (result.err, "");
    EXPECT_EQ (result.exitCode, 0);

    result = run ("format -", "'Shape @2a #3 {width = 10}");
    EXPECT_EQ (result.out, "'Shape @2a #3 {width = 10}\n");
    EXPECT_EQ (result.exitCode, 0);
}

TEST_F (StateToolTest, FormatReadsTheBinarySibling)
{
    write ("data.txt", "{bytes = [0 3]}");
    file ("data.txt.bin").replaceWithData ("abc", 3);
    auto result = run ("save data.txt copy.txt");
    EXPECT_EQ (result.exitCode, 0) << result.err;
    juce::MemoryBlock sibling;
    file ("copy.txt.bin").loadFileAsData (sibling);
    EXPECT_EQ (sibling, juce::MemoryBlock ("abc", 3));
    EXPECT_EQ (run ("format copy.txt").out, "{bytes = [0 3]}\n");
}

TEST_F (StateToolTest, CheckIsSilentForGoodFilesAndReportsBadOnes)
{
    write ("good.txt", "{a = 1}");
    write ("bad.txt", "{a = }");
    auto result = run ("check good.txt");
    EXPECT_EQ (result.out, "");
    EXPECT_EQ (result.err, "");
    EXPECT_EQ (result.exitCode, 0);

    result = run ("check good.txt bad.txt");
    EXPECT_EQ (result.out, "");
    EXPECT_TRUE (result.err.startsWith ("Error: Stream: " + file ("bad.txt").getFullPathName() + "\nLine: ")) << result.err;
    EXPECT_TRUE (result.err.contains ("[*Here*]"));
    EXPECT_EQ (result.exitCode, 1);

    result = run ("check missing.txt");
    EXPECT_EQ (result.err, "Error: File " + file ("missing.txt").getFullPathName() + " does not exist\n");
    EXPECT_EQ (result.exitCode, 1);
}

TEST_F (StateToolTest, ShortWithAndWithoutDepth)
{
    write ("doc.txt", "{a = {b = {c = 1}}}");
    EXPECT_EQ (run ("short doc.txt").out, "{a = {b = {c = 1}}}\n");
    EXPECT_EQ (run ("short --depth 1 doc.txt").out, "{a = {...}}\n");
    EXPECT_EQ (run ("short --depth 0 -", "{x = 1}").out, "{...}\n");
    auto bad = run ("short --depth many doc.txt");
    EXPECT_EQ (bad.err, "tov-state short: --depth takes a whole number, not \"many\"\n");
    EXPECT_EQ (bad.exitCode, 2);
}

TEST_F (StateToolTest, BinaryConversionsRoundTrip)
{
    write ("five.txt", "5");
    EXPECT_EQ (run ("to-binary five.txt five.bin").exitCode, 0);
    juce::MemoryBlock bytes;
    file ("five.bin").loadFileAsData (bytes);
    EXPECT_EQ (bytes, juce::MemoryBlock ("\x01\x81\x00\x00\x05\x00\x00\x00\x00\x00\x00\x00", 12));

    auto result = run ("from-binary five.bin");
    EXPECT_EQ (result.out, "5\n");
    EXPECT_EQ (result.exitCode, 0);

    write ("doc.txt", "'Doc {name = \"n\", list = {1, 2, 3}}");
    EXPECT_EQ (run ("to-binary doc.txt doc.bin").exitCode, 0);
    EXPECT_EQ (run ("from-binary doc.bin -").out, "'Doc {name = \"n\", list = {1, 2, 3}}\n");
}

TEST_F (StateToolTest, BadBinaryStreamGivesTheReadersError)
{
    file ("bad.bin").replaceWithData ("\x01\x82\x00\x00", 4);
    auto result = run ("from-binary bad.bin");
    EXPECT_EQ (result.out, "");
    EXPECT_EQ (result.err, "Error: Unexpected binary stream version: 2\n");
    EXPECT_EQ (result.exitCode, 1);

    file ("short.bin").replaceWithData ("\x01\x81\x00\x00\x05", 5);
    result = run ("from-binary short.bin");
    EXPECT_EQ (result.err, "Error: Unexpected end of stream, expected State value\n");
    EXPECT_EQ (result.exitCode, 1);
}

TEST_F (StateToolTest, SaveFromBinary)
{
    write ("doc.txt", "{a = 1}");
    run ("to-binary doc.txt doc.bin");
    EXPECT_EQ (run ("save --binary doc.bin saved.txt").exitCode, 0);
    EXPECT_EQ (file ("saved.txt").loadFileAsString(), "{a = 1}\n");
    EXPECT_FALSE (file ("saved.txt.bin").exists());
    auto usage = run ("save doc.txt");
    EXPECT_EQ (usage.err, "tov-state save: expected IN and OUT (see tov-state save --help)\n");
    EXPECT_EQ (usage.exitCode, 2);
}

TEST_F (StateToolTest, HelpAndUsageErrors)
{
    auto help = run ("--help");
    EXPECT_TRUE (help.out.startsWith ("tov-state: reads, checks and converts State documents.\n"));
    EXPECT_TRUE (help.out.contains ("  tov-state from-binary [--progress] [IN|-] [OUT|-]\n"));
    EXPECT_EQ (help.exitCode, 0);

    auto commandHelp = run ("short --help");
    EXPECT_EQ (commandHelp.out, "usage: tov-state short [--depth N] [FILE|-]\n"
                                "Writes the one-line short text of the document, at most N levels deep (no limit by default).\n");
    EXPECT_EQ (commandHelp.exitCode, 0);

    auto unknown = run ("frobnicate");
    EXPECT_EQ (unknown.err, "tov-state: unknown command \"frobnicate\" (see tov-state --help)\n");
    EXPECT_EQ (unknown.exitCode, 2);

    auto nothing = run ("");
    EXPECT_EQ (nothing.exitCode, 2);
    EXPECT_TRUE (nothing.err.startsWith ("tov-state: reads"));
}

TEST_F (StateToolTest, ProgressIsALineRewrittenInPlaceOnATerminal)
{
    write ("doc.txt", "{a = 1, list = {1, 2, 3}}");
    auto result = runOnTerminal ("to-binary --progress doc.txt doc.bin");
    EXPECT_EQ (result.exitCode, 0) << result.out;
    EXPECT_TRUE (result.out.startsWith ("\r  0% Reading doc.txt\x1b[K\r 60% Converting to binary    (Remaining time: ")) << result.out;
    EXPECT_TRUE (result.out.contains ("\r 80% Writing doc.bin    (Remaining time: ")) << result.out;
    EXPECT_EQ (lastVisibleLine (result.out), "100% Converted doc.txt to binary");
    EXPECT_EQ (run ("from-binary doc.bin").out, "{a = 1, list = {1, 2, 3}}\n");

    result = runOnTerminal ("save --progress doc.txt saved.txt");
    EXPECT_EQ (lastVisibleLine (result.out), "100% Saved saved.txt");
    EXPECT_EQ (file ("saved.txt").loadFileAsString(), "{a = 1, list = {1, 2, 3}}\n");

    result = runOnTerminal ("from-binary --progress doc.bin back.txt");
    EXPECT_EQ (lastVisibleLine (result.out), "100% Converted doc.bin to text");
}

TEST_F (StateToolTest, AFailedStepTakesTheProgressLineAwayForItsError)
{
    auto result = runOnTerminal ("to-binary --progress missing.txt out.bin");
    EXPECT_EQ (result.exitCode, 1);
    EXPECT_EQ (lastVisibleLine (result.out), "");
    EXPECT_TRUE (result.out.startsWith ("\r  0% Reading missing.txt\x1b[K\r\x1b[KError: File " + file ("missing.txt").getFullPathName()
                                        + " does not exist\r\n")) << result.out;
}

TEST_F (StateToolTest, WithoutATerminalProgressShowsNothing)
{
    write ("doc.txt", "{a = 1}");
    auto result = run ("to-binary --progress doc.txt doc.bin");
    EXPECT_EQ (result.exitCode, 0);
    EXPECT_EQ (result.err, "");
    EXPECT_EQ (result.out, "");
    EXPECT_EQ (run ("from-binary doc.bin").out, "{a = 1}\n");
    EXPECT_EQ (runOnTerminal ("to-binary doc.txt doc.bin").out, "");
}

//==============================================================================
namespace
{
/** The machine snapshot command of the tool. */
class SystemStatsToolTest : public StateToolTest
{
protected:
    /** A raw firmware table: a BIOS, a baseboard and a processor structure, and the end. */
    void writeTable (const char* name) const
    {
        const unsigned char bios[] = { 0, 24, 0, 0, 1, 2, 0, 0, 3, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 5, 17, 2, 9,
                                       'A', 'c', 'm', 'e', 0, '1', '.', '0', 0, '0', '1', '/', '0', '2', '/', '2', '0', '2', '5', 0, 0 };
        const unsigned char board[] = { 2, 8, 0, 0, 1, 2, 0, 0, 'M', 'a', 'k', 'e', 'r', 0, 'B', 0, 0 };
        const unsigned char processor[] = { 4, 26, 0, 0, 1, 0, 0, 2, 0, 0, 0, 0, 0, 0, 0, 0, 3, 0, 100, 0, 0xa0, 0x0f, 0xb8, 0x0b, 0, 0,
                                            'C', 'P', 'U', '0', 0, 'I', 'n', 't', 'e', 'l', 0, 'X', 'e', 'o', 'n', 0, 0 };
        const unsigned char end[] = { 127, 4, 0, 0, 0, 0 };
        juce::MemoryBlock table;
        for (const auto& [data, size] : { std::pair<const void*, size_t> { bios, sizeof (bios) }, { board, sizeof (board) },
                                          { processor, sizeof (processor) }, { end, sizeof (end) } })
            table.append (data, size);
        file (name).replaceWithData (table.getData(), table.getSize());
    }
};
} // namespace

TEST_F (SystemStatsToolTest, PrintsThisMachineAsStateTextWithEveryVariable)
{
    auto result = run ("sysinfo --no-network");
    ASSERT_EQ (result.exitCode, 0) << result.err;
    EXPECT_EQ (result.err, "");
    // The text reads back as a document.
    write ("machine.txt", result.out);
    EXPECT_EQ (run ("check machine.txt").exitCode, 0);
    int previous = -1;
    for (const auto* name : { "operatingSystemType = \"linuxOS\"", "operatingSystemName = ", "operatingSystem64Bit = true", "networkStats = ",
                              "numCpuCores = ", "numCpuThreads = " , "cpuCapabilities = ", "memorySizeInMegabytes = ", "biosVendor = ",
                              "biosReleaseDate = ", "biosVersion = ", "biosSystemVersion = ", "biosFrimwareVersion = ",
                              "motherBoardManufacturer = ", "motherBoardProductName = ", "motherBoardRevision = ",
                              "motherBoardSerialNumber = ", "chassisAssetTag = ", "systemSerialNumber = ", "systemUUID = ",
                              "processorsStats = " })
    {
        const int at = result.out.indexOf (name);
        EXPECT_GT (at, previous) << name << "\n" << result.out;
        previous = at;
    }
    EXPECT_TRUE (result.out.contains ("numCpuThreads = " + juce::String (juce::SystemStats::getNumCpus()))) << result.out;
}

TEST_F (SystemStatsToolTest, ReadsTheFirmwarePartFromAGivenTable)
{
    writeTable ("dmi.bin");
    auto result = run ("sysinfo --no-network --table dmi.bin");
    ASSERT_EQ (result.exitCode, 0) << result.err;
    for (const auto* expected : { "biosVendor = \"Acme\"", "biosReleaseDate = \"01/02/2025\"", "biosVersion = \"1.0\"",
                                  "biosSystemVersion = \"5.17\"", "biosFrimwareVersion = \"2.9\"", "motherBoardManufacturer = \"Maker\"",
                                  "motherBoardProductName = \"B\"", "socketDesignation = \"CPU0\"", "manufacturer = \"Intel\"",
                                  "version = \"Xeon\"", "externalClockSpeed = \"100MHz\"", "maxSpeed = \"4000MHz\"", "currentSpeed = \"3000MHz\"" })
        EXPECT_TRUE (result.out.contains (expected)) << expected << "\n" << result.out;
}

TEST_F (SystemStatsToolTest, ReportsTheSnapshotLabelByLabel)
{
    writeTable ("dmi.bin");
    auto result = run ("sysinfo --no-network --report --table dmi.bin");
    ASSERT_EQ (result.exitCode, 0) << result.err;
    juce::StringArray labels;
    for (const auto& line : juce::StringArray::fromLines (result.out))
        if (line.isNotEmpty())
            labels.add (line.upToFirstOccurrenceOf (": ", false, false));
    EXPECT_EQ (labels.joinIntoString ("|"),
               "OS Type|CPU Core|CPU Features|CPU Manufacturer|CPU Version|CPU Socket|CPU External Clock Speed|CPU Max Speed|"
               "CPU Current Speed|BIOS Vendor|BIOS Release Date|BIOS Version|BIOS System Version|BIOS Firmware Version|"
               "Mother Board Manufacturer|Mother Board Name|Mother Board Revision|Mother Board Id|Chassis Asset Tag|System Id|System UUId");
    EXPECT_TRUE (result.out.contains ("\nCPU Max Speed: 4000MHz\n")) << result.out;
}

TEST_F (SystemStatsToolTest, AMissingTableFails)
{
    auto result = run ("sysinfo --no-network --table missing.bin");
    EXPECT_EQ (result.exitCode, 1);
    EXPECT_EQ (result.err, "Error: File " + file ("missing.bin").getFullPathName() + " cannot be opened for reading\n");
    EXPECT_EQ (run ("sysinfo --frobnicate").exitCode, 2);
}

//==============================================================================
namespace
{
/** tov-state's commands of the JSON bridge, on the library's own SoftwareVersion class. */
class JsonStateToolTest : public StateToolTest {};
}

TEST_F (JsonStateToolTest, ToJsonWritesTheObjectsJson)
{
    write ("version.txt", "'SoftwareVersion {programName = \"player\", majorVersion = 4, commitHash = \"c0ffee\"}");
    auto result = run ("to-json --without-defaults version.txt");
    EXPECT_EQ (result.out, "{\n  \"program\": \"player\",\n  \"major\": 4,\n  \"commit\": \"c0ffee\"\n}\n");
    EXPECT_EQ (result.err, "");
    EXPECT_EQ (result.exitCode, 0);
}

TEST_F (JsonStateToolTest, ToJsonFileHasCrlfLines)
{
    write ("version.txt", "'SoftwareVersion {programName = \"player\"}");
    auto result = run ("to-json --without-defaults version.txt out.json");
    EXPECT_EQ (result.exitCode, 0);
    EXPECT_EQ (file ("out.json").loadFileAsString(), "{\r\n  \"program\": \"player\"\r\n}");
}

TEST_F (JsonStateToolTest, ToJsonOfADocumentWithoutClassFails)
{
    auto result = run ("to-json -", "{programName = \"player\"}");
    EXPECT_EQ (result.exitCode, 1);
    EXPECT_TRUE (result.err.startsWith ("Error: "));
}

TEST_F (JsonStateToolTest, FromJsonNeedsTheClass)
{
    auto result = run ("from-json -", "{\"program\": \"player\"}");
    EXPECT_EQ (result.exitCode, 2);
    EXPECT_EQ (result.err, "tov-state from-json: expected --class NAME (see tov-state from-json --help)\n");

    result = run ("from-json --class NoSuchClass -", "{}");
    EXPECT_EQ (result.exitCode, 1);
    EXPECT_EQ (result.err, "Error: Unknown class NoSuchClass\n");
}

TEST_F (JsonStateToolTest, FromJsonWritesTheStateWithItsClass)
{
    auto result = run ("from-json --class SoftwareVersion -", "{\"program\": \"player\", \"major\": 4, \"unknown\": 1}");
    EXPECT_EQ (result.out, "'SoftwareVersion {programName = \"player\", majorVersion = 4}\n");
    EXPECT_EQ (result.err, "");
    EXPECT_EQ (result.exitCode, 0);
}

TEST_F (JsonStateToolTest, FromJsonOfBadTextFails)
{
    auto result = run ("from-json --class SoftwareVersion -", "{\"program\": ");
    EXPECT_EQ (result.exitCode, 1);
    EXPECT_TRUE (result.err.startsWith ("Error: Could not parse Json: "));

    result = run ("from-json --class SoftwareVersion -", "[1, 2]");
    EXPECT_EQ (result.exitCode, 1);
    EXPECT_EQ (result.err, "Error: Cannot load 0.0.0 from Json value [1, 2]\n");
}

TEST_F (JsonStateToolTest, RoundTripThroughJson)
{
    write ("version.txt", "'SoftwareVersion {programName = \"player\", branchName = \"beta\", minorVersion = 7}");
    ASSERT_EQ (run ("to-json version.txt out.json").exitCode, 0);
    auto result = run ("from-json --class SoftwareVersion out.json");
    EXPECT_EQ (result.out, "'SoftwareVersion {programName = \"player\", branchName = \"beta\", minorVersion = 7}\n");
    EXPECT_EQ (result.exitCode, 0);
}
