#pragma once

#include <juce_core/juce_core.h>

namespace tov
{

class Class;
class Library;
class State;

/** Makes the class of a template expression, such as "OwnedVector(String)", the first time it is named. */
class ClassGenerator
{
public:
    virtual ~ClassGenerator() = default;

    /** The class for these arguments, or null with the reason in errorMessage. */
    virtual Class* create (const State& arguments, juce::String& errorMessage) = 0;

    const juce::String& getName() const noexcept        { return name; }
    void setName (const juce::String& newName)          { name = newName; }
    Library* getLibrary() const noexcept                { return library; }
    void setLibrary (Library* newLibrary) noexcept      { library = newLibrary; }

private:
    juce::String name;
    Library* library = nullptr;
};

} // namespace tov
