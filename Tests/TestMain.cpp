#include "Support/TestValues.h"
#include <gtest/gtest.h>
#include <Tov/Standard/CrashDump.h>
#include <juce_events/juce_events.h>
#include <cstdlib>

// The test program holds JUCE's GUI initialiser for its whole life, as an
// application does, and the library tree with a "Tests" library of test classes.
int main (int argc, char** argv)
{
    ::unsetenv ("DISPLAY");
    ::unsetenv ("WAYLAND_DISPLAY");
    ::setenv ("TZ", "UTC", 1);
    // A test that crashes while a test program runs ends with the crash report, without a dump of
    // the whole test program; the crash tests dump small programs of their own.
    tov::CrashDump::setEnabled (false);
    testing::InitGoogleTest (&argc, argv);
    juce::ScopedJuceInitialiser_GUI juceInitialiser;

    tov::initializeTov()->addLibrary (tov::test::createTestLibrary());
    const int result = RUN_ALL_TESTS();
    tov::deinitializeTov();
    return result;
}
