// The crash handler's parts that run without crashing: the report's texts, the dump's name and
// directory, the handlers it installs and puts back. The crashes themselves: CrashProcessTest.
#include "../Support/LogTestSupport.h"
#include "../Support/ScratchDirectory.h"
#include <Tov/Standard/Application.h>
#include <Tov/Standard/CrashDump.h>
#include <Tov/Standard/CrashReport.h>
#include <Tov/Standard/ExceptionFilter.h>
#include <Tov/Standard/TimeText.h>
#include <gtest/gtest.h>
#include <dlfcn.h>
#include <set>
#include <unistd.h>

using namespace tov;
using namespace tov::test;

//==============================================================================
TEST (CrashTextTest, WritesHexadecimalPaddedAndDecimal)
{
    CrashText<64> text;
    text.append ("x=").appendHex (0xabc, 8).append (" ").appendHex (0xabc, 1, false).append (" ").appendDecimal (1234567890123ull);
    EXPECT_STREQ (text.get(), "x=00000ABC abc 1234567890123");
    text.clear();
    text.appendHex (0).appendDecimal (0).appendHex (UINT64_MAX, 16);
    EXPECT_STREQ (text.get(), "00FFFFFFFFFFFFFFFF");
}

TEST (CrashTextTest, CutsOffWhatDoesNotFit)
{
    CrashText<8> text;
    text.append ("abcdef").append ("ghij");
    EXPECT_STREQ (text.get(), "abcdefg");
    EXPECT_EQ (text.size(), 7u);
}

//==============================================================================
TEST (CrashReportTest, EveryCodeHasItsName)
{
    const std::pair<uint32_t, const char*> names[] = {
        { 0xC0000005, "ACCESS_VIOLATION" }, { 0xC0000006, "IN_PAGE_ERROR" }, { 0xC0000008, "INVALID_HANDLE" },
        { 0xC000001D, "ILLEGAL_INSTRUCTION" }, { 0xC0000025, "NONCONTINUABLE_EXCEPTION" }, { 0xC0000026, "INVALID_DISPOSITION" },
        { 0xC000008C, "ARRAY_BOUNDS_EXCEEDED" }, { 0xC000008D, "FLT_DENORMAL_OPERAND" }, { 0xC000008E, "FLT_DIVIDE_BY_ZERO" },
        { 0xC000008F, "FLT_INEXACT_RESULT" }, { 0xC0000090, "FLT_INVALID_OPERATION" }, { 0xC0000091, "FLT_OVERFLOW" },
        { 0xC0000092, "FLT_STACK_CHECK" }, { 0xC0000093, "FLT_UNDERFLOW" }, { 0xC0000094, "INT_DIVIDE_BY_ZERO" },
        { 0xC0000095, "INT_OVERFLOW" }, { 0xC0000096, "PRIV_INSTRUCTION" }, { 0xC00000FD, "STACK_OVERFLOW" },
        { 0x80000001, "GUARD_PAGE" }, { 0x80000002, "DATATYPE_MISALIGNMENT" }, { 0x80000003, "BREAKPOINT" },
        { 0x80000004, "SINGLE_STEP" },
    };
    for (const auto& [code, name] : names)
        EXPECT_STREQ (CrashReport::getExceptionName (code), name) << std::hex << code;
}

TEST (CrashReportTest, AnyOtherCodeIsUnknown)
{
    EXPECT_STREQ (CrashReport::getExceptionName (0), "Unknown");
    EXPECT_STREQ (CrashReport::getExceptionName (CrashReport::fatalApplicationExit), "Unknown");
    EXPECT_STREQ (CrashReport::getExceptionName (0xC0000007), "Unknown");
}

