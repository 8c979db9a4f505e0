// The smallest application on tov: a Program that starts, reads and writes its
// configuration, logs what it did, and stops.
//
//   HOME=/tmp/h ProgramData=/tmp/d ./build/Examples/ProgramExample
//
// writes $HOME/.config/ProgramExample/logs/ProgramExample main Program <start time>.txt
// and $HOME/.config/ProgramExample/configurations/Settings_1_0_0.configuration.
// With --profiler=Unreal --profilerMode=file it also records its scopes ("LoadSettings",
// "SaveSettings") in $HOME/.config/ProgramExample/traces/ProgramExample main Trace <start time>.utrace.
#include <Tov/Atomic/Atomic.h>
#include <Tov/Core/Library.h>
#include <Tov/Standard/Program.h>
#include <Tov/Standard/Profiler/ProfilerScope.h>
#include <juce_events/juce_events.h>
#include <iostream>

namespace
{

class ExampleSettings : public tov::Object
{
public:
    TOV_DECLARE_CLASS (ExampleSettings, Object)

    tov::String greeting;
    tov::Integer numRuns;
};

TOV_BEGIN_CLASS (ExampleSettings)
    TOV_VARIABLE (greeting, { "default", "\"Hello\"" })
    TOV_VARIABLE (numRuns)
TOV_END_CLASS()

class ExampleProgram : public tov::Program
{
public:
    ExampleProgram() : Program ("ProgramExample", "main", 1, 0, 0, "example") {}

protected:
    void addLibraries (tov::Library& root) override
    {
        auto* library = new tov::NamedLibrary ("Example", {});
        library->addClass<ExampleSettings>();
        root.addLibrary (library);
    }

    void removeLibraries (tov::Library& root) override
    {
        root.removeLibrary ("Example");
    }

    bool programStarted() override
    {
        auto& context = getProgramExecutionContext();
        ExampleSettings settings;
        {
            const tov::ProfilerScope scope ("LoadSettings");
            if (! loadConfiguration (context, "Settings", settings))
                return false;
        }
        settings.numRuns.increment();
        context.information (settings.greeting.get() + ", run " + juce::String (settings.numRuns.get()));
        context.information ("Machine-wide data directory: " + getProgramDataDirectory ({}, false).getFullPathName());
        {
            const tov::ProfilerScope scope ("SaveSettings");
            saveConfiguration (context, "Settings", settings);
        }
        std::cout << "Log: " << getLogFile ("Program", ".txt", true).getFullPathName() << std::endl;

        // Nothing else to do: the message loop ends after this start.
        juce::JUCEApplicationBase::quit();
        return true;
    }
};

juce::JUCEApplicationBase* createApplication()
{
    return tov::Program::createApplication (new ExampleProgram());
}

} // namespace

int main (int argc, char* argv[])
{
    juce::JUCEApplicationBase::createInstance = &createApplication;
    return juce::JUCEApplicationBase::main (argc, (const char**) argv);
}
