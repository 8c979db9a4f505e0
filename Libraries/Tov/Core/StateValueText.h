#pragma once

#include <juce_core/juce_core.h>
#include <string>

namespace tov
{

/** Appends the text of a real as State texts hold it: "+oo" and "-oo" for the
    largest values, "0.0" for values that are not finite, otherwise the value
    with twelve decimals and the trailing zeros dropped (the point stays).

    The decimals are those of juce::String (value, 12, false), which also cuts
    the text to the 48 characters of its conversion buffer: a value of more
    than 35 digits before the point keeps its first 48 characters and gains a
    point.
*/
void appendRealText (double value, std::string& text);

/** Appends a string in quotes, with backslashes and quotes escaped by a
    backslash; false, appending nothing, for ill-formed UTF-8, which JUCE's
    character-wise replacing escapes differently and only it can write.
*/
bool appendQuotedText (const juce::String& value, std::string& text);

} // namespace tov
