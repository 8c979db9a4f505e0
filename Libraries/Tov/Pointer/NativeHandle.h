#pragma once

#include "../Core/ValueObject.h"

namespace tov
{

/** An opaque 64-bit handle of the system (a window, a device), saved as hexadecimal text. */
class NativeHandle : public ValueObject<uint64_t>
{
public:
    TOV_DECLARE_CLASS (NativeHandle, Object)

    using ValueObject::ValueObject;

    /** "null" for 0, otherwise "Native Handle (" + hexadecimal + ")". */
    juce::String toString() const override;
    /** Copies class and value, with notification. */
    void copyTo (Object& target) const override;
    void save (ObjectExporter& exporter) const override;
    bool load (ObjectImporter& importer) override;
    /** The hexadecimal text, as saved in States. */
    juce::var saveToJson (uint32_t flags) const override;
    bool loadFromJson (ExecutionContext& context, const juce::var& value) override;
};

} // namespace tov
