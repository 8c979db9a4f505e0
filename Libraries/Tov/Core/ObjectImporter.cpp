#include "ObjectImporter.h"
#include "Object.h"
#include "../Standard/ExecutionContext.h"

namespace tov
{

ObjectImporter::ObjectImporter (ExecutionContext& context, const std::shared_ptr<State>& root)
    : context (context)
{
    stack.push_back (root);
}

bool ObjectImporter::load (Object& object)
{
    const State& state = *getCurrentState();
    if (state.getUniqueIdentifier().isNotNull() && object.getUniqueIdentifier().isNull())
        object.setUniqueIdentifier (state.getUniqueIdentifier());

    if (state.getClassExpression() != nullptr)
    {
        Class* stateClass = state.getClass();
        Class* objectClass = object.getClassWithoutLookUp();
        if (stateClass != nullptr && objectClass != nullptr && ! stateClass->inheritsFrom (objectClass))
        {
            sendError ("Loading " + state.toShortString (2),
                       "Invalid class: expected " + objectClass->getName() + " found " + stateClass->getName());
            return false;
        }
        if (stateClass != nullptr && objectClass == nullptr)
            object.setClass (stateClass);
    }

    const bool wasApplying = object.isApplyingVariableConstraints();
    if (! wasApplying)
        object.startApplyingVariableConstraints();
    const bool result = object.load (*this);
    if (! wasApplying)
        object.finishApplyingVariableConstraints();
    return result;
}

bool ObjectImporter::checkType (StateType type)
{
    juce::String error;
    if (getCurrentState()->checkType (type, error))
        return true;
    sendError (getSourceDescription ("ObjectImporter::checkType"), error);
    return false;
}

void ObjectImporter::sendError (const juce::String& sourceContext, const juce::String& message)
{
    context.error (message + " (in " + sourceContext + ")");
}

void ObjectImporter::sendWarning (const juce::String& sourceContext, const juce::String& message)
{
    context.warning (message + " (in " + sourceContext + ")");
}

void ObjectImporter::sendUnknownVariableWarning (const juce::String& sourceContext, const juce::String& name)
{
    sendWarning (getSourceDescription ("ObjectImporter::sendUnknownVariableWarning"),
                 name.isEmpty() ? juce::String ("Missing variable name") : "Unknown variable " + name + " in " + sourceContext);
}

juce::String ObjectImporter::getSourceDescription (juce::StringRef fallback) const
{
    if (getCurrentState()->getSource().isNotEmpty())
        return getCurrentState()->getSource();
    if (stack.front()->getSource().isNotEmpty())
        return stack.front()->getSource();
    return fallback;
}

//==============================================================================
ObjectImporter::Scope::Scope (ObjectImporter& importer, juce::StringRef name)
    : importer (importer)
{
    if (importer.getCurrentType() == StateType::voidType || ! importer.checkType (StateType::variablesType))
        return;
    if (auto state = importer.getVariableStateByName (name))
    {
        importer.enter (state);
        open = true;
    }
}

ObjectImporter::Scope::Scope (ObjectImporter& importer, size_t index)
    : importer (importer)
{
    if (index < importer.getNumVariables())
    {
        importer.enter (importer.getVariableState (index));
        open = true;
    }
}

ObjectImporter::Scope::~Scope()
{
    if (open)
        importer.leave();
}

} // namespace tov
