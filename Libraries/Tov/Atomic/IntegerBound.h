#pragma once

#include "../Core/Object.h"

namespace tov
{

/** The work of BoundedInteger that does not depend on its value class, compiled once: a value
    kept below a bound, where a bound of 0 means none, compared as unsigned or signed numbers. */
struct IntegerBound
{
    static bool isBelow (int64_t value, int64_t bound, bool isUnsigned);
    /** The value, or bound - 1 when there is a bound and the value is not below it. */
    static int64_t limit (int64_t value, int64_t bound, bool isUnsigned);
    static bool isValid (int64_t value, int64_t bound, bool isUnsigned);

    /** "value / bound", followed by a blank and the unit if there is one. */
    static juce::String toString (int64_t value, int64_t bound, const juce::String& unit = {});
    /** The first two numbers of the text, ignoring the "/" between them. */
    static bool parse (const juce::String& text, int64_t& value, int64_t& bound, juce::String& error);

    static void save (ObjectExporter& exporter, int64_t value, int64_t bound);
    /** Reads "value" and "bound" in any order; fails with "value is too large" when the pair is invalid. */
    static bool load (ObjectImporter& importer, int64_t& value, int64_t& bound, bool isUnsigned, const juce::String& context);
};

} // namespace tov