TEST (CrashReportTest, SignalsTakeTheCodesOfTheirExceptions)
{
    EXPECT_EQ (CrashReport::getExceptionCode (SIGSEGV, SEGV_MAPERR, false), 0xC0000005u);
    EXPECT_EQ (CrashReport::getExceptionCode (SIGSEGV, SEGV_ACCERR, true), 0xC00000FDu);
    EXPECT_EQ (CrashReport::getExceptionCode (SIGBUS, BUS_ADRALN, false), 0x80000002u);
    EXPECT_EQ (CrashReport::getExceptionCode (SIGBUS, BUS_ADRERR, false), 0xC0000006u);
    EXPECT_EQ (CrashReport::getExceptionCode (SIGILL, ILL_PRVOPC, false), 0xC0000096u);
    EXPECT_EQ (CrashReport::getExceptionCode (SIGILL, ILL_ILLOPN, false), 0xC000001Du);
    EXPECT_EQ (CrashReport::getExceptionCode (SIGFPE, FPE_INTDIV, false), 0xC0000094u);
    EXPECT_EQ (CrashReport::getExceptionCode (SIGFPE, FPE_INTOVF, false), 0xC0000095u);
    EXPECT_EQ (CrashReport::getExceptionCode (SIGFPE, FPE_FLTDIV, false), 0xC000008Eu);
    EXPECT_EQ (CrashReport::getExceptionCode (SIGFPE, FPE_FLTOVF, false), 0xC0000091u);
    EXPECT_EQ (CrashReport::getExceptionCode (SIGFPE, FPE_FLTUND, false), 0xC0000093u);
    EXPECT_EQ (CrashReport::getExceptionCode (SIGFPE, FPE_FLTRES, false), 0xC000008Fu);
    EXPECT_EQ (CrashReport::getExceptionCode (SIGFPE, FPE_FLTINV, false), 0xC0000090u);
    EXPECT_EQ (CrashReport::getExceptionCode (SIGFPE, FPE_FLTSUB, false), 0xC000008Cu);
    EXPECT_EQ (CrashReport::getExceptionCode (SIGTRAP, TRAP_BRKPT, false), 0x80000003u);
    EXPECT_EQ (CrashReport::getExceptionCode (SIGTRAP, TRAP_TRACE, false), 0x80000004u);
    EXPECT_EQ (CrashReport::getExceptionCode (SIGABRT, SI_TKILL, false), CrashReport::fatalApplicationExit);
}

TEST (CrashReportTest, FlagsShowOneOfTheirTwoMnemonicsEach)
{
    CrashReport::Text clear, set, some;
    CrashReport::writeFlags (0, clear);
    CrashReport::writeFlags (0xed5, set);
    CrashReport::writeFlags (0x246, some);
    EXPECT_STREQ (clear.get(), "nc po na nz pl di up nv ");
    EXPECT_STREQ (set.get(), "cy pe ac zr ng ei dn ov ");
    EXPECT_STREQ (some.get(), "nc pe na zr pl ei up nv ");
}

TEST (CrashReportTest, RegistersHaveTheirThreeFixedFormats)
{
    CrashReport::Registers r;
    r.rax = 1; r.rbx = 0xabadf00dabadf00d; r.rcx = 3; r.rdx = 4; r.rsi = 5; r.rdi = 6;
    r.rip = 0x401000; r.rsp = 0x7ffc0000; r.rbp = 0x7ffc0010; r.efl = 0x3246;
    r.cs = 0x33; r.ss = 0x2b; r.fs = 1; r.gs = 2;
    CrashReport::Text text;
    CrashReport::writeRegisters (r, text);
    EXPECT_STREQ (text.get(),
                  "rax=0000000000000001 rbx=ABADF00DABADF00D rcx=0000000000000003\n"
                  "rdx=0000000000000004 rsi=0000000000000005 rdi=0000000000000006\n"
                  "rip=0000000000401000 rsp=000000007FFC0000 rbp=000000007FFC0010\n"
                  "iopl=3 nc pe na zr pl ei up nv cs=0033  ss=002B  ds=0000  es=0000  fs=0001  gs=0002  efl=00003246\n");
}

TEST (CrashReportTest, AnAddressInNoModuleWritesNoModuleLine)
{
    CrashReport::Text text;
    CrashReport::writeModule (8, text);
    EXPECT_STREQ (text.get(), "");
}

TEST (CrashReportTest, TheReportGivesThreadExceptionParametersAndRegistersInThisOrder)
{
    CrashReport report;
    report.code = 0xC0000005;
    report.threadId = 0x1a2b;
    report.numParameters = 2;
    report.parameters[0] = 1;
    report.parameters[1] = 0xdeadbeef;
    CrashReport::Text text;
    report.write (text);
    EXPECT_STREQ (text.get(),
                  "exception on thread: 1a2bX (6699)\n"
                  "ACCESS_VIOLATION Code c0000005\n"
                  "EXCEPTION_PARAMETER0: 1\n"
                  "EXCEPTION_PARAMETER1: deadbeef\n"
                  "rax=0000000000000000 rbx=0000000000000000 rcx=0000000000000000\n"
                  "rdx=0000000000000000 rsi=0000000000000000 rdi=0000000000000000\n"
                  "rip=0000000000000000 rsp=0000000000000000 rbp=0000000000000000\n"
                  "iopl=0 nc po na nz pl di up nv cs=0000  ss=0000  ds=0000  es=0000  fs=0000  gs=0000  efl=00000000\n");
}

