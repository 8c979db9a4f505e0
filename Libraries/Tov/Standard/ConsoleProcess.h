#pragma once

#include <juce_core/juce_core.h>

namespace tov
{

/** A child program whose standard input is written, and whose standard output and standard
    error are read, through pipes.

    create starts it; the object ends the pipes when it goes, but not the child: kill does.
    Each object is used by one thread at a time.
*/
class ConsoleProcess
{
public:
    /** Starts the executable with the arguments (one text, as a command line writes them) in
        the working directory, or in the current one when it is empty. Null when it cannot start. */
    static ConsoleProcess* create (const juce::String& executable, const juce::String& arguments, const juce::String& workingDirectory);

    virtual ~ConsoleProcess() = default;

    /** Reads what the child wrote, waiting at most the time-out for it: the number of bytes read,
        0 once the output has ended, -1 when nothing came in time. */
    virtual int readOutput (void* buffer, int maxBytes, int timeOutMilliseconds) = 0;
    /** Writes to the child's standard input; false unless all of it was written. */
    virtual bool writeInput (const void* data, int numBytes) = 0;
    /** True while the child runs; once it has ended, false with its exit code (128 plus the
        signal's number for a child that a signal ended). */
    virtual bool isRunning (int& exitCode) = 0;
    virtual unsigned long getProcessId() const = 0;

    /** Ends the child's standard input, as a child that reads until the end expects. */
    virtual void closeInput() = 0;
    /** Waits until the child has ended, at most the time-out: its exit code, or -1 while it runs. */
    virtual int waitForExit (int timeOutMilliseconds) = 0;

    /** Ends the child at once if it runs, and waits for its end. */
    void kill();

    /** Reads the output until it ends or the time-out passes. */
    juce::String readAllOutput (int timeOutMilliseconds);

protected:
    virtual bool start() = 0;
};

} // namespace tov
