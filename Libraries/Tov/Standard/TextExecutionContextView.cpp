#include "TextExecutionContextView.h"

namespace tov
{

void TextExecutionContextView::printLine (const juce::String& text)
{
    flushPendingEndLine();
    countLine();
    for (uint64_t i = 0; i < depth; ++i)
        print ("  ");
    print (text.replace ("\n", "\r\n"));
    flush();
    pendingEndLine = true;
}

void TextExecutionContextView::flushPendingEndLine()
{
    if (! pendingEndLine)
        return;
    print ("\r\n");
    pendingEndLine = false;
}

juce::String TextExecutionContextView::getIndentation() const
{
    return juce::String::repeatedString ("  ", (int) depth);
}

//==============================================================================
void TextExecutionContextView::enteredCallback (const juce::String& name)
{
    names.push_back (name);
    printLine (name);
    ++depth;
    lineCounts.push_back (0);
    startTimes.push_back (clock());
}

// Unbalanced leaves are harmless: at depth 0 there is nothing to close.
void TextExecutionContextView::leavedCallback()
{
    if (depth == 0)
        return;

    --depth;
    const double elapsed = startTimes.empty() ? 0.0 : clock() - startTimes.back();
    const auto name = names.empty() ? juce::String() : names.back();
    const auto timing = "(" + juce::String (elapsed) + " ms)";

    if (lineCounts.back() != 0)
    {
        printLine (name.isEmpty() ? "Done " + timing : "Done " + name + " " + timing);
    }
    else
    {
        // Nothing inside: the time goes behind the block's own line.
        print (" " + timing);
        flush();
    }

    if (! names.empty())
        names.pop_back();
    if (! startTimes.empty())
        startTimes.pop_back();
    if (lineCounts.size() > 1)
        lineCounts.pop_back();
}

void TextExecutionContextView::leaveAllIndentationLevels()
{
    while (depth > 0)
        leavedCallback();
}

//==============================================================================
void TextExecutionContextView::askedCallback (const juce::String& question, const juce::String& answer, bool canceled)
{
    printLine ("Asked: " + question + " => " + (canceled ? juce::String ("Canceled") : answer));
}

void TextExecutionContextView::warningCallback (const juce::String& message, const Object*)
{
    printLine ("Warning: " + message);
}

void TextExecutionContextView::errorCallback (const juce::String& message, const Object*)
{
    printLine ("Error: " + message);
}

void TextExecutionContextView::informationCallback (const juce::String& message, const Object*)
{
    printLine ("Information: " + message);
}

} // namespace tov
