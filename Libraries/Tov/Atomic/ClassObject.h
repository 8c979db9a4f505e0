#pragma once

#include "../Core/ValueObject.h"

namespace tov
{

/** A reference to a class, saved as a class expression; none by default. */
class ClassObject : public ValueObject<Class*>
{
public:
    TOV_DECLARE_CLASS (ClassObject, Object)

    using ValueObject::ValueObject;

    void reset (bool notify = true)                  { set (nullptr, notify); }

    /** The class's name, or "< None >". */
    juce::String toString() const override;
    void save (ObjectExporter& exporter) const override;
    /** A class expression, a class name as a string (empty or unknown for none), or void for none. */
    bool load (ObjectImporter& importer) override;
    /** The class's name or "< None >"; an unknown name fails. */
    juce::var saveToJson (uint32_t flags) const override;
    bool loadFromJson (ExecutionContext& context, const juce::var& value) override;
};

} // namespace tov
