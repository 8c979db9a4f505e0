#pragma once

#include <juce_core/juce_core.h>
#include <map>

namespace tov
{

/** The renames of old class names: a sorted map from the name a saved document uses to the
    name of today's class, made once on first use and read-only afterwards.

    The new names are mostly those of the applications' classes, which this library does not
    hold: a rename applies only where the process has a class of the new name. An entry whose
    names are equal keeps the name as it is; the applications' own renames replace such
    entries. A retired name is never given to another class, since renames go by name alone.
*/
class CompatibilityTable
{
public:
    /** The new name of an old one, or an empty text. Takes the table's lock. */
    static juce::String findNewName (const juce::String& oldName);

    /** The whole table, for listings and tests. Takes the table's lock. */
    static const std::map<juce::String, juce::String>& get();

private:
    static void fill (std::map<juce::String, juce::String>& table);
};

} // namespace tov
