// Object: what its signature and its parents say of it (read-only, editable, visible,
// animatable) and its default value.
#include "Object.h"
#include "MemberSignature.h"
#include "../Container/ObjectOwnedVector.h"
#include "../Standard/DynamicVariable.h"

namespace tov
{

bool Object::isReadOnly() const
{
    if (auto* signature = getSignature())
        if (signature->isReadOnly())
            return true;
    if (hasStaticAllocationFlag() && parent != nullptr)
        return parent->isReadOnly();
    return false;
}

bool Object::isEditable (VariableDependenciesDeclarator& declarator) const
{
    if (auto* signature = getSignature())
        if (signature->isReadOnly())
            return false;
    return parent == nullptr || parent->isVariableEditable (this, declarator);
}

bool Object::isEditable() const
{
    IgnoreVariableDependenciesDeclarator declarator;
    return isEditable (declarator);
}

bool Object::isVisible (VariableDependenciesDeclarator& declarator) const
{
    return parent == nullptr || parent->isVariableVisible (this, declarator);
}

bool Object::isVisible() const
{
    IgnoreVariableDependenciesDeclarator declarator;
    return isVisible (declarator);
}

bool Object::isVariableEditable (const Object* variable, VariableDependenciesDeclarator& declarator) const
{
    return isEditable (declarator);
}

bool Object::isVariableVisible (const Object* variable, VariableDependenciesDeclarator& declarator) const
{
    auto* signature = getVariableSignature (variable);
    return signature == nullptr || signature->getBooleanAttribute ("visible", true);
}

bool Object::isAnimatable() const
{
    // A list of values that are no numbers has nothing to animate.
    if (auto* vector = dynamic_cast<const ObjectOwnedVector*> (this))
    {
        auto* target = vector->getTargetClass();
        auto* targetDefault = target->isAbstract() ? nullptr : target->getDefaultObject();
        if (targetDefault != nullptr && targetDefault->getNumNumberVariables() == 0)
            return false;
    }
    for (const Object* level = this; level != nullptr; level = level->parent)
    {
        auto* signature = level->getSignature();
        auto* levelClass = level->getClass();
        auto attribute = [&] (const char* name, bool defaultValue)
        {
            return levelClass != nullptr ? levelClass->getBooleanAttribute (signature, name, defaultValue)
                                         : (signature != nullptr ? signature->getBooleanAttribute (name, defaultValue) : defaultValue);
        };

        if (! level->isVisible() || (signature != nullptr && signature->isReadOnly()) || attribute ("internal", false))
            return false;
        if (level == this && (! attribute ("animatable", true) || attribute ("deprecated", false)))
            return false;
        if (! level->hasStaticAllocationFlag())
            return true;
    }
    return true;
}

const Object* Object::getDefaultValue() const
{
    if (isClassDefaultObject())
        return this;

    constexpr size_t maxLevels = 64;
    size_t indices[maxLevels];
    size_t numLevels = 0;
    const Object* top = this;
    const DynamicVariable* holder = nullptr;
    while (top->hasStaticAllocationFlag() && top->parent != nullptr && numLevels < maxLevels)
    {
        // A dynamic variable's value counts against the variable's own default, its signature
        // against the signature class's.
        auto* variable = dynamic_cast<const DynamicVariable*> (top->parent);
        if (variable != nullptr && (top == variable->getValue() || top == &variable->dynamicVariableSignature))
        {
            holder = top == variable->getValue() ? variable : nullptr;
            break;
        }
        const int index = top->parent->findVariable (top);
        if (index < 0)
            break;
        indices[numLevels++] = (size_t) index;
        top = top->parent;
    }

    auto* topClass = top->getClass();
    const Object* result = holder != nullptr ? holder->getDefaultValueObject() : nullptr;
    if (result == nullptr && topClass != nullptr)
        result = topClass->getDefaultObject();
    for (size_t i = numLevels; i > 0 && result != nullptr; --i)
        result = result->getVariable (indices[i - 1]);

    if (result != nullptr && result->getClass() != getClass())
        juce::Logger::outputDebugString ("Class mismatch in Object::getDefaultValue(): expected " + getClassName()
                                         + " found " + result->getClassName());
    return result;
}

} // namespace tov
