#include "ScratchDirectory.h"
#include <gtest/gtest.h>
#include <cctype>
#include <cstdlib>
#include <string>

namespace tov::test
{

namespace
{
/** "Suite.Test" of the running test, kept to letters, digits, '.', '-' and '_' and to 80 characters
    (parameterised tests have slashes in their names). */
std::string currentTestName()
{
    const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
    std::string name = info != nullptr ? std::string (info->test_suite_name()) + "." + info->name() : "NoTest";
    for (auto& c : name)
        if (! (std::isalnum ((unsigned char) c) || c == '.' || c == '-' || c == '_'))
            c = '_';
    return name.substr (0, 80);
}
} // namespace

ScratchDirectory::ScratchDirectory() : ScratchDirectory (juce::File::getSpecialLocation (juce::File::tempDirectory))
{
}

ScratchDirectory::ScratchDirectory (const juce::File& parent)
{
    auto pattern = parent.getChildFile ("tov-" + juce::String (currentTestName()) + "-XXXXXX").getFullPathName().toStdString();
    if (::mkdtemp (pattern.data()) != nullptr)
        directory = juce::File (pattern);
    else
        ADD_FAILURE() << "Could not make a scratch directory in " << parent.getFullPathName();
}

ScratchDirectory::~ScratchDirectory()
{
    if (directory != juce::File())
        directory.deleteRecursively();
}

} // namespace tov::test
