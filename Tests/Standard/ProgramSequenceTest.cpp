#include "../Support/LogTestSupport.h"
#include <Tov/Core/ClassRegistry.h>
#include <Tov/Core/Library.h>
#include <gtest/gtest.h>

using namespace tov;
using namespace tov::test;

namespace
{

/** Records the steps of the program's sequences together with the calls of its hooks,
    and what held at some of the steps. */
class RecordingProgram : public TestProgram
{
public:
    RecordingProgram()
    {
        Program::setSequenceListener ([this] (const char* step) { record (step); });
    }
    ~RecordingProgram() override   { Program::setSequenceListener (nullptr); }

    std::vector<std::string> steps;

protected:
    void addLibraries (Library& root) override
    {
        steps.push_back ("addLibraries");
        EXPECT_TRUE (root.isInitialized());
        TestProgram::addLibraries (root);
    }
    void removeLibraries (Library& root) override     { steps.push_back ("removeLibraries"); }
    bool programStarted() override                     { steps.push_back ("programStarted"); return true; }
    int programStopped() override                      { steps.push_back ("programStopped"); return 3; }

private:
    void record (const std::string& step)
    {
        steps.push_back (step);
        // What the earlier steps must have done by now.
        if (step == "start the logger thread")
            EXPECT_EQ (getLoggerThread(), nullptr);
        if (step == "initialize tov")
        {
            EXPECT_NE (getLoggerThread(), nullptr);
            EXPECT_NE (getStartTime(), juce::Time());
            EXPECT_EQ (ClassRegistry::getInstanceIfExists(), nullptr) << "the test program took the tree down";
        }
        if (step == "add the program log view")
            EXPECT_NE (Library::getRootLibrary()->getLibraryByName ("Tov"), nullptr);
        if (step == "clear the instance")
            EXPECT_TRUE (Program::isStillRunning());
        if (step == "release class default objects")
            EXPECT_FALSE (Program::isStillRunning());
        if (step == "stop the logger thread")
            EXPECT_EQ (ClassRegistry::getInstanceIfExists(), nullptr);
    }
};

} // namespace

TEST (ProgramSequenceTest, StartAndStopRunEveryStepInOrder)
{
    const std::vector<std::string> expected {
        // startProgram
        "start the exception filter",
        "start the logger thread",
        "warm up text drawing",
        "set the start time",
        "initialize tov",
        "add the program log view",
        "load libraries", "addLibraries",
        "enter the program block",
        "log the command line",
        "log the program directory",
        "log the resources directory",
        "log the data directory",
        "configure the profiler",
        "program started", "programStarted",
        // stopProgram
        "set currently stopping",
        "program stopped", "programStopped",
        "leave the program block",
        "delete the program log views",
        "clear the instance",
        "release class default objects",
        "remove libraries", "removeLibraries",
        "unset the profiler",
        "deinitialize tov",
        "stop the logger thread",
        "stop the exception filter",
    };

    std::vector<std::string> steps;
    {
        RecordingProgram program;
        EXPECT_TRUE (program.startProgram());
        EXPECT_EQ (program.stopProgram(), 3);
        steps = program.steps;
    }
    ASSERT_EQ (steps.size(), expected.size());
    for (size_t i = 0; i < expected.size(); ++i)
        EXPECT_EQ (steps[i], expected[i]) << "step " << i;
}
