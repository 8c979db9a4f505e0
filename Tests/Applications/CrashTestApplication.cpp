// A program that crashes as told, for the tests of the crash handling.
//   CrashTestApplication KIND THREAD [--lines N] [--no-dump]
//     KIND: segv, bus, ill, fpe, fpe-float, trap, abort, terminate, overflow, deliberate
//     THREAD: message (a callback of the message loop), service (a pass of a threaded service
//     with a log of its own), connection (connectionMade of a client connection), logger
//     (a fault signal sent to the logger thread: nothing on it can be made to fault)
//     --lines N: the crashing thread first logs "line 1" ... "line N" on its context
//   CrashTestApplication exception        throws on the message thread, says "survived", exits 0
//   CrashTestApplication after-stop KIND  crashes in removeLibraries, once the program is gone
//   CrashTestApplication no-program KIND  crashes with a started exception filter and no program
// It says "started" before it crashes.
#include "ApplicationSupport.h"
#include <Tov/Network/InterprocessConnection.h>
#include <Tov/Standard/CrashDump.h>
#include <Tov/Standard/ExecutionContext.h>
#include <Tov/Standard/ExceptionFilter.h>
#include <Tov/Standard/Program.h>
#include <Tov/Standard/RegisteredService.h>
#include <juce_events/juce_events.h>
#include <cfenv>
#include <csignal>
#include <fcntl.h>
#include <pthread.h>
#include <stdexcept>
#include <sys/mman.h>
#include <unistd.h>

using namespace tov;

namespace
{
juce::String kind, threadKind;
int numLines = 0;

using applications::say;

int recurse (int depth)
{
    volatile char frame[1024];
    frame[0] = (char) depth;
    return recurse (depth + 1) + frame[0];
}

[[noreturn]] void crash (const juce::String& what)
{
    if (what == "segv")
    {
        volatile uintptr_t address = 16;
        *reinterpret_cast<volatile int*> (address) = 1;
    }
    else if (what == "bus")
    {
        // A page of a file beyond its end.
        auto file = juce::File::createTempFile ("crashBus");
        file.create();
        const int descriptor = ::open (file.getFullPathName().toRawUTF8(), O_RDONLY);
        file.deleteFile();
        auto* page = static_cast<volatile char*> (::mmap (nullptr, 4096, PROT_READ, MAP_SHARED, descriptor, 0));
        say (juce::String ((int) page[0]));
    }
    else if (what == "ill")
        __builtin_trap();
    else if (what == "fpe")
    {
        // Both volatile: a constant dividend lets the compiler replace the division by comparisons.
        volatile int seven = 7, zero = 0;
        say (juce::String (seven / zero));
    }
    else if (what == "fpe-float")
    {
        feenableexcept (FE_DIVBYZERO);
        volatile double zero = 0.0;
        say (juce::String (1.0 / zero));
    }
    else if (what == "trap")
        asm volatile ("int3");
    else if (what == "abort")
        std::abort();
    else if (what == "terminate")
        std::terminate();
    else if (what == "overflow")
        say (juce::String (recurse (0)));
    else if (what == "deliberate")
        Program::assertionReport ("the impossible happened", false, true);
    ::_exit (3);   // an unknown kind, or a crash that did not happen
}

[[noreturn]] void logLinesThenCrash()
{
    for (int i = 1; i <= numLines; ++i)
        ExecutionContext::get().information ("line " + juce::String (i));
    crash (kind);
}

class CrashingService : public RegisteredService
{
public:
    CrashingService() : RegisteredService ("Crashing") {}
    void getPeers (std::vector<Peer*>&) override {}

protected:
    bool serviceUpdated() override
    {
        logLinesThenCrash();
    }
};

class CrashingListener : public InterprocessConnectionListener
{
public:
    void connectionMade (InterprocessConnection&) override  { logLinesThenCrash(); }
    void connectionLost (InterprocessConnection&) override  {}
    void messagesReceived (InterprocessConnection&, const juce::MemoryBlock&) override {}
};

class CrashTestProgram : public Program
{
public:
    CrashTestProgram() : Program ("CrashTestApplication", "main", 3, 1, 4, "crash") {}

protected:
    bool programStarted() override
    {
        say ("started");
        if (kind == "exception")
            juce::MessageManager::callAsync ([] { throw std::runtime_error ("thrown on the message thread"); });
        else if (threadKind == "message")
            juce::MessageManager::callAsync ([] { logLinesThenCrash(); });
        else if (threadKind == "service")
            startCrashingService();
        else if (threadKind == "connection")
            connectToListener();
        else if (threadKind == "logger")
            ::pthread_kill ((pthread_t) getLoggerThread()->getThreadId(), SIGSEGV);
        // After the exception was handled, the application still runs; the other crashes end it.
        if (kind == "exception" || threadKind == "after-stop")
            juce::MessageManager::callAsync ([] { say ("survived"); juce::JUCEApplicationBase::quit(); });
        return true;
    }

    void removeLibraries (Library&) override
    {
        if (threadKind == "after-stop")
            crash (kind);
    }

private:
    // Made once the library tree exists; never destroyed, as the process ends by crashing.
    std::unique_ptr<CrashingService> service;
    juce::StreamingSocket listener;
    CrashingListener connectionListener;
    std::unique_ptr<InterprocessConnection> connection;

    void startCrashingService()
    {
        service = std::make_unique<CrashingService>();
        service->enableLogging();
        service->startService (false);
    }

    void connectToListener()
    {
        int port = 0;
        for (int candidate = 20000 + (int) (::getpid() % 20000); port == 0; ++candidate)
            if (listener.createListener (candidate, "127.0.0.1"))
                port = candidate;
        connection = std::make_unique<InterprocessConnection>();
        connection->setListener (&connectionListener);
        connection->connect (HostIdentifier (HostIdentifier::localhost), NetworkAddress (HostIdentifier::localhost, (unsigned int) port), 1000);
    }
};

juce::JUCEApplicationBase* createApplication()
{
    return Program::createApplication (new CrashTestProgram());
}
} // namespace

int main (int argc, char* argv[])
{
    if (argc < 2)
        return 2;
    kind = argv[1];
    threadKind = argc > 2 ? argv[2] : "";
    for (int i = 3; i < argc; ++i)
    {
        if (juce::String (argv[i]) == "--lines" && i + 1 < argc)
            numLines = juce::String (argv[++i]).getIntValue();
        else if (juce::String (argv[i]) == "--no-dump")
            CrashDump::setEnabled (false);
    }

    if (kind == "no-program")
    {
        ExceptionFilter filter;
        filter.start();
        say ("started");
        crash (threadKind);
    }
    if (kind == "after-stop")
        std::swap (kind, threadKind);

    juce::JUCEApplicationBase::createInstance = &createApplication;
    return juce::JUCEApplicationBase::main (argc, (const char**) argv);
}
