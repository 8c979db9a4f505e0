#pragma once

#include "TextExecutionContextView.h"

namespace tov
{

/** Writes a context's events to a log file of its own, through the logger thread.

    The file is the program's log file of that name, with the start time; an
    earlier file of the same name is deleted. It opens with a hello banner,
    every line starts with its time stamp and a tab, and lines end with CR LF,
    except the bye banner: a finished log has no final line end.

    Reporting only queues text for the logger thread: the calling thread
    never waits for the disk. Once the program has stopped, nothing more is
    written.
*/
class LoggerExecutionContextView : public TextExecutionContextView
{
public:
    explicit LoggerExecutionContextView (const juce::String& name);
    ~LoggerExecutionContextView() override;

    void printLine (const juce::String& text) override;
    void print (const juce::String& text) override;
    void flush() override;

    const juce::File& getLogFile() const noexcept { return logFile; }

private:
    juce::File logFile;

    void printHelloBanner();

    JUCE_DECLARE_NON_COPYABLE (LoggerExecutionContextView)
};

} // namespace tov
