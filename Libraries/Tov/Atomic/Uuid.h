#pragma once

#include "../Core/Object.h"

namespace tov
{

/** A universal unique identifier, saved in its dashed text form; null by default. */
class Uuid : public Object
{
public:
    TOV_DECLARE_CLASS (Uuid, Object)

    Uuid() : value (juce::Uuid::null()) {}
    explicit Uuid (const juce::Uuid& value) : value (value) {}

    const juce::Uuid& get() const noexcept           { return value; }
    void set (const juce::Uuid& newValue, bool notify = true);

    /** 36 characters: hexadecimal digits with dashes in the places of the 8-4-4-4-12 form. */
    static bool isValidUuidDashedString (const juce::String& text);

    bool equalsSameClass (const Object& other) const override;
    void copyTo (Object& target) const override;
    juce::String toString() const override           { return value.toDashedString(); }
    void save (ObjectExporter& exporter) const override;
    /** An invalid text fails without a report. */
    bool load (ObjectImporter& importer) override;

private:
    juce::Uuid value;
};

} // namespace tov
