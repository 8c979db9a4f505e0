// A small studio on tov: an editor process keeps a scene of layers in an object space, edits
// it in undoable transactions, and serves it to a viewer process that it starts, which finds
// it by discovery, mirrors the scene and makes remote calls to it; then the editor renders a
// preview as a task, saves the scene and loads it again.
//
//   StudioExample session [DISCOVERYPORT] [--profiler=Unreal --profilerMode=file]
//                                      the whole session, printed a line per step; exit code 0
//                                      when the viewer's copy and the reloaded scene are the
//                                      editor's scene. With the profiler, a trace of it goes to
//                                      "traces", for tov-trace to read.
//   StudioExample viewer DISCOVERYPORT the viewer, which the session starts; its program is
//                                      named "StudioViewer"
//
// Files go below $HOME/.config/StudioExample: "configurations/Studio_1_0_0.configuration"
// (the scene's title, the number of preview frames, the runs so far), "logs" (the program's
// log and the editor service's), "scenes" (the saved scene), "traces" (with a trace profiler);
// the viewer's log goes below $HOME/.config/StudioViewer.
#include "EditorService.h"
#include "RenderPreviewTask.h"
#include "ViewerService.h"
#include <Tov/Core/Library.h>
#include <Tov/Standard/Program.h>
#include <juce_events/juce_events.h>

namespace studio
{

class StudioProgram : public tov::Program
{
public:
    explicit StudioProgram (const juce::String& name) : Program (name, "main", 1, 0, 0, "example") {}

protected:
    void addLibraries (tov::Library& root) override
    {
        auto* library = new tov::NamedLibrary ("Studio", {});
        addStudioClasses (*library);
        addStudioPeerClasses (*library);
        library->addClass<RenderPreviewTask>();
        root.addLibrary (library);
    }

    void removeLibraries (tov::Library& root) override  { root.removeLibrary ("Studio"); }

    bool programStarted() override
    {
        juce::StringArray arguments;
        for (const auto& argument : juce::JUCEApplicationBase::getCommandLineParameterArray())
            if (! argument.startsWith ("--"))
                arguments.add (argument);
        if (arguments[0] == "viewer" && arguments.size() == 2)
            service = std::make_unique<ViewerService> (arguments[1].getIntValue());
        else if (arguments[0] == "session")
            service = makeEditor (arguments.size() > 1 ? arguments[1].getIntValue() : 41000 + juce::Random::getSystemRandom().nextInt (20000));
        if (service == nullptr)
        {
            ScriptedService::say ("usage: StudioExample session [DISCOVERYPORT] [--profiler=...] | viewer DISCOVERYPORT");
            return false;
        }
        return service->startService (false);
    }

    int programStopped() override
    {
        if (service != nullptr)
            service->stopService (5000);
        return ScriptedService::scriptResult;
    }

private:
    std::unique_ptr<ScriptedService> service;

    /** Reads the configuration, counts this run in it, and makes the editor with it. */
    std::unique_ptr<ScriptedService> makeEditor (int discoveryPort)
    {
        auto& context = getProgramExecutionContext();
        StudioSettings settings;
        if (! loadConfiguration (context, "Studio", settings))
            return nullptr;
        settings.numRuns.increment();
        saveConfiguration (context, "Studio", settings);
        ScriptedService::say ("studio: run " + juce::String (settings.numRuns.get()) + ", configured in "
                              + getConfigurationsDirectory (true).getFullPathName() + ", logging to "
                              + getLogFile ("Program", ".txt", true).getFullPathName());
        auto editor = std::make_unique<EditorService> (settings, discoveryPort);
        editor->enableLogging();
        return editor;
    }
};

bool isViewer = false;

juce::JUCEApplicationBase* createApplication()
{
    return tov::Program::createApplication (new StudioProgram (isViewer ? "StudioViewer" : "StudioExample"));
}

} // namespace studio

int main (int argc, char* argv[])
{
    studio::isViewer = argc > 1 && juce::String (argv[1]) == "viewer";
    juce::JUCEApplicationBase::createInstance = &studio::createApplication;
    return juce::JUCEApplicationBase::main (argc, (const char**) argv);
}
