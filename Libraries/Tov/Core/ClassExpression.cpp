#include "ClassExpression.h"
#include "State.h"
#include "StateParser.h"
#include "../Standard/ExecutionContext.h"
#include <map>
#include <mutex>
#include <unordered_map>

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

//==============================================================================
// Interning. Expressions live for the life of the process, one object per
// distinct expression, so that expressions compare and hash by address. The
// class registry takes these tables over when the library tree is built;
// until then each table has its own lock, as the registry's will.
namespace
{
    struct AtomicExpressions
    {
        std::mutex lock;
        std::map<juce::String, std::unique_ptr<ClassExpression>> byName;
    };

    // Template expressions by name, then by the hash of their arguments; equal
    // hashes are told apart by State::equals.
    struct TemplateExpressions
    {
        std::mutex lock;
        std::map<juce::String, std::unordered_multimap<uint64_t, std::unique_ptr<ClassExpression>>> byName;
    };

    struct ParameterExpressions
    {
        std::mutex lock;
        std::map<std::pair<const ClassExpression*, juce::String>, std::unique_ptr<ClassExpression>> byBaseAndName;
    };

    AtomicExpressions& getAtomicExpressions()
    {
        static AtomicExpressions expressions;
        return expressions;
    }

    TemplateExpressions& getTemplateExpressions()
    {
        static TemplateExpressions expressions;
        return expressions;
    }

    ParameterExpressions& getParameterExpressions()
    {
        static ParameterExpressions expressions;
        return expressions;
    }
}

const ClassExpression* createAtomicClassExpression (const juce::String& name)
{
    auto& table = getAtomicExpressions();
    std::lock_guard<std::mutex> guard (table.lock);
    auto& slot = table.byName[name];
    if (slot == nullptr)
        slot = std::make_unique<ClassExpression> (ClassExpression::atomic, name);
    return slot.get();
}

const ClassExpression* createTemplateClassExpression (const juce::String& templateName,
                                                      const std::shared_ptr<State>& arguments)
{
    jassert (arguments != nullptr);
    const uint64_t argumentsHash = arguments->computeHash();

    auto& table = getTemplateExpressions();
    std::lock_guard<std::mutex> guard (table.lock);
    auto& expressions = table.byName[templateName];
    auto candidates = expressions.equal_range (argumentsHash);
    for (auto candidate = candidates.first; candidate != candidates.second; ++candidate)
        if (State::equals (candidate->second->getClassGeneratorArgumentsPtr(), arguments))
            return candidate->second.get();

    auto expression = std::make_unique<ClassExpression> (ClassExpression::templateApplication, templateName, nullptr, arguments);
    return expressions.emplace (argumentsHash, std::move (expression))->second.get();
}

const ClassExpression* createClassParameterExpression (const ClassExpression* base, const juce::String& attributeName)
{
    auto& table = getParameterExpressions();
    std::lock_guard<std::mutex> guard (table.lock);
    auto& slot = table.byBaseAndName[{ base, attributeName }];
    if (slot == nullptr)
        slot = std::make_unique<ClassExpression> (ClassExpression::classParameter, attributeName, base);
    return slot.get();
}

//==============================================================================
const ClassExpression* createClassExpressionFromString (const juce::String& text, juce::String* errorMessage)
{
    juce::String unused;
    juce::String& message = errorMessage != nullptr ? *errorMessage : unused;
    message.clear();

    if (text.isEmpty())
    {
        message = "Empty class expression";
        return nullptr;
    }

    const juce::String expressionText = text.startsWith ("tov::") ? text.substring (5) : text;

    // Reports of the State parser (from template arguments) go to the message when one was asked for.
    ToStringExecutionContext reportingContext (message);
    ExecutionContext silentContext;
    ExecutionContext& context = errorMessage != nullptr ? static_cast<ExecutionContext&> (reportingContext) : silentContext;

    StateParser parser (context, expressionText, "Class Expression");
    const ClassExpression* expression = parser.parseClassExpression();
    if (expression == nullptr || ! parser.isAtEnd())
    {
        if (message.isEmpty())
            message = "Could not parse class expression: " + text;
        return nullptr;
    }
    return expression;
}

} // namespace tov
