#pragma once

#include <Tov/Standard/Deadline.h>
#include <juce_core/juce_core.h>
#include <functional>
#include <map>
#include <string>
#include <sys/types.h>

namespace tov::test
{

/** A child process with a pipe on its standard input and one on its standard output
    (standard error merged), started with posix_spawn and extra environment variables.
    Every wait has a time-out; none sleeps. */
class TestProcess
{
public:
    TestProcess (const juce::StringArray& arguments, const std::map<juce::String, juce::String>& environment);
    ~TestProcess();

    bool isStarted() const noexcept     { return processId > 0; }
    pid_t getProcessId() const noexcept { return processId; }

    /** Reads output until a line that ends with line has arrived (a piece of JUCE's debug
        output may come first on the line); false on time-out or end of output. */
    bool waitForLine (const juce::String& line, int timeOutMilliseconds);
    /** Reads output until the condition holds for all read so far; false on time-out or end of output. */
    bool waitForOutput (const std::function<bool (const std::string&)>& condition, int timeOutMilliseconds);
    /** Ends the child's standard input. */
    void closeInput();
    /** Reads output until its end, then reaps the child; its exit code, or -1 on time-out or a signal. */
    int waitForExit (int timeOutMilliseconds);

    /** Everything read from the output so far. */
    const std::string& getOutput() const noexcept { return output; }

private:
    pid_t processId = -1;
    int inputPipe = -1, outputPipe = -1;
    std::string output;

    /** Reads what is there, waiting at most until the deadline; false at the end of output or time-out. */
    bool readSome (const Deadline& deadline);
};

} // namespace tov::test
