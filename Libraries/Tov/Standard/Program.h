#pragma once

#include "ExecutionContext.h"
#include "LoggerThread.h"
#include <atomic>
#include <cstdint>
#include <map>
#include <memory>

namespace tov
{

/** The process-wide singleton of an application built on tov.

    An application derives from it and constructs one instance. The program
    owns the start and stop order, the application's data directories, the
    thread that writes log files, and the execution context of every thread
    that has no service.
*/
class Program : public Object
{
public:
    TOV_DECLARE_CLASS (Program, Object)

    /** The numbers and names of this build, as the constructor received them. */
    struct Version
    {
        juce::String programName;
        juce::String branchName;
        uint64_t majorVersion = 0;
        uint64_t minorVersion = 0;
        uint64_t buildRevision = 0;
        juce::String commitHash;

        /** major, separator, minor, separator, revision. */
        juce::String versionNumberToString (const juce::String& separator) const;
    };

    Program (const juce::String& programName, const juce::String& branchName,
             uint64_t majorVersion, uint64_t minorVersion, uint64_t buildRevision, const juce::String& commitHash);
    ~Program() override;

    //==============================================================================
    /** Starts the logger before anything can log, then opens the program's log
        with its hello banner and the "Program" block, and last calls programStarted. */
    bool startProgram();
    /** Closes the "Program" block and the log, then stops the logger; returns programStopped's code. */
    int stopProgram();

    static Program& get() noexcept;
    /** True from construction until stopProgram clears the instance. Ask before get() on any path
        that may run late in the program's life. */
    static bool isStillRunning() noexcept;
    bool isCurrentlyStopping() const noexcept               { return currentlyStopping.load(); }

    //==============================================================================
    ExecutionContext& getProgramExecutionContext() noexcept { return programExecutionContext; }
    const juce::String& getProgramName() const noexcept     { return version.programName; }
    const Version& getVersion() const noexcept              { return version; }
    juce::Time getStartTime() const noexcept                { return startTime; }

    //==============================================================================
    /** The data directory of this program, or its named child, created when missing.
        A child is created once: one removed while the program runs stays removed. */
    juce::File getProgramDataDirectory (const juce::String& subdirectory, bool forCurrentUser) const;
    juce::File getLogsDirectory (bool forCurrentUser) const  { return getProgramDataDirectory ("logs", forCurrentUser); }
    /** programName branchName name [startTime]extension, in the logs directory; the extension holds its dot. */
    juce::File getLogFile (const juce::String& name, const juce::String& extension, bool withStartTime) const;

    //==============================================================================
    // Hand-offs to the logger thread; no-ops while there is none. None touches the disk.
    void logPrint (const juce::File& file, const juce::String& text) const;
    void logFlush (const juce::File& file) const;
    void logClose (const juce::File& file) const;

    /** Deletes the oldest closed logs until the "*.txt" files of the logs directory
        hold at most maxBytes. Open logs are never deleted, so the total may stay above. */
    void logMaxSize (uint64_t maxBytes) const;

    /** Null before startProgram and after stopProgram. */
    LoggerThread* getLoggerThread() const noexcept          { return loggerThread.get(); }

protected:
    /** The application's start; false makes startProgram fail. */
    virtual bool programStarted()                           { return true; }
    /** The application's stop, while everything still runs; the result is the exit code. */
    virtual int programStopped()                            { return 0; }

private:
    static std::atomic<Program*> instance;

    Version version;
    juce::Time startTime;
    ExecutionContext programExecutionContext;
    std::unique_ptr<LoggerThread> loggerThread;
    std::atomic<bool> currentlyStopping { false };

    mutable juce::CriticalSection dataDirectoriesLock;
    mutable std::map<juce::File, bool> knownDataDirectories;

    void startLoggerThread();
    void stopLoggerThread (int timeOutMilliseconds);

    JUCE_DECLARE_NON_COPYABLE (Program)
};

} // namespace tov
