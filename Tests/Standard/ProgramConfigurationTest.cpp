#include "../Support/LogTestSupport.h"
#include "../Support/TestValues.h"
#include <Tov/Atomic/Atomic.h>
#include <Tov/Core/State.h>
#include <Tov/Standard/ToStringExecutionContext.h>
#include <gtest/gtest.h>

using namespace tov;
using namespace tov::test;

namespace
{

const juce::String couldNotFind = ">Could not find configuration with software version 3.2.117\n";
const juce::String higherDiscarded = ">A file higher than your version was discarded\n";
const juce::String noExistingFile = ">No existing Devices_3_2_117.configuration file\n";

class ProgramConfigurationTest : public ::testing::Test
{
protected:
    ProgramConfigurationTest() : program ("main", 3, 2, 117), context (messages) {}

    void SetUp() override
    {
        ASSERT_TRUE (program.startProgram());
        directory = program.getConfigurationsDirectory (true);
    }
    void TearDown() override
    {
        if (Program::isStillRunning())
            program.stopProgram();
    }

    juce::File write (const juce::String& fileName, const juce::String& text)
    {
        auto file = directory.getChildFile (fileName);
        EXPECT_TRUE (file.replaceWithText (text));
        return file;
    }

    bool load (Object& target)
    {
        messages.clear();
        return program.loadConfiguration (context, "Devices", target);
    }

    TestProgram program;
    juce::String messages;
    ToStringExecutionContext context;
    juce::File directory;
};

} // namespace

TEST_F (ProgramConfigurationTest, FileNamesCarryTheVersionWithUnderscores)
{
    Shape shape;
    shape.width.set (42);
    ASSERT_TRUE (program.saveConfiguration (context, "Devices", shape));
    EXPECT_EQ (messages, ">Devices configuration saved\n");
    const auto file = directory.getChildFile ("Devices_3_2_117.configuration");
    ASSERT_TRUE (file.existsAsFile());
    EXPECT_EQ (directory, juce::File::getSpecialLocation (juce::File::userApplicationDataDirectory)
                              .getChildFile (program.getProgramName()).getChildFile ("configurations"));
    EXPECT_EQ (file.loadFileAsString(), "{width = 42}\n");
}

TEST_F (ProgramConfigurationTest, TheFileOfTheRunningVersionLoadsWithoutAWord)
{
    write ("Devices_3_2_117.configuration", "{width = 7}");
    write ("Devices_3_2_100.configuration", "{width = 5}");
    Shape shape;
    EXPECT_TRUE (load (shape));
    EXPECT_EQ (shape.width.get(), 7);
    EXPECT_EQ (messages, "");
}

TEST_F (ProgramConfigurationTest, NoFileLeavesTheDefaults)
{
    Shape shape;
    shape.width.set (99);
    EXPECT_TRUE (load (shape));
    EXPECT_EQ (shape.width.get(), 10) << "defaults, not stale values";
    EXPECT_EQ (messages, noExistingFile);
}

TEST_F (ProgramConfigurationTest, TheNewestLowerVersionIsUpgraded)
{
    write ("Devices_3_1_500.configuration", "{width = 1}");
    write ("Devices_3_2_116.configuration", "{width = 2}");
    write ("Devices_2_9_999.configuration", "{width = 3}");
    write ("Other_3_2_117.configuration", "{width = 4}");
    Shape shape;
    EXPECT_TRUE (load (shape));
    EXPECT_EQ (shape.width.get(), 2);
    EXPECT_EQ (messages, couldNotFind + ">Loading the 3.2.116 file version instead\n");

    // Saving writes the running version's file; the old ones stay.
    ASSERT_TRUE (program.saveConfiguration (context, "Devices", shape));
    EXPECT_TRUE (directory.getChildFile ("Devices_3_2_117.configuration").existsAsFile());
    EXPECT_TRUE (directory.getChildFile ("Devices_3_2_116.configuration").existsAsFile());
}

TEST_F (ProgramConfigurationTest, HigherVersionsAreDiscarded)
{
    write ("Devices_3_2_118.configuration", "{width = 1}");
    write ("Devices_4_0_0.configuration", "{width = 2}");
    write ("Devices_3_0_1.configuration", "{width = 3}");
    Shape shape;
    EXPECT_TRUE (load (shape));
    EXPECT_EQ (shape.width.get(), 3);
    EXPECT_EQ (messages, couldNotFind + higherDiscarded + ">Loading the 3.0.1 file version instead\n");
}

TEST_F (ProgramConfigurationTest, OnlyHigherVersionsLeaveTheDefaults)
{
    write ("Devices_9_0_0.configuration", "{width = 1}");
    Shape shape;
    EXPECT_TRUE (load (shape));
    EXPECT_EQ (shape.width.get(), 10);
    EXPECT_EQ (messages, couldNotFind + higherDiscarded + noExistingFile);
}

TEST_F (ProgramConfigurationTest, TheRunningVersionWithLeadingZerosIsDiscardedAsHigher)
{
    write ("Devices_03_02_0117.configuration", "{width = 1}");
    Shape shape;
    EXPECT_TRUE (load (shape));
    EXPECT_EQ (shape.width.get(), 10);
    EXPECT_EQ (messages, couldNotFind + higherDiscarded + noExistingFile);
}

TEST_F (ProgramConfigurationTest, TwoVersionTokensReadAsRevisionZero)
{
    write ("Devices_3_1.configuration", "{width = 6}");
    Shape shape;
    EXPECT_TRUE (load (shape));
    EXPECT_EQ (shape.width.get(), 6);
    EXPECT_EQ (messages, couldNotFind + ">Loading the 3.1.0 file version instead\n");
}

TEST_F (ProgramConfigurationTest, AFileThatDoesNotParseFailsAfterTheBlock)
{
    write ("Devices_3_2_117.configuration", "{width = 8, height = ");
    Shape shape;
    shape.width.set (1);
    EXPECT_FALSE (load (shape));
    EXPECT_EQ (shape.width.get(), 10);
    EXPECT_TRUE (messages.startsWith ("Error: ")) << messages;
}

TEST_F (ProgramConfigurationTest, TheLoadIsABlockOfTheProgramLog)
{
    write ("Devices_3_2_117.configuration", "{width = 7}");
    Shape shape;
    ASSERT_TRUE (program.loadConfiguration (program.getProgramExecutionContext(), "Devices", shape));
    ASSERT_TRUE (program.saveConfiguration (program.getProgramExecutionContext(), "Devices", *shape.makeState()));
    const auto log = program.getLogFile ("Program", ".txt", true);
    program.stopProgram();

    std::string text;
    ASSERT_TRUE (replaceTimeStamps (readBytes (log), program.getStartTime(), juce::Time::getCurrentTime(), text));
    const std::string expected = "<time>\t  Loading Devices Configuration (<ms> ms)\r\n"
                                 "<time>\t  Information: Devices configuration saved\r\n";
    EXPECT_NE (replaceTimings (text).find (expected), std::string::npos) << text;
}
