#include "DebugOutputExecutionContextView.h"

namespace tov
{

DebugOutputExecutionContextView::~DebugOutputExecutionContextView()
{
    leaveAllIndentationLevels();
}

void DebugOutputExecutionContextView::printLine (const juce::String& text)
{
    countLine();
    auto line = pendingText;
    pendingText.clear();
    line << getIndentation() << text;
    juce::Logger::outputDebugString (line);
}

} // namespace tov
