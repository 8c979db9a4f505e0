#include "Application.h"

namespace tov
{

juce::JUCEApplicationBase* Program::createApplication (Program* program)
{
    return new Application (*program);
}

Application::Application (Program& program) : program (&program)
{
    program.incrementReferenceCounter();
}

Application::~Application()
{
    program->decrementReferenceCounter();
}

const juce::String Application::getApplicationName()
{
    return program->getProgramName();
}

const juce::String Application::getApplicationVersion()
{
    return program->getSoftwareVersion().versionNumberToString (".");
}

bool Application::moreThanOneInstanceAllowed()
{
    return program->moreThanOneInstanceAllowed();
}

void Application::initialise (const juce::String&)
{
    if (! program->startProgram())
    {
        failedToStart = true;
        quit();
    }
}

void Application::shutdown()
{
    const int result = program->stopProgram();
    setApplicationReturnValue (result == 0 && failedToStart ? 255 : result);
}

void Application::anotherInstanceStarted (const juce::String& commandLine)
{
    program->anotherInstanceStarted (commandLine);
}

void Application::systemRequestedQuit()
{
    if (program->systemRequestedQuit())
        quit();
}

// The crash log comes with the crash handling; until then the exception goes to debug output.
void Application::unhandledException (const std::exception* exception, const juce::String& sourceFileName, int lineNumber)
{
    juce::Logger::outputDebugString ("Unhandled exception in " + sourceFileName + ":" + juce::String (lineNumber) + ": "
                                     + (exception != nullptr ? juce::String (exception->what()) : juce::String ("unknown")));
}

} // namespace tov
