#include "Support/TestValues.h"
#include <gtest/gtest.h>
#include <juce_events/juce_events.h>
#include <cstdlib>

// The test program holds JUCE's GUI initialiser for its whole life, as an
// application does, and the library tree with a "Tests" library of test classes.
int main (int argc, char** argv)
{
    ::unsetenv ("DISPLAY");
    ::unsetenv ("WAYLAND_DISPLAY");
    ::setenv ("TZ", "UTC", 1);
    testing::InitGoogleTest (&argc, argv);
    juce::ScopedJuceInitialiser_GUI juceInitialiser;

    tov::initializeTov()->addLibrary (tov::test::createTestLibrary());
    const int result = RUN_ALL_TESTS();
    tov::deinitializeTov();
    return result;
}
