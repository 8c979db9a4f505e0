// The command line, and the other processes of the machine, read through /proc.
#include "Program.h"
#include <juce_events/juce_events.h>
#include <csignal>
#include <sys/types.h>
#include <unistd.h>

namespace tov
{

std::map<juce::String, juce::String> Program::getCommandLineArgumentsAndValues (juce::StringRef separators)
{
    std::map<juce::String, juce::String> result;
    for (const auto& parameter : juce::JUCEApplicationBase::getCommandLineParameterArray())
    {
        juce::StringArray tokens;
        tokens.addTokens (parameter, separators, "\"");
        if (tokens.isEmpty())
            continue;

        // The separators between the tokens of the value are lost: "--a=b:c" with "=:" gives "bc".
        const auto key = tokens[0];
        tokens.remove (0);
        result[key] = tokens.joinIntoString ("");
    }
    return result;
}

//==============================================================================
// The base name of a process's executable; "" when it cannot be read (another
// user's process, or one that ended), which skips the process.
static juce::String getExecutableName (const juce::String& processDirectory)
{
    char buffer[4096];
    const auto length = ::readlink ((processDirectory + "/exe").toRawUTF8(), buffer, sizeof (buffer) - 1);
    if (length <= 0)
        return {};
    buffer[length] = 0;
    auto path = juce::String::fromUTF8 (buffer, (int) length);
    if (path.endsWith (" (deleted)"))
        path = path.dropLastCharacters (10);
    return path.fromLastOccurrenceOf ("/", false, false);
}

std::set<unsigned long> Program::getAlreadyRunningProcessInstances()
{
    return getAlreadyRunningProcessInstances (getExecutableName ("/proc/self"));
}

std::set<unsigned long> Program::getAlreadyRunningProcessInstances (const juce::String& moduleName)
{
    std::set<unsigned long> result;
    constexpr int maximumProcesses = 1024;
    int numProcesses = 0;
    for (juce::RangedDirectoryIterator entry (juce::File ("/proc"), false, "*", juce::File::findDirectories); entry != juce::RangedDirectoryIterator(); ++entry)
    {
        const auto name = entry->getFile().getFileName();
        if (! name.containsOnly ("0123456789"))
            continue;
        if (++numProcesses > maximumProcesses)
            break;
        const auto id = (unsigned long) name.getLargeIntValue();
        if (id != 0 && getExecutableName (entry->getFile().getFullPathName()) == moduleName)
            result.insert (id);
    }
    result.erase ((unsigned long) ::getpid());
    return result;
}

bool Program::killAllInstances (std::set<unsigned long>& processIds)
{
    while (! processIds.empty())
    {
        const auto id = *processIds.begin();
        if (::kill ((pid_t) id, SIGKILL) != 0)
            return false;
        processIds.erase (processIds.begin());
    }
    return true;
}

juce::String Program::getCommandLineFromProcessId (unsigned long processId)
{
    // Files of /proc have no size: read until the end.
    juce::FileInputStream input (juce::File ("/proc/" + juce::String ((juce::uint64) processId) + "/cmdline"));
    juce::MemoryBlock block;
    if (! input.openedOk() || input.readIntoMemoryBlock (block) == 0)
        return {};

    juce::StringArray arguments;
    const auto* data = static_cast<const char*> (block.getData());
    for (size_t start = 0; start < block.getSize();)
    {
        size_t end = start;
        while (end < block.getSize() && data[end] != 0)
            ++end;
        const auto argument = juce::String::fromUTF8 (data + start, (int) (end - start));
        arguments.add (argument.containsChar (' ') ? argument.quoted() : argument);
        start = end + 1;
    }
    return arguments.joinIntoString (" ");
}

} // namespace tov
