#pragma once

#include "ScratchDirectory.h"
#include <Tov/Standard/Program.h>
#include <gtest/gtest.h>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>

namespace tov::test
{

/** A program named after the running test, so that tests running side by side
    in separate processes never share a logs directory. Its data directory
    starts empty.

    The test program holds the library tree for its whole life, but a program builds
    the tree in startProgram and tears it down in stopProgram: a test program takes
    the tree down when it is made, adds the tests' library in addLibraries, and
    leaves the tree built again, with the tests' library, when it goes. */
class TestProgram : public Program
{
public:
    TestProgram (const juce::String& branchName = "main", uint64_t major = 1, uint64_t minor = 2, uint64_t revision = 3);
    ~TestProgram() override;

    /** Builds the tests' tree unless it exists. */
    static void ensureTestLibraryTree();

    static juce::String getCurrentTestName();

    /** Waits until the logger thread has written everything queued so far. */
    void waitForLogger (int timeOutMilliseconds = 20000);

protected:
    void addLibraries (Library& root) override;
};

/** The exact bytes of a file. */
std::string readBytes (const juce::File& file);

/** Replaces the time stamp at the head of each line by "<time>", after checking
    that it is a well-formed "yyyy/mm/dd hh:mm:ss" between earliest and latest
    (whole seconds). Continuation lines of a multi-line message have no stamp
    and are left alone. */
::testing::AssertionResult replaceTimeStamps (const std::string& text, juce::Time earliest, juce::Time latest, std::string& result);

/** The hello banner of a log, with "<time>" for its time stamps. */
std::string expectedHelloBanner (const Program& program);

/** The lines that startProgram writes after the hello banner, up to the open "Program" block,
    with "<ms>" for the timing of the "Load Libraries" block; the command line is empty in tests. */
std::string expectedStartLines (const Program& program);

/** Each block timing "(12.5 ms)" becomes "(<ms> ms)". */
std::string replaceTimings (const std::string& text);

/** Catches what a stream receives for as long as it lives. */
class StreamCapture
{
public:
    explicit StreamCapture (std::ostream& stream) : stream (stream), previous (stream.rdbuf (captured.rdbuf())) {}
    ~StreamCapture() { stream.rdbuf (previous); }
    std::string get() const { return captured.str(); }

private:
    std::ostream& stream;
    std::ostringstream captured;
    std::streambuf* previous;
};

/** Points HOME, for its lifetime, to a fresh folder on a RAM disk when the machine has one. */
class ScopedHomeOnRamDisk
{
public:
    ScopedHomeOnRamDisk();
    ~ScopedHomeOnRamDisk();

private:
    juce::String previousHome;
    std::unique_ptr<ScratchDirectory> home;
};

/** A clock for block timings that tests set by hand. */
struct ManualClock
{
    static double now;
    static double get() { return now; }
};

} // namespace tov::test
