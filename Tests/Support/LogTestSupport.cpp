#include "LogTestSupport.h"
#include "TestValues.h"
#include <Tov/Core/ClassRegistry.h>
#include <Tov/Core/Library.h>
#include <Tov/Standard/TimeText.h>
#include <cstdlib>
#include <regex>

namespace tov::test
{

double ManualClock::now = 0.0;

juce::String TestProgram::getCurrentTestName()
{
    const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
    return info != nullptr ? juce::String (info->test_suite_name()) + "." + info->name() : juce::String ("NoTest");
}

TestProgram::TestProgram (const juce::String& branchName, uint64_t major, uint64_t minor, uint64_t revision)
    : Program (getCurrentTestName(), branchName, major, minor, revision, "abc123")
{
    juce::File::getSpecialLocation (juce::File::userApplicationDataDirectory).getChildFile (getProgramName()).deleteRecursively();
    deinitializeTov();
}

TestProgram::~TestProgram()
{
    // A program that started and never stopped leaves its tree: the destructor does not stop it.
    ensureTestLibraryTree();
}

void TestProgram::ensureTestLibraryTree()
{
    if (ClassRegistry::getInstanceIfExists() != nullptr && Library::getRootLibrary()->getLibraryByName ("Tov") != nullptr)
        return;
    initializeTov()->addLibrary (createTestLibrary());
}

void TestProgram::addLibraries (Library& root)
{
    root.addLibrary (createTestLibrary());
}

void TestProgram::waitForLogger (int timeOutMilliseconds)
{
    if (auto* logger = getLoggerThread())
        ASSERT_TRUE (logger->waitUntilDrained (timeOutMilliseconds));
}

ScopedHomeOnRamDisk::ScopedHomeOnRamDisk() : previousHome (juce::SystemStats::getEnvironmentVariable ("HOME", {}))
{
    const juce::File ramDisk ("/dev/shm");
    if (! ramDisk.isDirectory() || ! ramDisk.hasWriteAccess())
        return;

    home = std::make_unique<ScratchDirectory> (ramDisk);
    ::setenv ("HOME", home->getFullPathName().toRawUTF8(), 1);
}

ScopedHomeOnRamDisk::~ScopedHomeOnRamDisk()
{
    if (home != nullptr)
        ::setenv ("HOME", previousHome.toRawUTF8(), 1);
}

std::string readBytes (const juce::File& file)
{
    juce::MemoryBlock block;
    if (! file.loadFileAsData (block))
        return {};
    return std::string (static_cast<const char*> (block.getData()), block.getSize());
}

static bool isTimeStampAt (const std::string& text, size_t position, juce::Time& time)
{
    static const char pattern[] = "dddd/dd/dd dd:dd:dd\t";
    const size_t length = sizeof (pattern) - 1;
    if (position + length > text.size())
        return false;
    for (size_t i = 0; i < length; ++i)
    {
        const char c = text[position + i];
        if (pattern[i] == 'd' ? (c < '0' || c > '9') : c != pattern[i])
            return false;
    }
    auto number = [&] (size_t offset, size_t digits) { return std::stoi (text.substr (position + offset, digits)); };
    time = juce::Time (number (0, 4), number (5, 2) - 1, number (8, 2), number (11, 2), number (14, 2), number (17, 2), 0, true);
    return true;
}

::testing::AssertionResult replaceTimeStamps (const std::string& text, juce::Time earliest, juce::Time latest, std::string& result)
{
    const auto low = earliest.toMilliseconds() / 1000;
    const auto high = (latest.toMilliseconds() + 999) / 1000;
    result.clear();
    result.reserve (text.size());

    size_t lineStart = 0;
    for (;;)
    {
        juce::Time stamp;
        if (isTimeStampAt (text, lineStart, stamp))
        {
            const auto seconds = stamp.toMilliseconds() / 1000;
            if (seconds < low || seconds > high)
                return ::testing::AssertionFailure() << "time stamp out of range: " << text.substr (lineStart, 19);
            result += "<time>\t";
            lineStart += 20;
        }
        const auto end = text.find ("\r\n", lineStart);
        if (end == std::string::npos)
        {
            result.append (text, lineStart, std::string::npos);
            return ::testing::AssertionSuccess();
        }
        result.append (text, lineStart, end + 2 - lineStart);
        lineStart = end + 2;
    }
}

std::string expectedHelloBanner (const Program& program)
{
    return "<time>\t-------------------------- hello ------------------------------\r\n"
           "<time>\tProgram: " + program.getProgramName().toStdString() + ", launched at "
               + TimeText::toString (program.getStartTime()).toStdString() + "\r\n"
           "<time>\tBranch: main version: 1.2.3.abc123\r\n"
           "<time>\t---------------------------------------------------------------\r\n";
}

std::string expectedStartLines (const Program& program)
{
    const auto path = [] (const juce::File& file) { return file.getFullPathName().toStdString(); };
    return "<time>\tLoad Libraries (<ms> ms)\r\n"
           "<time>\tProgram\r\n"
           "<time>\t  Information: Command Line: \r\n"
           "<time>\t  Information: Program directory: " + path (Program::getProgramDirectory ({})) + "\r\n"
           "<time>\t  Information: Resources directory: " + path (Program::getProgramDirectory ("Skins").getParentDirectory()) + "\r\n"
           "<time>\t  Information: Data directory: " + path (program.getProgramDataDirectory ({}, true)) + "\r\n";
}

std::string replaceTimings (const std::string& text)
{
    static const std::regex timing ("\\([0-9.e+-]+ ms\\)");
    return std::regex_replace (text, timing, "(<ms> ms)");
}

} // namespace tov::test