TEST (CrashReportTest, AtMostFifteenParametersAreWritten)
{
    CrashReport report;
    report.numParameters = 20;
    CrashReport::Text text;
    report.write (text);
    const juce::String written (text.get());
    EXPECT_TRUE (written.contains ("EXCEPTION_PARAMETER14: 0\n"));
    EXPECT_FALSE (written.contains ("EXCEPTION_PARAMETER15"));
}

namespace
{
juce::String getModuleLine (const void* address)
{
    CrashReport::Text text;
    CrashReport::writeModule ((uint64_t) address, text);
    return text.get();
}

juce::String getExpectedModuleLine (const void* address, const juce::String& name)
{
    Dl_info info {};
    EXPECT_NE (::dladdr (address, &info), 0);
    const auto base = (uint64_t) info.dli_fbase;
    return "Unhandled exception in " + name + "+" + juce::String::toHexString ((juce::int64) ((uint64_t) address - base)).toUpperCase()
         + " (Rip=" + juce::String::toHexString ((juce::int64) address).paddedLeft ('0', 16).toUpperCase()
         + ") (image=" + juce::String::toHexString ((juce::int64) base).paddedLeft ('0', 16).toUpperCase() + ")\n";
}

void functionOfTheTestProgram() {}
} // namespace

TEST (CrashReportTest, TheModuleLineNamesTheLibraryItsOffsetAndItsImage)
{
    const auto* address = reinterpret_cast<const char*> (&CrashReport::getExceptionName) + 3;
    EXPECT_EQ (getModuleLine (address), getExpectedModuleLine (address, "libtov.so"));
}

TEST (CrashReportTest, TheModuleLineOfTheExecutableNamesTheExecutable)
{
    const auto* address = reinterpret_cast<const void*> (&functionOfTheTestProgram);
    EXPECT_EQ (getModuleLine (address), getExpectedModuleLine (address, "tovTests"));
}

//==============================================================================
TEST (CrashDumpTest, TheTimeOfTheNameHasNoPadding)
{
    CrashDump::Path epoch, later, shifted, beforeEpoch;
    CrashDump::writeFileNameTime (0, 0, epoch);
    CrashDump::writeFileNameTime (1772874302, 0, later);          // 2026-03-07 09:05:02 UTC
    CrashDump::writeFileNameTime (1772874302, -10 * 3600, shifted);
    CrashDump::writeFileNameTime (-1, 0, beforeEpoch);
    EXPECT_STREQ (epoch.get(), "1970-1-1_0-0-0");
    EXPECT_STREQ (later.get(), "2026-3-7_9-5-2");
    EXPECT_STREQ (shifted.get(), "2026-3-6_23-5-2");
    EXPECT_STREQ (beforeEpoch.get(), "1969-12-31_23-59-59");
}

TEST (CrashDumpTest, TheTimeOfTheNameIsTheTimeTextOfFileNames)
{
    // Leap days and ends of months and years, local time being UTC in the tests.
    for (const juce::int64 seconds : { 951782400ll, 1709164800ll, 1735689599ll, 4102444800ll, 1764070212ll })
    {
        CrashDump::Path text;
        CrashDump::writeFileNameTime (seconds, 0, text);
        EXPECT_EQ (juce::String (text.get()), TimeText::toFileNameString (juce::Time (seconds * 1000))) << seconds;
    }
}

TEST (CrashDumpTest, EnsureDirectoryCreatesEveryMissingParent)
{
    const ScratchDirectory root;
    const auto deep = root.getChildFile ("a").getChildFile ("b").getChildFile ("dumps");
    EXPECT_TRUE (CrashDump::ensureDirectory (deep.getFullPathName().toRawUTF8()));
    EXPECT_TRUE (deep.isDirectory());
    EXPECT_TRUE (CrashDump::ensureDirectory (deep.getFullPathName().toRawUTF8()));
    EXPECT_FALSE (CrashDump::ensureDirectory ("/proc/no/such/dumps"));
}

