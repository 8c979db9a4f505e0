// Crashes of a small program in a process of its own: the exit code, the report in the log, the
// dump and the crash log. The program's kinds of crash are listed in CrashTestApplication.cpp.
#include "../Support/LogTestSupport.h"
#include "../Support/ScratchDirectory.h"
#include "../Support/TestProcess.h"
#include <Tov/Standard/TimeText.h>
#include <gtest/gtest.h>
#include <cstring>
#include <regex>
#include <set>

using namespace tov;
using namespace tov::test;

namespace
{
#if defined (__SANITIZE_THREAD__)
// A core of a process under ThreadSanitizer holds its shadow memory: far too large to write.
// The handler allocates and locks, which the sanitizer would report as unsafe in a signal.
constexpr bool underThreadSanitizer = true;
#else
constexpr bool underThreadSanitizer = false;
#endif
constexpr bool withDumps = ! underThreadSanitizer;

const char* const applicationName = "CrashTestApplication";
const char* const reportEnd = "rax=<HEX> rbx=<HEX> rcx=<HEX>\r\n"
                              "rdx=<HEX> rsi=<HEX> rdi=<HEX>\r\n"
                              "rip=<HEX> rsp=<HEX> rbp=<HEX>\r\n"
                              "iopl=0 <flags>cs=0033  ss=002B  ds=0000  es=0000  fs=0000  gs=0000  efl=<HEX>\r\n";

/** A pattern of the expected text: "<HEX>", "<hex>" and "<dec>" stand for numbers, "<flags>" for
    the eight flag mnemonics, "<time>" for a time stamp, "<any>" for the rest of a line; everything else is literal. */
std::regex makePattern (const std::string& expected)
{
    static const std::regex special (R"([.^$|()\[\]{}*+?\\])");
    auto pattern = std::regex_replace (expected, special, R"(\$&)");
    const std::pair<const char*, const char*> holes[] = {
        { "<HEX>", "[0-9A-F]+" }, { "<hex>", "[0-9a-f]+" }, { "<dec>", "[0-9]+" },
        { "<flags>", "(?:[a-z]{2} ){8}" }, { "<any>", "[^\r\n]*" }, { "<time>", "[0-9]{4}/[0-9]{2}/[0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]{2}" },
    };
    for (const auto& [hole, replacement] : holes)
        for (size_t at; (at = pattern.find (hole)) != std::string::npos;)
            pattern.replace (at, std::strlen (hole), replacement);
    return std::regex (pattern);
}

class CrashProcessTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE (root.getChildFile ("home").createDirectory());
        ASSERT_TRUE (root.getChildFile ("data").createDirectory());
        environment = { { "HOME", root.getChildFile ("home").getFullPathName() },
                        { "ProgramData", root.getChildFile ("data").getFullPathName() },
                        { "TZ", "UTC" }, { "DISPLAY", "" }, { "WAYLAND_DISPLAY", "" } };
        if (! withDumps)
            environment["TSAN_OPTIONS"] = juce::SystemStats::getEnvironmentVariable ("TSAN_OPTIONS", {}) + ":report_signal_unsafe=0";
    }


    /** Runs the application to its end; its exit code. A core of it is 100 MB or more: only the
        tests of the dump itself ask for one. */
    int run (juce::StringArray arguments, bool dump = false)
    {
        arguments.insert (0, TOV_CRASH_TEST_APPLICATION_PATH);
        dumped = dump && withDumps;
        if (! dumped)
            arguments.add ("--no-dump");
        before = juce::Time::getCurrentTime();
        TestProcess process (arguments, environment);
        EXPECT_TRUE (process.isStarted());
        processId = process.getProcessId();
        const int exitCode = process.waitForExit (120000);
        after = juce::Time::getCurrentTime();
        output = process.getOutput();
        return exitCode;
    }

    juce::File getUserDirectory() const        { return root.getChildFile ("home").getChildFile (".config"); }
    juce::File getProgramDirectory() const     { return getUserDirectory().getChildFile (applicationName); }

    /** The text of the one log of that name. */
    std::string readLog (const juce::String& logName) const
    {
        const auto logs = getProgramDirectory().getChildFile ("logs").findChildFiles (juce::File::findFiles, false,
                                                                                       juce::String (applicationName) + " main " + logName + " *.txt");
        EXPECT_EQ (logs.size(), 1) << logName;
        return logs.isEmpty() ? std::string() : readBytes (logs.getFirst());
    }

    /** The log from the first line of the crash report on. */
    static std::string getReport (const std::string& log)
    {
        const auto error = log.rfind ("Error: ");
        const auto lineStart = log.rfind ("\r\n", error);
        return error == std::string::npos ? std::string() : log.substr (lineStart == std::string::npos ? 0 : lineStart + 2);
    }

    /** Checks the report at the end of the log against the expected text, and the thread's two numbers against each other. */
    void expectReport (const std::string& log, const std::string& expected, pid_t expectedThread = 0) const
    {
        const auto report = getReport (log);
        EXPECT_TRUE (std::regex_match (report, makePattern (expected))) << report;

        std::smatch thread;
        ASSERT_TRUE (std::regex_search (report, thread, std::regex ("exception on thread: ([0-9a-f]+)X \\(([0-9]+)\\)"))) << report;
        EXPECT_EQ (std::stoull (thread[1].str(), nullptr, 16), std::stoull (thread[2].str()));
        if (expectedThread != 0)
            EXPECT_EQ (std::stoull (thread[2].str()), (unsigned long long) expectedThread);

        std::smatch module;
        if (std::regex_search (report, module, std::regex ("\\+([0-9A-F]+) \\(Rip=([0-9A-F]{16})\\) \\(image=([0-9A-F]{16})\\)")))
            EXPECT_EQ (std::stoull (module[1].str(), nullptr, 16),
                       std::stoull (module[2].str(), nullptr, 16) - std::stoull (module[3].str(), nullptr, 16));
    }

    /** The one dump in the directory, with its description, written between the start and the end
        of the run; none, in an existing directory, when no dump was asked for or gcore is missing. */
    void expectDump (const juce::File& directory, const juce::String& description) const
    {
        const auto dumps = directory.findChildFiles (juce::File::findFiles, false);
        if (! dumped || ! juce::File ("/usr/bin/gcore").existsAsFile())
        {
            EXPECT_TRUE (directory.isDirectory());
            EXPECT_EQ (dumps.size(), 0);
            return;
        }
        ASSERT_EQ (dumps.size(), 1) << directory.getFullPathName();
        const auto name = dumps[0].getFileName();
        const auto time = name.upToFirstOccurrenceOf (" ", false, false);
        std::set<juce::String> times;
        for (auto t = before.toMilliseconds() / 1000; t <= (after.toMilliseconds() + 999) / 1000; ++t)
            times.insert (TimeText::toFileNameString (juce::Time (t * 1000)));
        EXPECT_EQ (times.count (time), 1u) << name;
        EXPECT_EQ (name.fromFirstOccurrenceOf (" ", false, false), description + ".dmp");
        // A core file of the process.
        juce::MemoryBlock head;
        dumps[0].createInputStream()->readIntoMemoryBlock (head, 4);
        EXPECT_EQ (head, juce::MemoryBlock ("\x7f" "ELF", 4));
    }

    juce::File getDumps() const                { return getProgramDirectory().getChildFile ("dumps"); }
    juce::String getDescription() const        { return "CrashTestApplication-main-3.1.4.crash"; }

    /** Runs a crash of one kind on the message thread and checks what it leaves. */
    void expectCrashOnTheMessageThread (const juce::String& kind, const std::string& expectedReport, bool dump = false)
    {
        ASSERT_EQ (run ({ kind, "message" }, dump), 45) << output;
        EXPECT_EQ (output, "started\n");
        expectReport (readLog ("Program"), expectedReport, processId);
        expectDump (getDumps(), getDescription());
    }

    // The dumps are removed with the rest.
    ScratchDirectory scratch;
    const juce::File root = scratch.getFile();
    std::map<juce::String, juce::String> environment;
    juce::Time before, after;
    std::string output;
    pid_t processId = 0;
    bool dumped = false;
};

