#include "Enumeration.h"
#include "../Core/Json.h"
#include "Integer.h"

namespace tov
{

TOV_BEGIN_CLASS (Enumeration)
TOV_END_CLASS()

EnumerationClass* Enumeration::getEnumerationClass() const
{
    return dynamic_cast<EnumerationClass*> (getClass());
}

bool Enumeration::isBare() const
{
    auto* enumerationClass = getEnumerationClass();
    return enumerationClass == nullptr || enumerationClass->getNumElements() == 0;
}

bool Enumeration::hasBitFlags() const
{
    auto* enumerationClass = getEnumerationClass();
    return enumerationClass != nullptr && enumerationClass->hasBitFlags();
}

bool Enumeration::isValueValid() const
{
    auto* enumerationClass = getEnumerationClass();
    return enumerationClass == nullptr || enumerationClass->isValidElementValue (value);
}

std::vector<size_t> Enumeration::getFlagElements() const
{
    std::vector<size_t> result;
    if (auto* enumerationClass = getEnumerationClass())
        for (size_t i = 0; i < enumerationClass->getNumElements(); ++i)
            if (const int32_t flag = enumerationClass->getElementValue (i); flag != 0 && (flag & value) != 0)
                result.insert (result.begin(), i);
    return result;
}

template <class GetText>
juce::String Enumeration::joinFlags (GetText&& getText) const
{
    const auto flags = getFlagElements();
    if (flags.empty())
    {
        const int zero = getEnumerationClass()->findElement ((int32_t) 0);
        return zero >= 0 ? getText ((size_t) zero) : juce::String (value);
    }
    juce::StringArray texts;
    for (auto index : flags)
        texts.add (getText (index));
    return texts.joinIntoString (" | ");
}

juce::String Enumeration::toString() const
{
    if (isBare())
        return juce::String (value);
    auto* enumerationClass = getEnumerationClass();
    if (enumerationClass->hasBitFlags())
        return joinFlags ([enumerationClass] (size_t index) { return enumerationClass->getElementName (index); });
    const int index = enumerationClass->findElement (value);
    return index >= 0 ? enumerationClass->getElementName ((size_t) index) : juce::String (value);
}

juce::String Enumeration::getDescription() const
{
    if (isBare())
        return juce::String (value);
    auto* enumerationClass = getEnumerationClass();
    if (enumerationClass->hasBitFlags())
        return joinFlags ([enumerationClass] (size_t index) { return enumerationClass->getElementFriendlyName (index); });
    const int index = enumerationClass->findElement (value);
    if (index < 0)
        return "Invalid value " + juce::String (value);
    return enumerationClass->getElementDescription ((size_t) index, EnumerationClass::defaultLanguage);
}

//==============================================================================
bool Enumeration::isConvertibleTo (const Object& target) const
{
    return dynamic_cast<const Number*> (&target) != nullptr || Object::isConvertibleTo (target);
}

void Enumeration::convertToObject (Object& target) const
{
    if (getClass() == target.getClass())
        copyTo (target);
    else if (auto* integer = dynamic_cast<Integer*> (&target))
        integer->set (value);
    else if (auto* number = dynamic_cast<Number*> (&target))
        number->setNumber (value);
    else
        Object::convertToObject (target);
}

//==============================================================================
void Enumeration::save (ObjectExporter& exporter) const
{
    if (isBare() || hasBitFlags())
        exporter.writeInteger (value);
    else
        exporter.writeString (toString());
}

int32_t Enumeration::getDefaultClassValue() const
{
    // The default object itself has nothing to fall back on.
    if (isClassDefaultObject() && getParent() == getClass())
        return 0;
    auto* defaults = dynamic_cast<Enumeration*> (getClass()->getDefaultObject());
    return defaults != nullptr ? defaults->value : 0;
}

bool Enumeration::load (ObjectImporter& importer)
{
    if (importer.getCurrentType() == StateType::integerType)
    {
        set ((int32_t) importer.getCurrentState()->getInteger());
        return true;
    }

    juce::String name;
    if (! importer.readString (name))
        return false;
    name = name.trim();

    auto* enumerationClass = getEnumerationClass();
    const int index = enumerationClass != nullptr ? enumerationClass->findElement (name) : -1;
    if (index < 0)
    {
        importer.sendError (getClassName() + "::load", "Could not find enumeration element " + name.quoted());
        set (getDefaultClassValue());
        return true;
    }
    set (enumerationClass->getElementValue ((size_t) index));
    return true;
}

juce::var Enumeration::saveToJson (uint32_t) const
{
    return toString();
}

bool Enumeration::loadFromJson (ExecutionContext& context, const juce::var& json)
{
    return loadFromState (context, std::make_shared<State> (juceVarToString (json)));
}

} // namespace tov
