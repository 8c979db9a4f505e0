#pragma once

#include "../Core/Object.h"

namespace tov
{

/** A counter that fires: each trig counts one and notifies. Documents saved without defaults
    carry no counts, so that loading one fires nothing. */
class Trigger : public Object
{
public:
    TOV_DECLARE_CLASS (Trigger, Object)

    explicit Trigger (int64_t count = 0) : count (count) {}

    void trig();
    int64_t getCount() const noexcept                { return count; }
    void setCount (int64_t newCount, bool notify = true);
    int64_t get() const noexcept                     { return count; }
    void set (int64_t newCount, bool notify = true)  { setCount (newCount, notify); }

    bool equalsSameClass (const Object& other) const override;
    void copyTo (Object& target) const override;
    juce::String toString() const override           { return juce::String (count); }
    void save (ObjectExporter& exporter) const override;
    bool load (ObjectImporter& importer) override;

private:
    int64_t count = 0;
};

} // namespace tov