std::string inApplication (const std::string& rest)
{
    return "<time>\t  Error: Unhandled exception in CrashTestApplication+<HEX> (Rip=<HEX>) (image=<HEX>)\r\n"
           "exception on thread: <hex>X (<dec>)\r\n" + rest + reportEnd;
}
} // namespace

//==============================================================================
TEST_F (CrashProcessTest, AnAccessViolationIsReportedDumpedAndEndsWith45)
{
    expectCrashOnTheMessageThread ("segv", inApplication ("ACCESS_VIOLATION Code c0000005\r\nEXCEPTION_PARAMETER0: 1\r\nEXCEPTION_PARAMETER1: 10\r\n"), true);
}

TEST_F (CrashProcessTest, AReadBeyondAMappedFileIsAnInPageError)
{
    expectCrashOnTheMessageThread ("bus", inApplication ("IN_PAGE_ERROR Code c0000006\r\nEXCEPTION_PARAMETER0: 0\r\nEXCEPTION_PARAMETER1: <hex>\r\n"));
}

TEST_F (CrashProcessTest, AnIllegalInstruction)
{
    expectCrashOnTheMessageThread ("ill", inApplication ("ILLEGAL_INSTRUCTION Code c000001d\r\n"));
}

TEST_F (CrashProcessTest, AnIntegerDivisionByZero)
{
    expectCrashOnTheMessageThread ("fpe", inApplication ("INT_DIVIDE_BY_ZERO Code c0000094\r\n"));
}