TEST (CrashDumpTest, WithoutAProgramTheDumpGoesToTheUserApplicationDataDirectory)
{
    // The test program has no JUCE application: its executable's name stands for it.
    CrashDump::prepare();
    CrashDump::Path path;
    const auto before = juce::Time::getCurrentTime();
    CrashDump::makePath (path);
    const juce::String text (path.get());
    const auto directory = juce::File::getSpecialLocation (juce::File::userApplicationDataDirectory).getChildFile ("dumps");
    ASSERT_TRUE (text.startsWith (directory.getFullPathName() + "/")) << text;
    EXPECT_TRUE (text.endsWith (" tovTests.dmp")) << text;
    const auto time = text.fromLastOccurrenceOf ("/", false, false).upToFirstOccurrenceOf (" ", false, false);
    EXPECT_TRUE (time == TimeText::toFileNameString (before) || time == TimeText::toFileNameString (juce::Time::getCurrentTime())) << time;
}

TEST (CrashDumpProgramTest, WithARunningProgramTheDumpGoesToItsDumpsDirectoryUnderItsVersion)
{
    TestProgram program;
    ASSERT_TRUE (program.startProgram());
    CrashDump::Path path;
    CrashDump::makePath (path);
    const juce::String text (path.get());
    program.stopProgram();

    const auto directory = juce::File::getSpecialLocation (juce::File::userApplicationDataDirectory)
                               .getChildFile (program.getProgramName()).getChildFile ("dumps");
    EXPECT_TRUE (text.startsWith (directory.getFullPathName() + "/")) << text;
    EXPECT_TRUE (text.endsWith (" " + program.getSoftwareVersion().toString() + ".dmp")) << text;
    // Nothing is created before a crash.
    EXPECT_FALSE (directory.exists());
}

TEST (CrashDumpProgramTest, OnceTheProgramIsGoneTheDumpGoesToTheUserApplicationDataDirectory)
{
    TestProgram program;
    ASSERT_TRUE (program.startProgram());
    program.stopProgram();
    CrashDump::Path path;
    CrashDump::makePath (path);
    EXPECT_TRUE (juce::String (path.get()).startsWith (juce::File::getSpecialLocation (juce::File::userApplicationDataDirectory)
                                                           .getChildFile ("dumps").getFullPathName() + "/")) << path.get();
}

//==============================================================================
namespace
{
void customHandler (int, siginfo_t*, void*) {}
void customTerminate() { std::abort(); }

void* getHandler (int signal)
{
    struct sigaction action {};
    ::sigaction (signal, nullptr, &action);
    return (action.sa_flags & SA_SIGINFO) != 0 ? (void*) action.sa_sigaction : (void*) action.sa_handler;
}
} // namespace

TEST (ExceptionFilterTest, StopPutsThePreviousHandlersBack)
{
    const int signals[] = { SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGTRAP, SIGABRT };
    struct sigaction custom {}, saved[6];
    custom.sa_sigaction = &customHandler;
    custom.sa_flags = SA_SIGINFO;
    for (int i = 0; i < 6; ++i)
        ::sigaction (signals[i], &custom, &saved[i]);
    const auto savedTerminate = std::set_terminate (&customTerminate);
    const auto savedPipe = std::signal (SIGPIPE, SIG_DFL);

    {
        ExceptionFilter filter;
        filter.start();
        EXPECT_TRUE (filter.isStarted());
        for (int signal : signals)
            EXPECT_NE (getHandler (signal), (void*) &customHandler) << signal;
        EXPECT_NE (std::get_terminate(), &customTerminate);
        EXPECT_EQ (getHandler (SIGPIPE), (void*) SIG_IGN);
        filter.stop();
        EXPECT_FALSE (filter.isStarted());
    }
    for (int signal : signals)
        EXPECT_EQ (getHandler (signal), (void*) &customHandler) << signal;
    EXPECT_EQ (std::get_terminate(), &customTerminate);
    EXPECT_EQ (getHandler (SIGPIPE), (void*) SIG_DFL);

    for (int i = 0; i < 6; ++i)
        ::sigaction (signals[i], &saved[i], nullptr);
    std::set_terminate (savedTerminate);
    std::signal (SIGPIPE, savedPipe);
}

TEST (ExceptionFilterTest, AllSignalsHaveOneHandlerThatRunsOnTheAlternateStack)
{
    ExceptionFilter filter;
    filter.start();
    struct sigaction segv {}, abrt {};
    ::sigaction (SIGSEGV, nullptr, &segv);
    ::sigaction (SIGABRT, nullptr, &abrt);
    EXPECT_EQ ((void*) segv.sa_sigaction, (void*) abrt.sa_sigaction);
    EXPECT_EQ (segv.sa_flags & (SA_SIGINFO | SA_ONSTACK | SA_NODEFER), SA_SIGINFO | SA_ONSTACK | SA_NODEFER);
    filter.stop();
}

