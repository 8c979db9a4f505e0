#include "LoggerExecutionContextView.h"
#include "Program.h"
#include "TimeText.h"

namespace tov
{

LoggerExecutionContextView::LoggerExecutionContextView (const juce::String& name)
{
    if (Program::isStillRunning())
        logFile = Program::get().getLogFile (name, ".txt", true);

    if (logFile.existsAsFile())
        logFile.deleteFile();

    printHelloBanner();
}

LoggerExecutionContextView::~LoggerExecutionContextView()
{
    leaveAllIndentationLevels();

    // Its line end stays unwritten: the finished log ends right after "bye".
    printLine ("------------------------- bye ---------------------------------");

    if (Program::isStillRunning())
        Program::get().logClose (logFile);
}

void LoggerExecutionContextView::printHelloBanner()
{
    if (! Program::isStillRunning())
        return;

    auto& program = Program::get();
    const auto& version = program.getSoftwareVersion();
    printLine ("-------------------------- hello ------------------------------");
    printLine ("Program: " + version.getProgramName().get() + ", launched at " + TimeText::toString (program.getStartTime()));
    printLine ("Branch: " + version.getBranchName().get() + " version: " + version.versionNumberToString (".") + "." + version.getCommitHash().get());
    printLine ("---------------------------------------------------------------");
}

//==============================================================================
// The line end of the previous line goes before the time stamp of this one.
void LoggerExecutionContextView::printLine (const juce::String& text)
{
    flushPendingEndLine();
    if (Program::isStillRunning())
        Program::get().logPrint (logFile, TimeText::toString (juce::Time::getCurrentTime()) + "\t");
    TextExecutionContextView::printLine (text);
}

void LoggerExecutionContextView::print (const juce::String& text)
{
    if (Program::isStillRunning())
        Program::get().logPrint (logFile, text);
}

void LoggerExecutionContextView::flush()
{
    if (Program::isStillRunning())
        Program::get().logFlush (logFile);
}

} // namespace tov
