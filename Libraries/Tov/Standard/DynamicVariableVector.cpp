#include "DynamicVariableVector.h"
#include "ExecutionContext.h"
#include "Service.h"
#include "UpdateDynamicVariableDeclarator.h"
#include "../Core/ClassExpression.h"
#include "../Core/ClassRegistry.h"
#include "../Core/ObjectImporter.h"

namespace tov
{

TOV_BEGIN_CLASS (DynamicVariableVector, { "target", "DynamicVariable" })
TOV_END_CLASS()

DynamicVariableVector::DynamicVariableVector()
{
    elementPointers.setParent (this);
    elementPointers.setAutoPruning (true);
}

//==============================================================================
int DynamicVariableVector::findDynamicVariableByFriendlyName (const juce::String& name) const
{
    for (size_t i = 0; i < size(); ++i)
        if (get (i)->getFriendlyName() == name)
            return (int) i;
    return -1;
}

int DynamicVariableVector::findDynamicVariableByIdentifier (const juce::String& identifier) const
{
    for (size_t i = 0; i < size(); ++i)
    {
        auto* attribute = get (i)->getCachedVariableSignature().getAttributeRef ("identifier");
        const juce::String own = attribute != nullptr && attribute->getType() == StateType::stringType ? attribute->getString() : juce::String();
        if (own == identifier)
            return (int) i;
    }
    return findDynamicVariableByFriendlyName (MemberSignature::makeFriendlyNameFromName (identifier, true));
}

//==============================================================================
void DynamicVariableVector::updateElementPointers()
{
    auto* elementClass = tov::getClass ("Element");
    if (elementClass == nullptr)
        return;
    std::vector<Object*> pointers;
    for (auto* variable : *this)
    {
        auto* value = variable->getValue();
        auto* pointer = dynamic_cast<ObjectOwnedPointer*> (value);
        if (pointer == nullptr && value != nullptr)
            pointer = dynamic_cast<ObjectOwnedPointer*> (value->getVariableByName ("player"));
        if (pointer != nullptr && Class::inheritsFrom (pointer->getTargetClass(), elementClass))
            pointers.push_back (pointer);
    }
    elementPointers.set (pointers);
}

void DynamicVariableVector::invalidateVariables()
{
    auto* owner = dynamic_cast<DynamicVariablesDeclaringObject*> (getParent());
    if (owner == nullptr)
        return;
    UpdateDynamicVariableDeclarator declarator (*this);
    ExecutionContext context;
    owner->declareDynamicVariables (context, declarator);
    declarator.update (*this);
}

//==============================================================================
// A bare record with an owned value was a dynamic variable before they had classes of their own.
std::shared_ptr<State> DynamicVariableVector::upgradeElement (const State& element)
{
    if (element.getType() != StateType::ownedPointerType)
        return nullptr;
    auto record = element.getOwnedPointer();
    if (record == nullptr || record->getClassExpression() != nullptr || record->getType() != StateType::variablesType)
        return nullptr;
    auto value = record->getVariableStateByName ("value");
    if (value == nullptr || value->getType() != StateType::ownedPointerType || value->getOwnedPointer() == nullptr)
        return nullptr;

    auto inner = std::make_shared<State> (*value->getOwnedPointer());
    // The one argument, "value", given by position: interned as "DynamicVariable(T)" is.
    auto arguments = std::make_shared<State>();
    arguments->setClassExpressionValue (inner->getClassExpression());

    auto upgraded = std::make_shared<State> (*record);
    upgraded->setClassExpression (createTemplateClassExpression ("DynamicVariable", arguments));
    inner->setUniqueIdentifier (UniqueIdentifier());
    upgraded->setVariableState ((size_t) upgraded->findVariable ("value"), inner);
    auto upgradedElement = std::make_shared<State> (element);
    upgradedElement->setOwnedPointer (upgraded);
    return upgradedElement;
}

// A render service keeps its variables while the constraints of a document pass through it.
bool DynamicVariableVector::isKeptDuringConstraintPass (const ObjectImporter& importer) const
{
    auto* service = Service::getCurrentService();
    return service != nullptr && service->getFriendlyName() == "rendering" && isApplyingVariableConstraints()
        && importer.getCurrentType() == StateType::voidType && size() > 0;
}

bool DynamicVariableVector::load (ObjectImporter& importer)
{
    std::shared_ptr<State> upgraded;
    const auto& current = importer.getCurrentState();
    for (size_t i = 0; i < importer.getNumVariables(); ++i)
    {
        if (auto element = upgradeElement (*importer.getVariableState (i)))
        {
            if (upgraded == nullptr)
                upgraded = std::make_shared<State> (*current);
            upgraded->setVariableState (i, element);
        }
    }

    if (isKeptDuringConstraintPass (importer))
        return true;
    if (upgraded == nullptr)
        return ObjectOwnedVector::load (importer);
    importer.enter (upgraded);
    const bool loaded = ObjectOwnedVector::load (importer);
    importer.leave();
    return loaded;
}

} // namespace tov
