#pragma once

#include "TextExecutionContextView.h"

namespace tov
{

/** Sends a context's lines to the debug output, one call per line.

    Debug output makes its own line ends, so there is no pending line end
    here: text printed outside a line, such as the timing of an empty block,
    waits and comes out at the head of the next line.
*/
class DebugOutputExecutionContextView : public TextExecutionContextView
{
public:
    DebugOutputExecutionContextView() = default;
    ~DebugOutputExecutionContextView() override;

    void printLine (const juce::String& text) override;
    void print (const juce::String& text) override  { pendingText += text; }
    void flush() override                           {}

private:
    juce::String pendingText;
};

} // namespace tov
