#pragma once

#include "ExecutionContextView.h"
#include "MillisecondClock.h"
#include <cstdint>
#include <vector>

namespace tov
{

/** Turns a context's events into indented lines of text with block timings.

    Each open block indents by two blanks. A block in which nothing was
    printed gets its time behind its own line, as in "Loading (12.5 ms)";
    one with lines ends with "Done Loading (12.5 ms)". That is why the line
    end of a line is written only by the next one: the timing of an empty
    block must still land on the same line.

    Subclasses say where text goes (print) and when it must leave (flush).
*/
class TextExecutionContextView : public ExecutionContextView
{
public:
    TextExecutionContextView() = default;

    void enteredCallback (const juce::String& name) override;
    void leavedCallback() override;
    void askedCallback (const juce::String& question, const juce::String& answer, bool canceled) override;
    void warningCallback (const juce::String& message, const Object* subject) override;
    void errorCallback (const juce::String& message, const Object* subject) override;
    void informationCallback (const juce::String& message, const Object* subject) override;

    /** Indents, prints the text with its line ends as CR LF, and flushes; the line end comes later. */
    virtual void printLine (const juce::String& text);
    virtual void print (const juce::String& text) = 0;
    virtual void flush() = 0;

    /** Replaces juce::Time::getMillisecondCounterHiRes, so that timings can be told in advance. */
    void setMillisecondClock (MillisecondClock newClock) noexcept { clock = newClock; }

    uint64_t getDepth() const noexcept { return depth; }

protected:
    void flushPendingEndLine();
    /** Closes every open block, with its timing; for destructors. */
    void leaveAllIndentationLevels();

    /** Counts a line at the current level. */
    void countLine() { ++lineCounts.back(); }
    juce::String getIndentation() const;

private:
    uint64_t depth = 0;
    std::vector<uint64_t> lineCounts { 0 };
    std::vector<double> startTimes;
    std::vector<juce::String> names;
    bool pendingEndLine = false;
    MillisecondClock clock = systemMillisecondClock;
};

} // namespace tov
