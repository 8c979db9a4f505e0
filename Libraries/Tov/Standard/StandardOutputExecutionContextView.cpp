#include "StandardOutputExecutionContextView.h"
#include <iostream>

namespace tov
{

StandardOutputExecutionContextView::~StandardOutputExecutionContextView()
{
    leaveAllIndentationLevels();
}

// Debug output adds a line end of its own; one already in the text would double it.
void StandardOutputExecutionContextView::print (const juce::String& text)
{
    juce::Logger::outputDebugString (text.endsWithChar ('\n') ? text.dropLastCharacters (1) : text);
    std::cout << text;
}

void StandardOutputExecutionContextView::flush()
{
    std::cout.flush();
}

} // namespace tov
