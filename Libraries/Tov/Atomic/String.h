#pragma once

#include "../Core/ValueObject.h"

namespace tov
{

/** A text, saved as a string State. Named "name", "label" or "caption", it labels its owner. */
class String : public ValueObject<juce::String>
{
public:
    TOV_DECLARE_CLASS (String, Object)

    using ValueObject::ValueObject;

    void reset (bool notify = true)                  { set ({}, notify); }
    bool isEmpty() const noexcept                    { return value.isEmpty(); }
    bool isNotEmpty() const noexcept                 { return value.isNotEmpty(); }

    /** Any object converts to a text through its toString. */
    bool isConvertibleFrom (const Object&) const override  { return true; }
    void convertFrom (const Object& source) override { set (source.toString()); }
};

} // namespace tov