TEST (ExceptionFilterTest, StartingTwiceKeepsTheHandlersOfBeforeTheFirstStart)
{
    const auto before = getHandler (SIGSEGV);
    ExceptionFilter filter;
    filter.start();
    filter.start();
    filter.stop();
    filter.stop();
    EXPECT_EQ (getHandler (SIGSEGV), before);
}

TEST (ExceptionFilterTest, AThreadScopeGivesTheThreadAnAlternateStackForItsLifetime)
{
    stack_t before {};
    ::sigaltstack (nullptr, &before);
    {
        ExceptionFilter::ThreadScope scope;
        stack_t inside {};
        ::sigaltstack (nullptr, &inside);
        EXPECT_EQ (inside.ss_flags & SS_DISABLE, 0);
        EXPECT_EQ (inside.ss_size, 252u * 1024u);
    }
    stack_t after {};
    ::sigaltstack (nullptr, &after);
    EXPECT_EQ (after.ss_flags & SS_DISABLE, before.ss_flags & SS_DISABLE);
}

TEST (ExceptionFilterTest, TheExitCodeOfACrashIsDistinctFromTheOtherEndings)
{
    // killAllInstances' victims end with 42, a failed start with 255.
    EXPECT_EQ (ExceptionFilter::exitCode, 45);
}

//==============================================================================
namespace
{
juce::File getCrashLog (const Program& program)
{
    return juce::File::getSpecialLocation (juce::File::userApplicationDataDirectory)
        .getChildFile (program.getProgramName()).getChildFile ("dumps").getChildFile ("crash_log.txt");
}
/** Each line's leading time, checked to lie between earliest and latest, becomes "<time>". */
std::string replaceCrashLogTimes (const std::string& text, juce::Time earliest, juce::Time latest)
{
    std::set<juce::String> stamps;
    for (auto t = earliest.toMilliseconds() / 1000; t <= (latest.toMilliseconds() + 999) / 1000; ++t)
        stamps.insert (TimeText::toString (juce::Time (t * 1000)));
    std::string result;
    size_t start = 0;
    while (start < text.size())
    {
        auto end = text.find ("\r\n", start);
        end = end == std::string::npos ? text.size() : end + 2;
        const auto line = text.substr (start, end - start);
        result += stamps.count (juce::String (line.substr (0, 19))) != 0 ? "<time>" + line.substr (19) : line;
        start = end;
    }
    return result;
}
} // namespace

TEST (CrashLogTest, AnUnhandledExceptionAppendsALineWithItsSourceAndText)
{
    auto* program = new TestProgram();
    std::unique_ptr<juce::JUCEApplicationBase> application (Program::createApplication (program));
    application->initialise ({});
    const auto log = getCrashLog (*program);
    const auto before = juce::Time::getCurrentTime();
    const std::runtime_error exception ("out of range");
    application->unhandledException (&exception, "Source.cpp", 42);
    application->unhandledException (nullptr, "Other.cpp", 7);
    const auto after = juce::Time::getCurrentTime();
    application->shutdown();

    EXPECT_EQ (replaceCrashLogTimes (readBytes (log), before, after), "<time> Exception at Source.cpp:42 'out of range'\r\n<time> Exception at Other.cpp:7\r\n");
}

TEST (CrashLogTest, TheLogGrowsByAppendingAndIsNeverRotated)
{
    auto* program = new TestProgram();
    std::unique_ptr<juce::JUCEApplicationBase> application (Program::createApplication (program));
    application->initialise ({});
    const auto log = getCrashLog (*program);
    const std::string earlier (100000, 'x');
    ASSERT_TRUE (log.getParentDirectory().createDirectory());
    ASSERT_TRUE (log.replaceWithData (earlier.data(), earlier.size()));
    application->unhandledException (nullptr, "Source.cpp", 1);
    application->shutdown();

    const auto text = readBytes (log);
    ASSERT_GT (text.size(), earlier.size());
    EXPECT_EQ (text.substr (0, earlier.size()), earlier);
    EXPECT_TRUE (juce::String (text).endsWith (" Exception at Source.cpp:1\r\n"));
    EXPECT_EQ (log.getParentDirectory().findChildFiles (juce::File::findFiles, false).size(), 1);
}
