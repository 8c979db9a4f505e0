#pragma once

#include "TextExecutionContextView.h"

namespace tov
{

/** Writes a context's lines to the standard output, and echoes each piece to the debug output. */
class StandardOutputExecutionContextView : public TextExecutionContextView
{
public:
    StandardOutputExecutionContextView() = default;
    ~StandardOutputExecutionContextView() override;

    void print (const juce::String& text) override;
    void flush() override;
};

} // namespace tov
