#include "UpdateDynamicVariableDeclarator.h"
#include "DynamicVariableVector.h"
#include "../Core/ClassRegistry.h"
#include <algorithm>

namespace tov
{

UpdateDynamicVariableDeclarator::UpdateDynamicVariableDeclarator (const DynamicVariableVector& existing)
{
    for (auto* each : existing)
    {
        const juce::String identifier = each->getIdentifier();
        existingVariables[{ each->getValueClass(), identifier }] = each;
        if (identifier != each->getFriendlyName())
            existingVariables[{ each->getValueClass(), each->getFriendlyName() }] = each;
    }
}

UpdateDynamicVariableDeclarator::~UpdateDynamicVariableDeclarator()
{
    // Variables made for an update that never came are nobody's.
    for (auto* each : output)
        if (each->getReferenceCount() == 0)
            delete each;
}

std::pair<Class*, Class*> UpdateDynamicVariableDeclarator::findVariableClasses (const Object& value)
{
    auto* valueClass = value.getClass();
    Class* variableClass = valueClass != nullptr ? valueClass->getRelatedClass ("DynamicVariable") : nullptr;
    if (variableClass == nullptr && valueClass != nullptr)
        variableClass = getClass ("DynamicVariable(" + valueClass->getName() + ")");
    if (variableClass == nullptr)
        return { nullptr, nullptr };
    auto* prototype = dynamic_cast<DynamicVariable*> (variableClass->getDefaultObject());
    return { variableClass, prototype != nullptr ? prototype->getValueClass() : nullptr };
}

DynamicVariable* UpdateDynamicVariableDeclarator::find (Class* valueClass, const juce::String& identifier,
                                                        const juce::String& name) const
{
    auto found = existingVariables.find ({ valueClass, identifier });
    if (found == existingVariables.end() && identifier != name)
        found = existingVariables.find ({ valueClass, name });
    return found != existingVariables.end() ? found->second : nullptr;
}

DynamicVariable* UpdateDynamicVariableDeclarator::variable (const juce::String& name, const Object* value,
                                                            const Object* defaultValue, const StateMap& attributes)
{
    if (value == nullptr)
        return nullptr;
    auto [variableClass, valueClass] = findVariableClasses (*value);
    if (variableClass == nullptr)
        return nullptr;

    auto* declared = find (valueClass, DynamicVariable::getIdentifier (name, attributes), name);
    if (declared != nullptr)
        declared->updateDeclaration (name, defaultValue, attributes);
    else
        declared = DynamicVariable::create (variableClass, name, value, defaultValue, attributes);
    if (declared == nullptr || std::find (output.begin(), output.end(), declared) != output.end())
        return declared;

    const int prepend = attributes.find ("prepend");
    auto* prependState = prepend >= 0 ? attributes.getStateRef ((size_t) prepend) : nullptr;
    if (prependState != nullptr && prependState->getType() == StateType::booleanType && prependState->getBoolean())
        output.insert (output.begin(), declared);
    else
        output.push_back (declared);
    return declared;
}

void UpdateDynamicVariableDeclarator::update (DynamicVariableVector& vector)
{
    vector.set (output, true);
    output.clear();
}

} // namespace tov
