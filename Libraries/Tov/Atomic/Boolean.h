#pragma once

#include "../Core/Object.h"

namespace tov
{

/** An on/off value, saved as a boolean State. */
class Boolean : public Object
{
public:
    TOV_DECLARE_CLASS (Boolean, Object)

    explicit Boolean (bool value = false) : value (value) {}

    bool get() const noexcept                        { return value; }
    void set (bool newValue, bool notify = true);
    void toggle (bool notify = true)                 { set (! value, notify); }

    bool equalsSameClass (const Object& other) const override;
    void copyTo (Object& target) const override;
    bool isConvertibleTo (const Object& target) const override;
    void convertToObject (Object& target) const override;
    juce::String toString() const override           { return value ? "true" : "false"; }
    void save (ObjectExporter& exporter) const override;
    bool load (ObjectImporter& importer) override;

private:
    bool value = false;
};

} // namespace tov
