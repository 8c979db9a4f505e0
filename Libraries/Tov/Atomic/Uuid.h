#pragma once

#include "../Core/ValueObject.h"

namespace tov
{

/** A universal unique identifier, saved in its dashed text form; null by default. */
class Uuid : public ValueObject<juce::Uuid>
{
public:
    TOV_DECLARE_CLASS (Uuid, Object)

    Uuid() : ValueObject (juce::Uuid::null()) {}
    using ValueObject::ValueObject;

    /** 36 characters: hexadecimal digits with dashes in the places of the 8-4-4-4-12 form. */
    static bool isValidUuidDashedString (const juce::String& text);

    juce::String toString() const override           { return value.toDashedString(); }
    void save (ObjectExporter& exporter) const override;
    /** An invalid text fails without a report. */
    bool load (ObjectImporter& importer) override;
    /** The dashed text. */
    juce::var saveToJson (uint32_t flags) const override;
    bool loadFromJson (ExecutionContext& context, const juce::var& value) override;
};

} // namespace tov
