#pragma once

#include "StringMap.h"

namespace tov
{

/** A map from variable-like names to objects of any class, as used for settings: one object
    per class, under the class name with a lower-case first letter. */
class NamedObjectMap : public StringMap<Object>
{
public:
    TOV_DECLARE_CLASS (NamedObjectMap, ObjectMap)

    /** The object of that class kept under its name, made and inserted when absent. */
    Object* getByValueClass (Class* valueClass, bool notify = true);

    /** Its own declared name, not that of the Map it is made from. */
    juce::String getClassName() const override       { return Object::getClassName(); }

    /** One property per key. A value whose class is the one its key names stands as it is; any
        other is wrapped as {"class", "value"}. */
    juce::var saveToJson (uint32_t flags) const override;
    bool loadFromJson (ExecutionContext& context, const juce::var& value) override;
};

} // namespace tov
