#include "ObjectOption.h"
#include "../Core/Json.h"

namespace tov
{

TOV_BEGIN_CLASS (ObjectOption, { "value", "Object" })
    TOV_VARIABLE (enable)
TOV_END_CLASS()

Object* ObjectOption::getValue() const
{
    if (! value.isInitialized())
        value.initializeHolder (getValueClass(), const_cast<ObjectOption*> (this));
    return value.get();
}

Class* ObjectOption::getValueClass() const
{
    return getClass()->getClassAttribute ("value", &Object::staticClass);
}

void ObjectOption::setClass (Class* newClass)
{
    Object::setClass (newClass);
    if (newClass != nullptr)
        value.initializeHolder (getValueClass(), this);
}

bool ObjectOption::isConvertibleTo (const Object& target) const
{
    return getValue()->isConvertibleTo (target) || Object::isConvertibleTo (target);
}

void ObjectOption::convertToObject (Object& target) const
{
    getValue()->convertToObject (target);
}

bool ObjectOption::isVariableEditable (const Object* variable, VariableDependenciesDeclarator& declarator) const
{
    const bool editable = Object::isVariableEditable (variable, declarator);
    if (variable != value.get())
        return editable;
    declarator.add (const_cast<Boolean*> (&enable));
    return editable && isEnabled();
}

juce::String ObjectOption::toString() const
{
    return isEnabled() ? value.toString() : juce::String ("<optional>");
}

juce::var ObjectOption::saveToJson (uint32_t flags) const
{
    return isEnabled() ? getValue()->saveToJson (flags) : juce::var();
}

bool ObjectOption::loadFromJson (ExecutionContext&, const juce::var& json)
{
    if (json.isVoid())
    {
        setEnabled (false);
        return true;
    }
    setEnabled (true);
    return loadObjectFromJson (json, *getValue());
}

} // namespace tov