TEST_F (CrashProcessTest, AFloatingPointDivisionByZeroWithTheExceptionUnmasked)
{
    expectCrashOnTheMessageThread ("fpe-float", inApplication ("FLT_DIVIDE_BY_ZERO Code c000008e\r\n"));
}

TEST_F (CrashProcessTest, ABreakpoint)
{
    expectCrashOnTheMessageThread ("trap", inApplication ("BREAKPOINT Code 80000003\r\n"));
}

TEST_F (CrashProcessTest, AnAbortIsUnknownInTheCLibrary)
{
    expectCrashOnTheMessageThread ("abort", "<time>\t  Error: Unhandled exception in libc.so.6+<HEX> (Rip=<HEX>) (image=<HEX>)\r\n"
                                            "exception on thread: <hex>X (<dec>)\r\nUnknown Code 40000015\r\n" + std::string (reportEnd));
}

TEST_F (CrashProcessTest, TerminateEndsThroughTheCrashHandlerAsAnAbort)
{
    expectCrashOnTheMessageThread ("terminate", "<time>\t  Error: Unhandled exception in libc.so.6+<HEX> (Rip=<HEX>) (image=<HEX>)\r\n"
                                                "exception on thread: <hex>X (<dec>)\r\nUnknown Code 40000015\r\n" + std::string (reportEnd));
}

TEST_F (CrashProcessTest, AStackOverflowIsReportedFromTheAlternateStack)
{
    expectCrashOnTheMessageThread ("overflow", inApplication ("STACK_OVERFLOW Code c00000fd\r\nEXCEPTION_PARAMETER0: 1\r\nEXCEPTION_PARAMETER1: <hex>\r\n"));
}

TEST_F (CrashProcessTest, AFailedAssertionThatCrashesLogsAndCrashesAtItsAddress)
{
    ASSERT_EQ (run ({ "deliberate", "message" }), 45) << output;
    const auto log = readLog ("Program");
    const auto report = getReport (log);
    EXPECT_TRUE (juce::String (log).contains ("\t  Error: TOV_ASSERT the impossible happened\r\n"));
    // The address is not canonical: the processor does not tell it. The value, too wide for an
    // immediate store, stands in a register.
    EXPECT_TRUE (std::regex_match (report, makePattern ("<time>\t  Error: Unhandled exception in libtov.so+<HEX> (Rip=<HEX>) (image=<HEX>)\r\n"
                                                        "exception on thread: <hex>X (<dec>)\r\n"
                                                        "ACCESS_VIOLATION Code c0000005\r\nEXCEPTION_PARAMETER0: 0\r\nEXCEPTION_PARAMETER1: 0\r\n"
                                                        + std::string (reportEnd)))) << report;
    EXPECT_TRUE (juce::String (report).contains ("=ABADF00DABADF00D")) << report;
    expectDump (getDumps(), getDescription());
}

//==============================================================================
TEST_F (CrashProcessTest, ACrashInAServiceIsReportedInTheServicesLog)
{
    ASSERT_EQ (run ({ "segv", "service" }, true), 45) << output;
    expectReport (readLog ("Crashing"), "<time>\t  Error: Unhandled exception in CrashTestApplication+<HEX> (Rip=<HEX>) (image=<HEX>)\r\n"
                                        "exception on thread: <hex>X (<dec>)\r\n"
                                        "ACCESS_VIOLATION Code c0000005\r\nEXCEPTION_PARAMETER0: 1\r\nEXCEPTION_PARAMETER1: 10\r\n" + std::string (reportEnd));
    EXPECT_FALSE (juce::String (readLog ("Program")).contains ("Error: "));
    expectDump (getDumps(), getDescription());
}

TEST_F (CrashProcessTest, ACrashOnAConnectionsThreadIsReportedInTheProgramsLog)
{
    ASSERT_EQ (run ({ "segv", "connection" }), 45) << output;
    expectReport (readLog ("Program"), inApplication ("ACCESS_VIOLATION Code c0000005\r\nEXCEPTION_PARAMETER0: 1\r\nEXCEPTION_PARAMETER1: 10\r\n"));
    expectDump (getDumps(), getDescription());
}

