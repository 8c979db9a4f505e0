#include "ClassExpression.h"
#include "State.h"
#include <map>
#include <mutex>

namespace tov
{

ClassExpression::ClassExpression (Type type, const juce::String& identifier,
                                  const ClassExpression* classParameterExpression,
                                  std::shared_ptr<State> classGeneratorArguments)
    : type (type), identifier (identifier),
      classParameterExpression (classParameterExpression),
      classGeneratorArguments (std::move (classGeneratorArguments))
{
}

ClassExpression::~ClassExpression() = default;

juce::String ClassExpression::toString() const
{
    switch (type)
    {
        case atomic:              return identifier;
        case templateApplication: return identifier + "(" + classGeneratorArguments->toShortString() + ")";
        case classParameter:      return classParameterExpression->toString() + ":" + identifier;
        case none:                break;
    }
    return "<noclass>";
}

static juce::String stripArgument (const State& argument)
{
    if (argument.getType() == StateType::classExpressionType && argument.getClassExpressionValue() != nullptr)
        return argument.getClassExpressionValue()->strip();
    return argument.toShortString();
}

juce::String ClassExpression::strip() const
{
    if (type != templateApplication)
        return toString();

    const State& arguments = *classGeneratorArguments;
    if (arguments.getType() != StateType::variablesType)
        return stripArgument (arguments) + identifier;

    juce::String parts;
    for (size_t i = 0; i < arguments.getNumVariables(); ++i)
        parts += stripArgument (arguments.getVariableStateRef (i));
    return parts + identifier;
}

bool ClassExpression::equals (const ClassExpression* a, const ClassExpression* b)
{
    if (a == b)
        return true;
    if (a == nullptr || b == nullptr)
        return false;
    if (a->type != b->type || a->identifier != b->identifier
        || ! equals (a->classParameterExpression, b->classParameterExpression))
        return false;
    return State::equals (a->classGeneratorArguments, b->classGeneratorArguments);
}

// Atomic expressions are interned for the life of the process; the class
// registry takes over the tables when the library tree is built.
const ClassExpression* createAtomicClassExpression (const juce::String& name)
{
    static std::mutex lock;
    static std::map<juce::String, std::unique_ptr<ClassExpression>> expressions;

    std::lock_guard<std::mutex> guard (lock);
    auto& slot = expressions[name];
    if (slot == nullptr)
        slot = std::make_unique<ClassExpression> (ClassExpression::atomic, name);
    return slot.get();
}

const ClassExpression* createTemplateClassExpression (const juce::String& templateName, const std::shared_ptr<State>& arguments)
{
    static std::mutex lock;
    static std::vector<std::unique_ptr<ClassExpression>> expressions;

    std::lock_guard<std::mutex> guard (lock);
    for (auto& expression : expressions)
        if (expression->getIdentifier() == templateName && State::equals (expression->getClassGeneratorArgumentsPtr(), arguments))
            return expression.get();
    expressions.push_back (std::make_unique<ClassExpression> (ClassExpression::templateApplication, templateName, nullptr, arguments));
    return expressions.back().get();
}

const ClassExpression* createClassParameterExpression (const ClassExpression* base, const juce::String& attributeName)
{
    static std::mutex lock;
    static std::map<std::pair<const ClassExpression*, juce::String>, std::unique_ptr<ClassExpression>> expressions;

    std::lock_guard<std::mutex> guard (lock);
    auto& slot = expressions[{ base, attributeName }];
    if (slot == nullptr)
        slot = std::make_unique<ClassExpression> (ClassExpression::classParameter, attributeName, base);
    return slot.get();
}

// Plain names only for now; "tov::" is the library's own namespace and names the same class.
const ClassExpression* createClassExpressionFromString (const juce::String& text, juce::String* errorMessage)
{
    auto name = text.trim();
    if (name.startsWith ("tov::"))
        name = name.substring (5);
    if (name.isEmpty() || ! juce::CharacterFunctions::isLetter (name[0]) || name.containsAnyOf (" ,{}():=\t\r\n[]"))
    {
        if (errorMessage != nullptr)
            *errorMessage = "Could not parse class expression: " + text;
        return nullptr;
    }
    return createAtomicClassExpression (name);
}

} // namespace tov
