#include "TestProcess.h"
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

extern char** environ;

namespace tov::test
{

TestProcess::TestProcess (const juce::StringArray& arguments, const std::map<juce::String, juce::String>& environment)
{
    int input[2], out[2];
    if (::pipe2 (input, O_CLOEXEC) != 0)
        return;
    if (::pipe2 (out, O_CLOEXEC) != 0)
    {
        ::close (input[0]);
        ::close (input[1]);
        return;
    }

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init (&actions);
    posix_spawn_file_actions_adddup2 (&actions, input[0], 0);
    posix_spawn_file_actions_adddup2 (&actions, out[1], 1);
    posix_spawn_file_actions_adddup2 (&actions, out[1], 2);

    std::vector<std::string> texts;
    for (char** variable = environ; *variable != nullptr; ++variable)
    {
        const std::string text (*variable);
        const auto name = juce::String (text.substr (0, text.find ('=')));
        if (environment.find (name) == environment.end())
            texts.push_back (text);
    }
    for (const auto& [name, value] : environment)
        texts.push_back ((name + "=" + value).toStdString());
    std::vector<char*> environmentPointers;
    for (auto& text : texts)
        environmentPointers.push_back (text.data());
    environmentPointers.push_back (nullptr);

    std::vector<std::string> argumentTexts;
    for (const auto& argument : arguments)
        argumentTexts.push_back (argument.toStdString());
    std::vector<char*> argumentPointers;
    for (auto& text : argumentTexts)
        argumentPointers.push_back (text.data());
    argumentPointers.push_back (nullptr);

    if (::posix_spawn (&processId, argumentPointers[0], &actions, nullptr, argumentPointers.data(), environmentPointers.data()) != 0)
        processId = -1;
    posix_spawn_file_actions_destroy (&actions);
    ::close (input[0]);
    ::close (out[1]);
    inputPipe = input[1];
    outputPipe = out[0];
}

TestProcess::~TestProcess()
{
    closeInput();
    if (processId > 0 && waitForExit (10000) < 0 && processId > 0)
    {
        ::kill (processId, SIGKILL);
        ::waitpid (processId, nullptr, 0);
    }
    if (outputPipe >= 0)
        ::close (outputPipe);
}

bool TestProcess::readSome (const Deadline& deadline)
{
    if (outputPipe < 0 || deadline.hasPassed())
        return false;
    pollfd descriptor { outputPipe, POLLIN, 0 };
    if (::poll (&descriptor, 1, deadline.getRemainingMilliseconds()) <= 0)
        return false;
    char buffer[4096];
    const auto numRead = ::read (outputPipe, buffer, sizeof (buffer));
    if (numRead <= 0)
        return false;
    output.append (buffer, (size_t) numRead);
    return true;
}

// The child's own line may follow a piece of JUCE's debug output on the same line: that output
// writes its text and its end of line in two writes, between which another thread may write.
bool TestProcess::waitForLine (const juce::String& line, int timeOutMilliseconds)
{
    const auto wanted = line.toStdString();
    return waitForOutput ([&] (const std::string& text)
    {
        size_t start = 0;
        for (size_t end; (end = text.find ('\n', start)) != std::string::npos; start = end + 1)
            if (end - start >= wanted.size() && text.compare (end - wanted.size(), wanted.size(), wanted) == 0)
                return true;
        return false;
    }, timeOutMilliseconds);
}

bool TestProcess::waitForOutput (const std::function<bool (const std::string&)>& condition, int timeOutMilliseconds)
{
    const Deadline deadline (timeOutMilliseconds);
    while (! condition (output))
        if (! readSome (deadline))
            return false;
    return true;
}

void TestProcess::closeInput()
{
    if (inputPipe >= 0)
        ::close (inputPipe);
    inputPipe = -1;
}

int TestProcess::waitForExit (int timeOutMilliseconds)
{
    if (processId <= 0)
        return -1;
    const Deadline deadline (timeOutMilliseconds);
    while (readSome (deadline))
        ;

    // The output ends when the child is gone (or closed it); a child that keeps it open
    // past the deadline counts as not ended.
    int status = 0;
    if (deadline.hasPassed())
    {
        if (::waitpid (processId, &status, WNOHANG) != processId)
            return -1;
    }
    else if (::waitpid (processId, &status, 0) != processId)
    {
        return -1;
    }
    processId = -1;
    return WIFEXITED (status) ? WEXITSTATUS (status) : -1;
}

} // namespace tov::test
