#include "Program.h"
#include <juce_gui_basics/juce_gui_basics.h>

namespace tov
{

void Program::assertionReport (const juce::String& message, bool showDialog, bool crash)
{
    if (isStillRunning())
        ExecutionContext::get().error ("TOV_ASSERT " + message);
    else
        juce::Logger::outputDebugString (message);

   #if JUCE_MODULE_AVAILABLE_juce_gui_basics   // builds of the library without windows (the fuzzers') show none
    // Without a display the dialog would crash or end the process before the crash below.
    if (showDialog && hasDisplay() && ! juce::Desktop::getInstance().getDisplays().displays.isEmpty())
        juce::AlertWindow::showMessageBox (juce::MessageBoxIconType::WarningIcon, "TOV_ASSERT", message);
   #else
    juce::ignoreUnused (showDialog);
   #endif

    if (crash)
        ExceptionFilter::crashDeliberately();
}

} // namespace tov
