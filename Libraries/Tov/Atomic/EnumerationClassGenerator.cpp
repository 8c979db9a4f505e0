#include "EnumerationClassGenerator.h"
#include "Enumeration.h"

namespace tov
{

Class* EnumerationClassGenerator::create (const State& arguments, juce::String& errorMessage)
{
    if (! arguments.checkType (StateType::variablesType, errorMessage))
        return nullptr;

    juce::StringArray names;
    for (size_t i = 0; i < arguments.getNumVariables(); ++i)
        names.add (arguments.getVariableStateRef (i).saveToString().trim());
    return new GeneratedClass (std::move (names));
}

Class* EnumerationClassGenerator::GeneratedClass::declareBaseClass()
{
    return &Enumeration::staticClass;
}

Object* EnumerationClassGenerator::GeneratedClass::createInstance() const
{
    return new Enumeration();
}

void EnumerationClassGenerator::GeneratedClass::declareElements()
{
    for (int i = 0; i < elementNames.size(); ++i)
        addElement (elementNames[i], (int32_t) i);
}

} // namespace tov
