#include "StateCloner.h"
#include "Object.h"
#include "State.h"

namespace tov
{

std::shared_ptr<State> StateCloner::clone (const State& source)
{
    identifiers.clear();
    getUniqueIdentifiersRecursively (source);
    return cloneRecursively (source);
}

void StateCloner::getUniqueIdentifiersRecursively (const State& node)
{
    if (node.getUniqueIdentifier().isNotNull())
        identifiers.insert (node.getUniqueIdentifier());

    if (node.getType() == StateType::ownedPointerType)
    {
        // A null target is a programming error; it is skipped rather than followed.
        if (auto target = node.getOwnedPointer())
            getUniqueIdentifiersRecursively (*target);
    }
    for (size_t i = 0; i < node.getNumVariables(); ++i)
        if (auto& variable = node.getVariableState (i))
            getUniqueIdentifiersRecursively (*variable);
}

UniqueIdentifier StateCloner::cloneUniqueIdentifier (UniqueIdentifier identifier) const
{
    if (identifier.isNull() || identifiers.count (identifier) == 0)
        return identifier;
    return identifier ^ mask;
}

std::shared_ptr<State> StateCloner::cloneRecursively (const State& node) const
{
    auto result = std::make_shared<State>();
    State& copy = *result;
    copy.setType (node.type); // first, since changing the type drops the class-of-value cache
    copy.classExpression = node.classExpression;
    copy.classOfValue.store (node.classOfValue.load (std::memory_order_acquire), std::memory_order_relaxed);
    copy.classOfNode.store (node.classOfNode.load (std::memory_order_acquire), std::memory_order_relaxed);
    copy.compatibilityClassOfNode.store (node.compatibilityClassOfNode.load (std::memory_order_acquire), std::memory_order_relaxed);
    copy.uniqueIdentifier = node.uniqueIdentifier.isNull() ? UniqueIdentifier() : node.uniqueIdentifier ^ mask;
    copy.versionNumber = node.versionNumber;

    switch (node.type)
    {
        case StateType::weakPointerType:
            copy.payload.word = cloneUniqueIdentifier (node.getUniqueIdentifierValue()).getInt64();
            break;
        case StateType::stringType:
            copy.getStringPayload() = node.getString();
            break;
        case StateType::ownedPointerType:
            if (auto& target = *node.payload.ownedPointer)
                *copy.payload.ownedPointer = cloneRecursively (*target);
            break;
        case StateType::variablesType:
        {
            auto& variables = *copy.payload.variables;
            variables.reserve (node.getNumVariables());
            for (auto& variable : *node.payload.variables)
                variables.emplace_back (variable.first, variable.second != nullptr ? cloneRecursively (*variable.second)
                                                                                 : std::shared_ptr<State>());
            break;
        }
        case StateType::bufferType:
            *copy.payload.buffer = *node.payload.buffer;
            break;
        default:
            copy.payload.word = node.payload.word;
            break;
    }
    copy.source = node.source;
    return result;
}

Object* StateCloner::cloneObject (ExecutionContext& context, const Object& source, Object* parent)
{
    auto state = source.makeState (false, true);
    return Object::createFromState (context, clone (*state), parent);
}

} // namespace tov
