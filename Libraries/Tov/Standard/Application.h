#pragma once

#include "Program.h"
#include <juce_events/juce_events.h>

namespace tov
{

/** The JUCE application that runs a Program: it forwards JUCE's life-cycle calls to it.

    Made by Program::createApplication, which hands it a reference on the program.
*/
class Application : public juce::JUCEApplicationBase
{
public:
    explicit Application (Program& program);
    ~Application() override;

    const juce::String getApplicationName() override;
    const juce::String getApplicationVersion() override;
    bool moreThanOneInstanceAllowed() override;
    void initialise (const juce::String& commandLineParameters) override;
    /** Runs stopProgram even after a failed start; a failed start that stops with 0 exits with 255. */
    void shutdown() override;
    void anotherInstanceStarted (const juce::String& commandLine) override;
    void systemRequestedQuit() override;
    void suspended() override                        {}
    void resumed() override                          {}
    void unhandledException (const std::exception* exception, const juce::String& sourceFileName, int lineNumber) override;

    Program& getProgram() noexcept                   { return *program; }
    bool hasFailedToStart() const noexcept           { return failedToStart; }

private:
    Program* program;
    bool failedToStart = false;

    JUCE_DECLARE_NON_COPYABLE (Application)
};

} // namespace tov
