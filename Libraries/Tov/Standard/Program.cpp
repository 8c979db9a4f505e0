#include "Program.h"
#include "ProgramGetSoftwareVersionMethod.h"
#include "LoggerExecutionContextView.h"
#include "Profiler/ProfilerCommandLine.h"
#include "Profiler/Profiler.h"
#include "TextDrawingWarmUp.h"
#include "TimeText.h"
#include "../Core/Class.h"
#include "../Core/Library.h"
#include "../Core/State.h"
#include "../Core/StateObjectExporter.h"
#include <juce_events/juce_events.h>
#include <algorithm>
#include <atomic>

namespace tov
{

TOV_BEGIN_CLASS (Program)
    TOV_VARIABLE (startTime)
    TOV_VARIABLE (softwareVersion)
    TOV_METHOD (getSoftwareVersion, SoftwareVersion, ProgramGetSoftwareVersionMethod,
                { "httpUri", ProgramGetSoftwareVersionMethod::httpUri },
                { "httpVerb", ProgramGetSoftwareVersionMethod::httpVerb })
TOV_END_CLASS()

std::atomic<Program*> Program::instance { nullptr };
std::atomic<bool> Program::powerSaveMode { false };

static Program::SequenceListener& getSequenceListener()
{
    static Program::SequenceListener listener;
    return listener;
}

void Program::setSequenceListener (SequenceListener listener)
{
    getSequenceListener() = std::move (listener);
}

static void step (const char* name)
{
    if (auto& listener = getSequenceListener())
        listener (name);
}

//==============================================================================
// Bumped at every change of any program's table of services, and when a program comes or
// goes, so that an answer kept by a thread is never taken from another table or another time.
static std::atomic<uint64_t> servicesGeneration { 0 };

Program::Program (const juce::String& programName, const juce::String& branchName,
                  uint64_t majorVersion, uint64_t minorVersion, uint64_t buildRevision, const juce::String& commitHash)
    : softwareVersion (programName, branchName, majorVersion, minorVersion, buildRevision, commitHash)
{
    instance = this;
    servicesGeneration.fetch_add (1, std::memory_order_release);
}

Program::~Program()
{
    // Deliberately shorter than in stopProgram: a program that was never
    // stopped properly should not hold up the end of the process.
    stopLoggerThread (1000);
    instance = nullptr;
    servicesGeneration.fetch_add (1, std::memory_order_release);
}

Program& Program::get() noexcept
{
    auto* program = instance.load();
    jassert (program != nullptr);
    return *program;
}

bool Program::isStillRunning() noexcept
{
    return instance.load() != nullptr;
}

//==============================================================================
// The crash handler and the logger start before anything can crash or log; the
// first line comes only once the library tree exists.
bool Program::startProgram()
{
    step ("start the exception filter");
    exceptionFilter.start();
    step ("start the logger thread");
    startLoggerThread();
    step ("warm up text drawing");
    warmUpTextDrawing();
    step ("set the start time");
    startTime.set (juce::Time::getCurrentTime());
    step ("initialize tov");
    auto* root = initializeTov();
    step ("add the program log view");
    programExecutionContext.addView (new LoggerExecutionContextView ("Program"));

    step ("load libraries");
    {
        // Left also when addLibraries throws.
        struct Block
        {
            ExecutionContext& context;
            explicit Block (ExecutionContext& c) : context (c)  { context.enter ("Load Libraries"); }
            ~Block()                                            { context.leave(); }
        } block (programExecutionContext);
        addLibraries (*root);
    }

    // Stays open until stopProgram: every line of the process is indented at least once.
    step ("enter the program block");
    programExecutionContext.enter ("Program");
    logStartLines();
    step ("configure the profiler");
    ProfilerCommandLine::installProfiler();
    step ("program started");
    return programStarted();
}

void Program::logStartLines()
{
    step ("log the command line");
    programExecutionContext.information ("Command Line: " + juce::JUCEApplicationBase::getCommandLineParameterArray().joinIntoString (" "));
    step ("log the program directory");
    programExecutionContext.information ("Program directory: " + getProgramDirectory ({}).getFullPathName());
    step ("log the resources directory");
    programExecutionContext.information ("Resources directory: " + getProgramDirectory ("Skins").getParentDirectory().getFullPathName());
    step ("log the data directory");
    programExecutionContext.information ("Data directory: " + getProgramDataDirectory ({}, true).getFullPathName());
}

// Views die while the instance is still set, so that the bye banner and the
// close reach the logger; the logger stops only after that.
int Program::stopProgram()
{
    step ("set currently stopping");
    currentlyStopping = true;
    step ("program stopped");
    const int exitCode = programStopped();
    step ("leave the program block");
    programExecutionContext.leave();
    step ("delete the program log views");
    programExecutionContext.deleteAllViews();
    step ("clear the instance");
    instance = nullptr;

    step ("release class default objects");
    auto* root = Library::getRootLibrary();
    root->releaseClassDefaultObjects();
    step ("remove libraries");
    removeLibraries (*root);
    step ("unset the profiler");
    Profiler::set (nullptr);
    step ("deinitialize tov");
    deinitializeTov();

    step ("stop the logger thread");
    // Entries still queued when the logger stops are lost: let it write the
    // last lines first, within the same time-out as the stop itself.
    if (loggerThread != nullptr)
        loggerThread->waitUntilDrained (2000);
    stopLoggerThread (2000);
    step ("stop the exception filter");
    exceptionFilter.stop();
    return exitCode;
}

void Program::startLoggerThread()
{
    if (loggerThread != nullptr)
        return;
    loggerThread = std::make_unique<LoggerThread>();
    loggerThread->startThread();
}

void Program::stopLoggerThread (int timeOutMilliseconds)
{
    if (loggerThread == nullptr)
        return;

    // A thread that did not stop in time is still running inside its object:
    // leaking the object is safer than deleting it under the thread's feet.
    if (loggerThread->stopThread (timeOutMilliseconds))
        loggerThread.reset();
    else
        loggerThread.release();
}

//==============================================================================
// A thread asks for its own service at every address it resolves and every identifier it
// draws: it keeps its last answer for as long as no table of services changed.
Service* Program::getServiceByThreadId (void* threadId) const
{
    if (! isStillRunning())
        return nullptr;
    struct Answer { const Program* program; uint64_t generation; void* threadId; Service* service; };
    // Read through the thread pointer (initial-exec, 32 bytes of static TLS), not the loader.
    [[gnu::tls_model ("initial-exec")]] thread_local Answer last { nullptr, 0, nullptr, nullptr };
    if (last.program == this && last.threadId == threadId && last.generation == servicesGeneration.load (std::memory_order_acquire))
        return last.service;

    const juce::ScopedLock lock (servicesLock);
    const auto found = servicesByThread.find (threadId);
    last = { this, servicesGeneration.load (std::memory_order_relaxed), threadId, found != servicesByThread.end() ? found->second : nullptr };
    return last.service;
}

void Program::registerService (Service& service)
{
    const juce::ScopedLock lock (servicesLock);
    servicesByThread[(void*) juce::Thread::getCurrentThreadId()] = &service;
    servicesGeneration.fetch_add (1, std::memory_order_release);
}

bool Program::registerPeer (Peer& peer)
{
    return isStillRunning() && peerMap.registerPeer (peer);
}

bool Program::unregisterPeer (Peer& peer)
{
    return isStillRunning() && peerMap.unregisterPeer (peer);
}

bool Program::postEnvelopToMessageTarget (const Object& target, Envelop* envelop, bool* targetNotFound) const
{
    return peerMap.postEnvelopToMessageTarget (target, envelop, targetNotFound);
}

bool Program::processReceivedNetworkMessage (const InterprocessConnection& connection, const juce::MemoryBlock& block) const
{
    return peerMap.processReceivedNetworkMessage (connection, block);
}

void Program::unregisterService()
{
    const juce::ScopedLock lock (servicesLock);
    servicesByThread.erase ((void*) juce::Thread::getCurrentThreadId());
    servicesGeneration.fetch_add (1, std::memory_order_release);
}

//==============================================================================
void Program::logPrint (const juce::File& file, const juce::String& text) const
{
    if (auto* logger = loggerThread.get())
        logger->enqueue (file, LoggerThread::printCommand, text);
}

void Program::logFlush (const juce::File& file) const
{
    if (auto* logger = loggerThread.get())
        logger->enqueue (file, LoggerThread::flushCommand);
}

void Program::logClose (const juce::File& file) const
{
    if (auto* logger = loggerThread.get())
        logger->enqueue (file, LoggerThread::closeCommand);
}

// Runs on the caller's thread, whenever the application asks: nothing in the
// library rotates logs by itself.
void Program::logMaxSize (uint64_t maxBytes) const
{
    auto* logger = loggerThread.get();
    if (logger == nullptr)
        return;

    struct LogFile
    {
        juce::File file;
        uint64_t size;
        juce::Time modified;
    };

    std::vector<LogFile> logs;
    uint64_t total = 0;
    for (const auto& file : getLogsDirectory (true).findChildFiles (juce::File::findFiles, false, "*.txt"))
    {
        logs.push_back ({ file, (uint64_t) file.getSize(), file.getLastModificationTime() });
        total += logs.back().size;
    }

    std::stable_sort (logs.begin(), logs.end(), [] (const LogFile& a, const LogFile& b) { return a.modified < b.modified; });

    // Open logs are skipped: with only those left, the total simply stays above the limit.
    for (const auto& log : logs)
    {
        if (total <= maxBytes)
            break;
        if (logger->deleteFileUnlessOpen (log.file))
            total -= log.size;
    }
}

} // namespace tov
