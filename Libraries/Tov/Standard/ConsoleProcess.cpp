#include "ConsoleProcess.h"
#include "PosixConsoleProcess.h"
#include "Deadline.h"
#include "Program.h"
#include <memory>

namespace tov
{

ConsoleProcess* ConsoleProcess::create (const juce::String& executable, const juce::String& arguments, const juce::String& workingDirectory)
{
    std::unique_ptr<ConsoleProcess> process (new PosixConsoleProcess (executable, arguments, workingDirectory));
    return process->start() ? process.release() : nullptr;
}

void ConsoleProcess::kill()
{
    const auto processId = getProcessId();
    int exitCode = 0;
    if (processId == 0 || ! isRunning (exitCode))
        return;
    std::set<unsigned long> processIds { processId };
    if (Program::killAllInstances (processIds))
        // A killed process ends at once; waiting for it also keeps it from staying a zombie.
        waitForExit (10000);
}

juce::String ConsoleProcess::readAllOutput (int timeOutMilliseconds)
{
    juce::MemoryOutputStream output;
    const Deadline deadline (timeOutMilliseconds);
    char buffer[4096];
    for (;;)
    {
        const int numRead = readOutput (buffer, (int) sizeof (buffer), deadline.getRemainingMilliseconds());
        if (numRead <= 0)
            break;
        output.write (buffer, (size_t) numRead);
    }
    return output.toUTF8();
}

} // namespace tov
