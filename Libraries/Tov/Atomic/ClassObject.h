#pragma once

#include "../Core/Object.h"

namespace tov
{

/** A reference to a class, saved as a class expression; none by default. */
class ClassObject : public Object
{
public:
    TOV_DECLARE_CLASS (ClassObject, Object)

    explicit ClassObject (Class* value = nullptr) : value (value) {}

    Class* get() const noexcept                      { return value; }
    void set (Class* newValue, bool notify = true);
    void reset (bool notify = true)                  { set (nullptr, notify); }

    bool equalsSameClass (const Object& other) const override;
    void copyTo (Object& target) const override;
    /** The class's name, or "< None >". */
    juce::String toString() const override;
    void save (ObjectExporter& exporter) const override;
    /** A class expression, a class name as a string (empty or unknown for none), or void for none. */
    bool load (ObjectImporter& importer) override;

private:
    Class* value = nullptr;
};

} // namespace tov
