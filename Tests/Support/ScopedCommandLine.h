#pragma once

#include <string>
#include <vector>

namespace juce
{
extern int juce_argc;
extern const char* const* juce_argv;
}

namespace tov::test
{

/** Sets JUCE's command line for its lifetime, as JUCEApplicationBase::main would. */
class ScopedCommandLine
{
public:
    explicit ScopedCommandLine (std::vector<std::string> parameters) : texts (std::move (parameters))
    {
        texts.insert (texts.begin(), "tovTests");
        for (auto& text : texts)
            pointers.push_back (text.c_str());
        previousCount = juce::juce_argc;
        previousValues = juce::juce_argv;
        juce::juce_argc = (int) pointers.size();
        juce::juce_argv = pointers.data();
    }

    ~ScopedCommandLine()
    {
        juce::juce_argc = previousCount;
        juce::juce_argv = previousValues;
    }

private:
    std::vector<std::string> texts;
    std::vector<const char*> pointers;
    int previousCount;
    const char* const* previousValues;
};

} // namespace tov::test
