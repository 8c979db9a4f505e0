#pragma once

#include "EnumerationClass.h"
#include "../Core/ClassGenerator.h"

namespace tov
{

/** Makes enumerations from a list of element names: "Enumeration({a, b, c})" has the elements
    a, b and c with the values 0, 1 and 2, and no descriptions. */
class EnumerationClassGenerator : public ClassGenerator
{
public:
    /** The arguments must be a list; each entry's text names one element. */
    Class* create (const State& arguments, juce::String& errorMessage) override;

    /** The metaclass of a generated enumeration: an Enumeration with the given elements. */
    class GeneratedClass : public EnumerationClass
    {
    public:
        explicit GeneratedClass (juce::StringArray elementNames) : elementNames (std::move (elementNames)) {}

        Class* declareBaseClass() override;
        Object* createInstance() const override;

    protected:
        void declareElements() override;

    private:
        juce::StringArray elementNames;
    };
};

} // namespace tov
