#pragma once

#include "../Core/Object.h"

namespace tov
{

/** A text, saved as a string State. Named "name", "label" or "caption", it labels its owner. */
class String : public Object
{
public:
    TOV_DECLARE_CLASS (String, Object)

    String() = default;
    explicit String (const juce::String& value) : value (value) {}

    const juce::String& get() const noexcept         { return value; }
    /** Stores and, with notify, calls changed(); nothing happens when the text is the same. */
    virtual void set (const juce::String& newValue, bool notify = true);
    void reset (bool notify = true)                  { set ({}, notify); }
    bool isEmpty() const noexcept                    { return value.isEmpty(); }
    bool isNotEmpty() const noexcept                 { return value.isNotEmpty(); }

    bool equalsSameClass (const Object& other) const override;
    void copyTo (Object& target) const override;
    /** Any object converts to a text through its toString. */
    bool isConvertibleFrom (const Object&) const override  { return true; }
    void convertFrom (const Object& source) override;
    juce::String toString() const override           { return value; }
    void save (ObjectExporter& exporter) const override;
    bool load (ObjectImporter& importer) override;

protected:
    juce::String value;
};

} // namespace tov