TEST_F (CrashProcessTest, ACrashOnTheLoggerThreadIsWrittenByTheLoggerItself)
{
    // The signal comes from the program, not from a fault: its parameters are the sender's, and it
    // arrives wherever the logger waits.
    if (underThreadSanitizer)
        GTEST_SKIP() << "the sanitizer delivers the signal late, and reports the program's context, which the message "
                        "thread owns, read by the dying logger thread";
    ASSERT_EQ (run ({ "segv", "logger" }), 45) << output;
    const auto log = readLog ("Program");
    expectReport (log, "<time>\t  Error: Unhandled exception in <any>+<HEX> (Rip=<HEX>) (image=<HEX>)\r\n"
                       "exception on thread: <hex>X (<dec>)\r\n"
                       "ACCESS_VIOLATION Code c0000005\r\nEXCEPTION_PARAMETER0: <hex>\r\nEXCEPTION_PARAMETER1: <hex>\r\n" + std::string (reportEnd));
    EXPECT_FALSE (juce::String (getReport (log)).contains ("(" + juce::String (processId) + ")"));
    expectDump (getDumps(), getDescription());
}

TEST_F (CrashProcessTest, EveryLineLoggedBeforeAServiceCrashIsWrittenBeforeTheReport)
{
    // The logger had not written the lines when the service crashed: the handler waits for it.
    ASSERT_EQ (run ({ "segv", "service", "--lines", "500" }), 45) << output;
    const auto log = juce::String (readLog ("Crashing"));
    juce::StringArray lines;
    // Up to the report's first line, which is left out.
    lines.addTokens (log.upToLastOccurrenceOf ("Error: Unhandled exception", false, false).upToLastOccurrenceOf ("\r\n", false, false), "\r\n", {});
    lines.removeEmptyStrings();
    juce::StringArray numbered;
    for (const auto& line : lines)
        if (line.contains ("\tline ") || line.contains (" line "))
            numbered.add (line.fromLastOccurrenceOf ("line ", false, false));
    ASSERT_EQ (numbered.size(), 500);
    for (int i = 0; i < 500; ++i)
        ASSERT_EQ (numbered[i], juce::String (i + 1));
    EXPECT_TRUE (lines[lines.size() - 1].endsWith ("line 500")) << lines[lines.size() - 1];
}

//==============================================================================
TEST_F (CrashProcessTest, ACrashAfterTheProgramIsGoneDumpsUnderTheUserDirectoryWithoutReport)
{
    ASSERT_EQ (run ({ "after-stop", "segv" }, true), 45) << output;
    const auto log = readLog ("Program");
    EXPECT_FALSE (juce::String (log).contains ("Error: ")) << log;
    EXPECT_TRUE (juce::String (log).endsWith ("bye ---------------------------------"));
    // The application's name is the folder, its name and version the description.
    expectDump (getProgramDirectory().getChildFile ("dumps"), "CrashTestApplication 3.1.4");
}

TEST_F (CrashProcessTest, ACrashBeforeAnyProgramDumpsUnderTheUserDirectoryWithoutReport)
{
    ASSERT_EQ (run ({ "no-program", "segv" }, true), 45) << output;
    EXPECT_EQ (output, "started\n");
    // Neither a program nor a JUCE application: the executable's name describes the dump.
    expectDump (getUserDirectory().getChildFile ("dumps"), "CrashTestApplication");
    EXPECT_FALSE (getProgramDirectory().exists());
}

TEST_F (CrashProcessTest, TheExitCodeOfACrashIsNeitherThatOfAKillNorThatOfAFailedStart)
{
    ASSERT_EQ (run ({ "abort", "service" }), 45) << output;
    EXPECT_NE (45, 42);
    EXPECT_NE (45, 255);
}

TEST_F (CrashProcessTest, AnExceptionOnTheMessageThreadGoesToTheCrashLogAndTheProgramGoesOn)
{
    ASSERT_EQ (run ({ "exception" }), 0) << output;
    EXPECT_EQ (output, "started\nsurvived\n");
    ASSERT_EQ (run ({ "exception" }), 0) << output;

    const auto text = readBytes (getDumps().getChildFile ("crash_log.txt"));
    const std::string line = "<time> Exception at <any>.cpp:<dec> 'thrown on the message thread'\r\n";
    EXPECT_TRUE (std::regex_match (text, makePattern (line + line))) << text;
    EXPECT_EQ (getDumps().findChildFiles (juce::File::findFiles, false).size(), 1);
}
