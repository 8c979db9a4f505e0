#include <gtest/gtest.h>
#include <Tov/Core/ClassRegistry.h>
#include <juce_events/juce_events.h>
#include <cstdlib>

// The test program holds JUCE's GUI initialiser for its whole life, as an
// application does, so that the message manager exists on this thread.
int main (int argc, char** argv)
{
    ::unsetenv ("DISPLAY");
    ::unsetenv ("WAYLAND_DISPLAY");
    ::setenv ("TZ", "UTC", 1);
    testing::InitGoogleTest (&argc, argv);
    juce::ScopedJuceInitialiser_GUI juceInitialiser;
    tov::ClassRegistry::getInstance().initializeAllClasses();
    return RUN_ALL_TESTS();
}
