#pragma once

#include "../Core/ValueObject.h"

namespace tov
{

/** A counter that fires: each trig counts one and notifies. Documents saved without defaults
    carry no counts, so that loading one fires nothing. */
class Trigger : public ValueObject<int64_t>
{
public:
    TOV_DECLARE_CLASS (Trigger, Object)

    using ValueObject::ValueObject;

    void trig()                                      { ++value; changed(); }
    int64_t getCount() const noexcept                { return value; }
    void setCount (int64_t newCount, bool notify = true)  { set (newCount, notify); }

    void save (ObjectExporter& exporter) const override;
    /** A void state leaves the count as it is. */
    bool load (ObjectImporter& importer) override;
    /** The count as a 64-bit integer, nothing when saved without defaults; only 64-bit integers load. */
    juce::var saveToJson (uint32_t flags) const override;
    bool loadFromJson (ExecutionContext& context, const juce::var& value) override;
};

} // namespace tov
