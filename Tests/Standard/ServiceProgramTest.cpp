#include "ServiceTestSupport.h"
#include <Tov/Standard/Program.h>

using namespace tov;
using namespace tov::test;

namespace
{

/** A started program, which builds the library tree, and a service of the test. */
struct ServiceProgramTest : public ::testing::Test
{
    TestProgram program;
    TestService service { "Audio" };
    juce::Time earliest = juce::Time::getCurrentTime();

    void SetUp() override
    {
        ASSERT_TRUE (program.startProgram());
    }

    void TearDown() override
    {
        service.stopService (20000);
        if (Program::isStillRunning())
            program.stopProgram();
    }
};

} // namespace

TEST_F (ServiceProgramTest, GetCurrentServiceIsNullOnceTheProgramStopped)
{
    ASSERT_TRUE (service.startService (true));
    EXPECT_EQ (Service::getCurrentService(), &service);

    // Just after the program cleared its instance, while the classes still exist: the service
    // is still registered, and is stopped there, as a late service would be.
    Service* currentOnceCleared = &service;
    Program::setSequenceListener ([&] (const char* step)
    {
        if (juce::String (step) == "release class default objects")
        {
            currentOnceCleared = Service::getCurrentService();
            service.stopService (0);
        }
    });
    program.stopProgram();
    Program::setSequenceListener (nullptr);
    EXPECT_EQ (currentOnceCleared, nullptr);
    EXPECT_EQ (service.numStopped, 1);
}

TEST_F (ServiceProgramTest, EnableLoggingGivesTheServiceALogFileNamedAfterIt)
{
    service.enableLogging();
    service.onStarted = [] { ExecutionContext::get().information ("playing"); return true; };
    ASSERT_TRUE (service.startService (false));
    ASSERT_TRUE (service.waitFor ([this] { return service.numPostUpdates >= 1; }));
    service.stopService (20000);

    program.waitForLogger();
    std::string text;
    ASSERT_TRUE (replaceTimeStamps (readBytes (program.getLogFile ("Audio", ".txt", true)), earliest, juce::Time::getCurrentTime(), text));
    EXPECT_EQ (replaceTimings (text),
               expectedHelloBanner (program)
               + "<time>\t[Audio]\r\n"
                 "<time>\t  Information: playing\r\n"
                 "<time>\tDone [Audio] (<ms> ms)\r\n"
                 "<time>\t------------------------- bye ---------------------------------");
}
