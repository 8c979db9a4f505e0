#pragma once

#include "ExceptionFilter.h"
#include "ExecutionContext.h"
#include "LoggerThread.h"
#include "SoftwareVersion.h"
#include "Time.h"
#include "../Message/PeerMap.h"
#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <vector>

namespace juce { class JUCEApplicationBase; }

namespace tov
{

class Library;
class Service;

/** The process-wide singleton of an application built on tov.

    An application derives from it, constructs one instance on the heap and hands it to
    createApplication. The program owns the start and stop order of the library, the
    application's directories and configuration files, the thread that writes log files,
    the table of services by thread, and the process-level operations: other instances,
    processor affinity, power-save waits and eco mode.
*/
class Program : public Object
{
public:
    TOV_DECLARE_CLASS (Program, Object)

    Program (const juce::String& programName, const juce::String& branchName,
             uint64_t majorVersion, uint64_t minorVersion, uint64_t buildRevision, const juce::String& commitHash);
    ~Program() override;

    //==============================================================================
    /** Starts the crash handler and the logger before anything can log or crash, builds the
        library tree, opens the program's log with its hello banner and the "Program" block,
        and last calls programStarted. */
    bool startProgram();
    /** The start in reverse: programStopped, the log's end, the library tree, the logger and
        the crash handler; returns programStopped's code. */
    int stopProgram();

    static Program& get() noexcept;
    /** True from construction until stopProgram clears the instance. Ask before get() on any path
        that may run late in the program's life. */
    static bool isStillRunning() noexcept;
    bool isCurrentlyStopping() const noexcept               { return currentlyStopping.load(); }

    /** Allocates the JUCE application that runs this program; it holds a reference on it. */
    static juce::JUCEApplicationBase* createApplication (Program* program);

    //==============================================================================
    virtual bool systemRequestedQuit()                      { return true; }
    virtual bool moreThanOneInstanceAllowed()               { return true; }
    virtual void anotherInstanceStarted (const juce::String& commandLine) {}
    /** Null once the program stopped, or for a thread that registered no service. */
    virtual Service* getServiceByThreadId (void* threadId) const;
    virtual void getWellKnownBinaries (std::vector<juce::File>& result) const {}

    //==============================================================================
    ExecutionContext& getProgramExecutionContext() noexcept { return programExecutionContext; }
    const juce::String& getProgramName() const noexcept     { return softwareVersion.getProgramName().get(); }
    const SoftwareVersion& getSoftwareVersion() const noexcept { return softwareVersion; }
    juce::Time getStartTime() const noexcept                { return startTime.get(); }

    //==============================================================================
    /** The folder of the executable, or the nearest folder above it that holds the named child,
        which is then returned; the executable's folder when none does. Kept for the process. */
    static juce::File getProgramDirectory (const juce::String& subdirectory);
    /** The data directory of this program, or its named child, created when missing.
        A child is created once: one removed while the program runs stays removed. */
    juce::File getProgramDataDirectory (const juce::String& subdirectory, bool forCurrentUser) const;
    juce::File getConfigurationsDirectory (bool forCurrentUser) const { return getProgramDataDirectory ("configurations", forCurrentUser); }
    juce::File getLogsDirectory (bool forCurrentUser) const  { return getProgramDataDirectory ("logs", forCurrentUser); }
    juce::File getTracesDirectory (bool forCurrentUser) const { return getProgramDataDirectory ("traces", forCurrentUser); }
    /** programName branchName name [startTime]extension, in the logs directory; the extension holds its dot. */
    juce::File getLogFile (const juce::String& name, const juce::String& extension, bool withStartTime) const;
    /** Shows the newest log of this program in the file browser. */
    void revealLastLogInExplorer() const;
    /** True when DISPLAY or WAYLAND_DISPLAY names a display: only then can anything be shown to the user. */
    static bool hasDisplay();

    //==============================================================================
    /** Defaults first, then the file of this version or of the newest older version;
        no file at all is a success. */
    bool loadConfiguration (ExecutionContext& context, const juce::String& name, Object& target) const;
    bool saveConfiguration (ExecutionContext& context, const juce::String& name, const Object& source) const;
    /** Always under the running version's name: older files stay as they are. */
    bool saveConfiguration (ExecutionContext& context, const juce::String& name, const State& state) const;

