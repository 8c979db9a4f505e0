#include "TemplateClassGenerator.h"
#include "ClassExpression.h"
#include "ClassRegistry.h"
#include "../Standard/ExecutionContext.h"

namespace tov
{

void TemplateClassGenerator::ensureParametersAreDeclared()
{
    if (parametersDeclared)
        return;
    const juce::ScopedLock lock (parametersLock);
    if (parametersDeclared)
        return;
    ExecutionContext context;
    declareParameters (context);
    parametersDeclared = true;
}

void TemplateClassGenerator::addParameter (const juce::String& name, const juce::String& className)
{
    if (auto* parameterClass = tov::getClass (className))
        parameters.emplace_back (name, parameterClass);
}

int TemplateClassGenerator::findParameter (const juce::String& name)
{
    ensureParametersAreDeclared();
    for (size_t i = 0; i < parameters.size(); ++i)
        if (parameters[i].first == name)
            return (int) i;
    return -1;
}

size_t TemplateClassGenerator::getNumParameters()
{
    ensureParametersAreDeclared();
    return parameters.size();
}

Class* TemplateClassGenerator::create (const State& arguments, juce::String& errorMessage)
{
    ensureParametersAreDeclared();
    std::unique_ptr<TemplateGeneratedClass> generated (createEmptyClass());
    size_t position = 0;
    if (! addTemplateParametersRecursively (arguments, position, errorMessage, *generated))
        return nullptr;
    return generated.release();
}

bool TemplateClassGenerator::addTemplateParametersRecursively (const State& state, size_t& position, juce::String& errorMessage,
                                                               TemplateGeneratedClass& generatedClass)
{
    if (state.getType() == StateType::variablesType)
    {
        for (size_t i = 0; i < state.getNumVariables(); ++i)
        {
            const auto& name = state.getVariableName (i);
            if (findParameter (name) < 0)
            {
                errorMessage = "Could not find parameter " + name;
                return false;
            }
            if (! addTemplateParametersRecursively (state.getVariableStateRef (i), position, errorMessage, generatedClass))
                return false;
        }
        return true;
    }

    // Every parameter of the library's templates requires Object, so the first one's class serves for all.
    if (state.getType() == StateType::classExpressionType && ! parameters.empty()
        && ! checkArgumentInheritFrom (state, parameters.front().second, errorMessage))
        return false;

    const auto name = position < parameters.size() ? parameters[position].first : juce::String();
    generatedClass.addTemplateParameter (name, std::make_shared<State> (state));
    ++position;
    return true;
}

bool TemplateClassGenerator::checkArgumentInheritFrom (const State& argument, Class* requiredClass, juce::String& errorMessage) const
{
    if (! argument.checkType (StateType::classExpressionType, errorMessage))
        return false;
    auto* argumentClass = argument.getClassValue (true);
    if (argumentClass == nullptr)
    {
        errorMessage = "Could not find class " + argument.toShortString().quoted();
        return false;
    }
    if (requiredClass != &Object::staticClass && ! argumentClass->inheritsFrom (requiredClass))
    {
        errorMessage = "Cannot generate class " + getName() + ": parameter " + argumentClass->getName()
                     + " does not inherit from " + requiredClass->getName();
        return false;
    }
    return true;
}

//==============================================================================
void TemplateGeneratedClass::addTemplateParameter (const juce::String& name, const std::shared_ptr<State>& value)
{
    templateParameters.emplace_back (name, value);
}

void TemplateGeneratedClass::declareAttributes (ExecutionContext& context)
{
    Class::declareAttributes (context);
    for (auto& parameter : templateParameters)
        setAttribute (context, parameter.first, parameter.second->clone (UniqueIdentifier()));
}

std::shared_ptr<State> TemplateGeneratedClass::createAttribute (ExecutionContext& context, const juce::String& text,
                                                                const juce::String& sourceName)
{
    if (createClassExpressionFromString (text, nullptr) != nullptr)
        if (auto* relativeClass = getClassRelativeToThis (text))
            return std::make_shared<State> (relativeClass->getExpression());
    return Class::createAttribute (context, text, sourceName);
}

juce::String TemplateGeneratedClass::getParameterText (size_t index) const
{
    const auto& value = *templateParameters[index].second;
    if (value.getType() == StateType::classExpressionType)
        if (auto* parameterClass = value.getClassValue (true))
            return parameterClass->getFriendlyName();
    return value.toShortString();
}

juce::String TemplateGeneratedClass::computeFriendlyName() const
{
    const auto pattern = getStringAttribute ("friendlyNameExpression");
    if (pattern.isEmpty() || (getBaseClass() != nullptr && getBaseClass()->getStringAttribute ("friendlyNameExpression") == pattern))
        return Class::computeFriendlyName();

    juce::String result;
    int start = 0;
    for (;;)
    {
        const int percent = pattern.indexOfChar (start, '%');
        if (percent < 0 || percent + 1 >= pattern.length() || ! juce::CharacterFunctions::isDigit (pattern[percent + 1]))
            return result + pattern.substring (start);

        result += pattern.substring (start, percent);
        const int parameter = pattern[percent + 1] - '1';
        result += parameter >= 0 && (size_t) parameter < templateParameters.size() ? getParameterText ((size_t) parameter)
                                                                                 : juce::String ("%%");
        start = percent + 2;
    }
}

juce::String TemplateGeneratedClass::computeNameForFriendlyNames() const
{
    if (getStringAttribute ("friendlyNameExpression") == "%1" && templateParameters.size() == 1)
        return templateParameters.front().second->toShortString();
    return getStringAttribute ("nameForFriendlyNames", getStrippedName());
}

} // namespace tov
