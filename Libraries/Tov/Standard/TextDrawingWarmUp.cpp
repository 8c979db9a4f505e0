#include "TextDrawingWarmUp.h"
#include <juce_events/juce_events.h>
#include <optional>

// Builds of the library without graphics (the fuzz targets) draw nothing.
#if defined (JUCE_MODULE_AVAILABLE_juce_graphics) && JUCE_MODULE_AVAILABLE_juce_graphics
 #include <juce_graphics/juce_graphics.h>
 #define TOV_DRAWS_TEXT 1
#endif

namespace tov
{

void warmUpTextDrawing()
{
#if TOV_DRAWS_TEXT
    // Without a message manager there is no message thread to keep out, and JUCE's lock
    // would wait for one forever.
    std::optional<juce::MessageManagerLock> lock;
    if (juce::MessageManager::getInstanceWithoutCreating() != nullptr)
        lock.emplace();
    juce::Image image (juce::Image::ARGB, 64, 64, true);
    juce::Graphics graphics (image);
    graphics.fillAll (juce::Colours::black);
    graphics.setColour (juce::Colours::red);
    graphics.setFont (juce::Font (12.0f, juce::Font::plain));
    graphics.drawText ("tov", juce::Rectangle<int> (0, 0, 64, 64), juce::Justification::centred, false);
#endif
}

} // namespace tov
