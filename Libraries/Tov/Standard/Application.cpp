#include "Application.h"
#include "TimeText.h"

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

// The crash log is appended to forever: it is small, and never rotated.
void Application::unhandledException (const std::exception* exception, const juce::String& sourceFileName, int lineNumber)
{
    const auto log = program->getProgramDataDirectory ("dumps", true).getChildFile ("crash_log.txt");
    if (! log.existsAsFile())
        log.create();
    auto text = TimeText::toString (juce::Time::getCurrentTime()) + " Exception at " + sourceFileName + ":" + juce::String (lineNumber);
    if (exception != nullptr)
        text += " '" + juce::String (exception->what()) + "'";
    log.appendText (text + "\n", false, false, "\r\n");
}

} // namespace tov