    //==============================================================================
    /** Each parameter split at the separators: the first token is the key, the others joined
        without separators are the value. */
    static std::map<juce::String, juce::String> getCommandLineArgumentsAndValues (juce::StringRef separators);
    /** Other processes of the same executable, or of the named one; this process is left out. */
    static std::set<unsigned long> getAlreadyRunningProcessInstances();
    static std::set<unsigned long> getAlreadyRunningProcessInstances (const juce::String& moduleName);
    /** Kills them one by one, taking each out of the set; false at the first failure. */
    static bool killAllInstances (std::set<unsigned long>& processIds);
    /** The arguments another process started with, joined by blanks; "" when it cannot be read. */
    static juce::String getCommandLineFromProcessId (unsigned long processId);

    //==============================================================================
    /** Set by the application: waits of the library become long and imprecise to save power. */
    static std::atomic<bool> powerSaveMode;

    /** Sleeps, and busy-waits the last 6 ms for precision (unless in power-save mode). */
    static void preciseSleep (double milliseconds);
    static void yieldCurrentThreadAccordingToPowerSaveMode (bool yieldOnly);
    /** Waits on the current juce::Thread; false without one. */
    static bool letCurrentThreadWaitAccordingToPowerSaveMode (int milliseconds);
    /** Lowest priorities for the whole process, or normal ones again. True when every change succeeded. */
    static bool setProcessEcoMode (bool on);
    /** Keeps the machine from sleeping while on. */
    static bool setThreadDiscardOsSleepMode (bool on);
    static bool setProcessorAffinityMask (uint64_t mask);
    /** 0 when it cannot be read. */
    static uint64_t getProcessorAffinityMask();

    /** How many times preciseSleep gave the processor away with a 1 ms sleep, since the process started. */
    static uint64_t getNumPreciseSleepNaps() noexcept;

    //==============================================================================
    /** Maps the calling thread to the service; an earlier entry of that thread is replaced. */
    void registerService (Service& service);
    void unregisterService();

    /** False once the program has stopped; otherwise as PeerMap::registerPeer. */
    bool registerPeer (Peer& peer);
    bool unregisterPeer (Peer& peer);
    /** Takes ownership of the envelop and routes it to the target; see PeerMap. */
    bool postEnvelopToMessageTarget (const Object& target, Envelop* envelop, bool* targetNotFound) const;
    /** On a connection's thread: the envelop of a received block to its receiver; see PeerMap. */
    bool processReceivedNetworkMessage (const InterprocessConnection& connection, const juce::MemoryBlock& block) const;
    PeerMap& getPeerMap() noexcept                          { return peerMap; }

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

    //==============================================================================
    /** The routine behind TOV_ASSERT: the message goes to the error log (or debug output without
        a program), to a dialog when asked and there is a display, and with crash the process
        ends through the crash handler at a recognisable address. */
    static void assertionReport (const juce::String& message, bool showDialog, bool crash);

    //==============================================================================
    /** Called with the name of each step of the start and stop sequences just before it runs;
        for diagnostics of the start-up. Process-wide; null for none. */
    using SequenceListener = std::function<void (const char* step)>;
    static void setSequenceListener (SequenceListener listener);

protected:
    /** The application adds its libraries to the tree here, inside the "Load Libraries" block. */
    virtual void addLibraries (Library& root)               {}
    virtual void removeLibraries (Library& root)            {}
    /** The application's start; false makes startProgram fail. */
    virtual bool programStarted()                           { return true; }
    /** The application's stop, while everything still runs; the result is the exit code. */
    virtual int programStopped()                            { return 0; }

private:
    friend class ProgramStartSequence;
    static std::atomic<Program*> instance;

    SoftwareVersion softwareVersion;
    Time startTime;
    ExecutionContext programExecutionContext;
    ExceptionFilter exceptionFilter;
    std::unique_ptr<LoggerThread> loggerThread;
    std::atomic<bool> currentlyStopping { false };

    mutable juce::CriticalSection dataDirectoriesLock;
    mutable std::map<juce::File, bool> knownDataDirectories;

    PeerMap peerMap;

    mutable juce::CriticalSection servicesLock;
    std::map<void*, Service*> servicesByThread;

    void startLoggerThread();
    void stopLoggerThread (int timeOutMilliseconds);
    void logStartLines();
    juce::File getConfigurationFile (const juce::String& name) const;
    juce::File findConfigurationFile (ExecutionContext& context, const juce::String& name) const;

    JUCE_DECLARE_NON_COPYABLE (Program)
};

} // namespace tov
