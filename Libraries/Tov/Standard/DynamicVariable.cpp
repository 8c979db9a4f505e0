#include "DynamicVariable.h"
#include "Color.h"
#include "ExecutionContext.h"
#include "Service.h"
#include "../Core/ClassRegistry.h"
#include "../Core/ObjectExporter.h"
#include "../Core/ObjectImporter.h"
#include "../Message/Transaction/ScopedVolatileTransaction.h"

namespace tov
{

TOV_BEGIN_CLASS (DynamicVariable, { "friendlyName", "\"Custom Parameter\"" }, { "value", "Object" })
    TOV_VARIABLE (dynamicVariableSignature)
    // The held value, of the class that the class attribute "value" names.
    ::tov::MemberDeclaration { "value", [] (Object* owner) -> Object* { return static_cast<DynamicVariable*> (owner)->getValue(); },
                               &::tov::classOf<Object>, nullptr, false, {} },
    TOV_VARIABLE (target)
TOV_END_CLASS()

DynamicVariable::DynamicVariable()
{
    dynamicVariableSignature.setParent (this);
    target.setParent (this);
    attachedTarget.setParent (this);
}

DynamicVariable::~DynamicVariable()
{
    detachAllObjects();
}

DynamicVariable* DynamicVariable::create (Class* dynamicVariableClass, const juce::String& name, const Object* initialValue,
                                          const Object* defaultValue, const StateMap& attributes)
{
    auto* created = dynamicVariableClass != nullptr ? dynamicVariableClass->createObject() : nullptr;
    auto* variable = dynamic_cast<DynamicVariable*> (created);
    if (variable == nullptr)
    {
        delete created;
        return nullptr;
    }
    variable->dynamicVariableSignature.friendlyName.set (name, false);
    if (initialValue != nullptr)
    {
        auto* held = variable->getValue();
        if (initialValue->getClass() == held->getClass())
            initialValue->copyTo (*held);
        else
            initialValue->convertTo (*held);
    }
    variable->setDefaultValue (defaultValue);
    variable->dynamicVariableSignature.setAttributes (attributes);
    return variable;
}

//==============================================================================
Object* DynamicVariable::getValue() const
{
    if (! value.isInitialized())
        value.initializeHolder (getValueClass(), const_cast<DynamicVariable*> (this));
    return value.get();
}

Class* DynamicVariable::getValueClass() const
{
    return getClass()->getClassAttribute ("value", &Object::staticClass);
}

juce::String DynamicVariable::getIdentifier() const
{
    auto identifier = dynamicVariableSignature.getAttribute ("identifier");
    if (identifier != nullptr && identifier->getType() == StateType::stringType)
        return identifier->getString();
    return getFriendlyName();
}

juce::String DynamicVariable::getIdentifier (const juce::String& friendlyName, const StateMap& attributes)
{
    const int index = attributes.find ("identifier");
    if (index >= 0)
        if (auto* identifier = attributes.getStateRef ((size_t) index); identifier != nullptr && identifier->getType() == StateType::stringType)
            return identifier->getString();
    return friendlyName;
}

//==============================================================================
const VariableSignature& DynamicVariable::getCachedVariableSignature() const
{
    auto& signature = cachedVariableSignature;
    if (signature.getName().isNotEmpty())
        return signature;

    signature.setValueClass (getValueClass());
    signature.clearAttributes();
    auto readOnly = dynamicVariableSignature.getAttribute ("readonly");
    signature.setReadOnly (readOnly != nullptr && readOnly->getType() == StateType::booleanType && readOnly->getBoolean());
    for (auto entry : dynamicVariableSignature.getAttributes())
        signature.setAttribute (entry.getKey()->get(), entry.getValue()->get());
    if (auto* defaultValue = getDefaultValueObject())
        signature.setAttribute ("default", defaultValue->makeState (false, true));
    else
        signature.removeAttribute ("default");
    // Named last: a name is what marks the signature as filled.
    signature.setName ("value");
    return signature;
}

MemberSignature* DynamicVariable::getVariableSignature (size_t index) const
{
    if (index == valueIndex)
        return const_cast<VariableSignature*> (&getCachedVariableSignature());
    return Object::getVariableSignature (index);
}

//==============================================================================
void DynamicVariable::setClass (Class* newClass)
{
    Object::setClass (newClass);
    if (newClass == nullptr)
        return;
    value.initializeHolder (getValueClass(), this);
    dynamicVariableSignature.variableClass.set (getValueClass(), false);
    cachedVariableSignature.setName ({});
}

void DynamicVariable::setDefaultValue (const Object* newDefault)
{
    auto& pointer = dynamicVariableSignature.defaultValue;
    auto* present = pointer.get();
    if (newDefault != nullptr && present != nullptr && newDefault->getClass() == present->getClass())
    {
        newDefault->copyTo (*present);
        present->changed();
    }
    else
    {
        pointer.set (newDefault != nullptr ? cloneFromValue (*newDefault) : nullptr);
    }
    cachedVariableSignature.setName ({});
}

Object* DynamicVariable::cloneFromValue (const Object& original) const
{
    // A default lives beside the value in the same space: its identifiers must not be the value's.
    auto state = original.makeState (false, true);
    const UniqueIdentifier mask ((uint64_t) Service::getRandomGeneratorFor (this).sampleInt64());
    auto* service = Service::getCurrentService();
    auto& context = service != nullptr ? service->getExecutionContext() : ExecutionContext::get();
    return Object::createFromState (context, state->clone (mask), const_cast<ObjectOwnedPointer*> (&dynamicVariableSignature.defaultValue));
}

void DynamicVariable::updateDeclaration (const juce::String& name, const Object* newDefault, const StateMap& attributes)
{
    dynamicVariableSignature.friendlyName.set (name);
    setDefaultValue (newDefault);
    dynamicVariableSignature.setAttributes (attributes);
}

//==============================================================================
void DynamicVariable::setTargetAndCopyValue (Object* newTarget, bool copy)
{
    target.set (newTarget, true);
    if (copy)
        copyValueToTarget();
}

void DynamicVariable::copyValueToTarget()
{
    if (isCopying())
        return;
    auto* bound = target.get();
    auto* held = getValue();
    if (bound == nullptr || held == nullptr)
        return;
    setMarkedFlag (true);
    if (held->getClass() == bound->getClass() && ! held->equals (*bound))
    {
        held->copyTo (*bound);
        bound->changed();
    }
    removeMarkedFlag();
}

void DynamicVariable::changedCallback (Object* object, Object*)
{
    auto* bound = target.getIfAlreadyCached();
    auto* held = getValue();
    if (object != bound || bound == nullptr || held == nullptr || isCopying())
        return;
    setMarkedFlag (true);
    {
        ScopedVolatileTransaction transaction (*held);
        if (bound->getClass() == held->getClass() && ! bound->equals (*held))
        {
            bound->copyTo (*held);
            held->changed();
        }
    }
    removeMarkedFlag();
}

void DynamicVariable::followTarget()
{
    auto* previous = attachedTarget.getIfAlreadyCached();
    auto* current = target.get();
    if (previous == current)
        return;
    if (previous != nullptr)
        detachObject (previous);
    if (current != nullptr)
        attachObject (current, false);
    attachedTarget.set (current, false);
}

void DynamicVariable::variableChangedCallback (Object* variable, Object* changedObject)
{
    if (variable == &target)
    {
        followTarget();
        return;
    }
    if (variable == value.get())
    {
        if (target.get() != nullptr)
        {
            copyValueToTarget();
            return;
        }
    }
    if (changedObject != nullptr && changedObject->isChildOf (&dynamicVariableSignature, false))
        cachedVariableSignature.setName ({});
}

//==============================================================================
void DynamicVariable::saveVariable (ObjectExporter& exporter, size_t index) const
{
    static const juce::String nodeClassName ("Node");
    auto* held = index == valueIndex ? getValue() : nullptr;
    const bool pruning = exporter.hasFlag (exportWithoutDefaults);
    bool keepDefault = false;
    if (held != nullptr && pruning && ! Class::inheritsFrom (held->getClass(), tov::getClass (nodeClassName)))
        if (auto* defaultValue = held->getDefaultValue())
            keepDefault = held->equals (*defaultValue);

    // A user's choice is written even where it equals the default; nodes stay pruned.
    if (keepDefault)
        exporter.removeFlag (exportWithoutDefaults);
    Object::saveVariable (exporter, index);
    if (keepDefault)
        exporter.addFlag (exportWithoutDefaults);
}

bool DynamicVariable::loadVariable (ObjectImporter& importer, juce::StringRef name)
{
    const juce::String variableName (name);
    if (variableName == "friendlyName" || variableName == "defaultValue")
        return dynamicVariableSignature.loadVariable (importer, name);
    if (variableName == "parameters")
    {
        const bool loaded = dynamicVariableSignature.loadVariable (importer, "attributes");
        upgradeAttributesFromParameters (importer);
        return loaded;
    }
    if (variableName == "value")
        return loadValue (importer);
    return Object::loadVariable (importer, name);
}

// Old documents named the identifier of a parameter after the shader variable it fed.
void DynamicVariable::upgradeAttributesFromParameters (ObjectImporter&)
{
    auto& attributes = dynamicVariableSignature.attributes;
    auto* glslName = attributes.find (String ("glslName"));
    if (glslName == nullptr)
        return;
    attributes.insert (new String ("identifier"), static_cast<StateObject*> (glslName->clone()), false);
    attributes.remove (String ("glslName"), false);
    cachedVariableSignature.setName ({});
}

// Old documents held plain colours where values are now HsvColor.
bool DynamicVariable::loadValue (ObjectImporter& importer)
{
    auto* held = getValue();
    if (held == nullptr)
        return Object::loadVariable (importer, "value");
    const auto& state = importer.getCurrentState();
    auto* hsvColor = tov::getClass ("HsvColor");
    if (hsvColor == nullptr || ! Class::inheritsFrom (state->getClass(), &Color::staticClass))
        return importer.load (*held);

    auto upgraded = std::make_shared<State> (*state);
    upgraded->setClass (hsvColor);
    importer.enter (upgraded);
    const bool loaded = importer.load (*held);
    importer.leave();
    return loaded;
}

} // namespace tov
