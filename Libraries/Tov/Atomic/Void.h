#pragma once

#include "../Core/Object.h"

namespace tov
{

/** A value that holds nothing. Members whose class cannot be found become Void, so it takes
    whatever state it is given without complaint: old documents still load. */
class Void : public Object
{
public:
    TOV_DECLARE_CLASS (Void, Object)

    bool equalsSameClass (const Object&) const override  { return true; }
    void copyTo (Object& target) const override          { copyClassTo (target); }
    juce::String toString() const override                { return "void"; }
    void save (ObjectExporter&) const override            {}
    bool load (ObjectImporter&) override                  { return true; }
    bool loadFromJson (ExecutionContext&, const juce::var&) override  { return true; }
};

} // namespace tov
