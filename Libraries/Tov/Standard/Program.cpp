#include "Program.h"
#include "LoggerExecutionContextView.h"
#include "TimeText.h"
#include <algorithm>

namespace tov
{

TOV_BEGIN_CLASS (Program)
TOV_END_CLASS()

std::atomic<Program*> Program::instance { nullptr };

juce::String Program::Version::versionNumberToString (const juce::String& separator) const
{
    return juce::String ((juce::uint64) majorVersion) + separator
         + juce::String ((juce::uint64) minorVersion) + separator
         + juce::String ((juce::uint64) buildRevision);
}

//==============================================================================
Program::Program (const juce::String& programName, const juce::String& branchName,
                  uint64_t majorVersion, uint64_t minorVersion, uint64_t buildRevision, const juce::String& commitHash)
    : version { programName, branchName, majorVersion, minorVersion, buildRevision, commitHash }
{
    instance = this;
}

Program::~Program()
{
    // Deliberately shorter than in stopProgram: a program that was never
    // stopped properly should not hold up the end of the process.
    stopLoggerThread (1000);
    instance = nullptr;
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
// The logger starts before anything can log; the first line comes once the
// start time is known, because the log file is named after it.
bool Program::startProgram()
{
    startLoggerThread();
    startTime = juce::Time::getCurrentTime();
    programExecutionContext.addView (new LoggerExecutionContextView ("Program"));

    // Stays open until stopProgram: every line of the process is indented at least once.
    programExecutionContext.enter ("Program");
    return programStarted();
}

// Views die while the instance is still set, so that the bye banner and the
// close reach the logger; the logger stops only after that.
int Program::stopProgram()
{
    currentlyStopping = true;
    const int exitCode = programStopped();
    programExecutionContext.leave();
    programExecutionContext.deleteAllViews();
    instance = nullptr;

    // Entries still queued when the logger stops are lost: let it write the
    // last lines first, within the same time-out as the stop itself.
    if (loggerThread != nullptr)
        loggerThread->waitUntilDrained (2000);
    stopLoggerThread (2000);
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
juce::File Program::getProgramDataDirectory (const juce::String& subdirectory, bool forCurrentUser) const
{
    juce::File root;
    if (forCurrentUser)
    {
        root = juce::File::getSpecialLocation (juce::File::userApplicationDataDirectory);
    }
    else
    {
        // Only the machine-wide path has a company folder.
        const auto programData = juce::SystemStats::getEnvironmentVariable ("ProgramData", {});
        root = programData.isNotEmpty() && juce::File::isAbsolutePath (programData)
                   ? juce::File (programData)
                   : juce::File::getSpecialLocation (juce::File::commonApplicationDataDirectory);
        root = root.getChildFile ("KelvoTech");
    }

    const auto directory = root.getChildFile (version.programName);
    if (subdirectory.isEmpty())
    {
        if (! directory.exists())
            directory.createDirectory();
        return directory;
    }

    // Known children cost no file-system access; this is on the path of every new log.
    const auto child = directory.getChildFile (subdirectory);
    const juce::ScopedLock lock (dataDirectoriesLock);
    if (knownDataDirectories.find (child) != knownDataDirectories.end())
        return child;
    if (! child.exists())
        child.createDirectory();
    knownDataDirectories[child] = child.exists();
    return child;
}

juce::File Program::getLogFile (const juce::String& name, const juce::String& extension, bool withStartTime) const
{
    auto fileName = version.programName + " " + version.branchName + " " + name;
    if (withStartTime)
        fileName += " " + TimeText::toFileNameString (startTime);
    return getLogsDirectory (true).getChildFile (fileName + extension);
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
