// A program that the process tests start. It reports on standard output:
//   "started", "others: <ids>", "another instance: <command line>", "stopped".
// --single      a second instance is not allowed
// --hold        runs until its standard input ends
// --refuse      programStarted fails
#include "ApplicationSupport.h"
#include <Tov/Standard/Program.h>
#include <juce_events/juce_events.h>
#include <unistd.h>

namespace
{

bool hasOption (const char* option)
{
    return juce::JUCEApplicationBase::getCommandLineParameterArray().contains (option);
}

using tov::applications::say;

// Waits for the end of standard input, then asks the application to quit.
class StandardInputWatcher : public juce::Thread
{
public:
    StandardInputWatcher() : Thread ("Standard input") {}
    ~StandardInputWatcher() override { stopThread (-1); }

    void run() override
    {
        char buffer[256];
        while (::read (0, buffer, sizeof (buffer)) > 0)
            ;
        juce::MessageManager::callAsync ([] { juce::JUCEApplicationBase::quit(); });
    }
};

class TestApplicationProgram : public tov::Program
{
public:
    TestApplicationProgram() : Program ("ProgramTestApplication", "main", 2, 5, 9, "test") {}

    bool moreThanOneInstanceAllowed() override   { return ! hasOption ("--single"); }
    void anotherInstanceStarted (const juce::String& commandLine) override  { say ("another instance: " + commandLine); }

protected:
    bool programStarted() override
    {
        if (hasOption ("--refuse"))
            return false;
        juce::StringArray others;
        for (auto id : getAlreadyRunningProcessInstances())
            others.add (juce::String ((juce::uint64) id));
        say ("started");
        say ("others: " + others.joinIntoString (" "));
        if (hasOption ("--hold"))
            watcher.startThread();
        else
            juce::JUCEApplicationBase::quit();
        return true;
    }

    int programStopped() override
    {
        say ("stopped");
        return 0;
    }

private:
    StandardInputWatcher watcher;
};

juce::JUCEApplicationBase* createApplication()
{
    return tov::Program::createApplication (new TestApplicationProgram());
}

} // namespace

int main (int argc, char* argv[])
{
    juce::JUCEApplicationBase::createInstance = &createApplication;
    return juce::JUCEApplicationBase::main (argc, (const char**) argv);
}
