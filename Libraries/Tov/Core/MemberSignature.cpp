#include "MemberSignature.h"

namespace tov
{

bool MemberSignature::canBeSaved (bool saveReadOnly) const
{
    if (readOnly && ! saveReadOnly)
        return false;
    return ! getBooleanAttribute ("internal", false);
}

juce::String MemberSignature::getFriendlyNameWithCapitals() const
{
    const auto friendlyName = getStringAttribute ("friendlyName");
    return friendlyName.isNotEmpty() ? friendlyName : makeFriendlyNameFromName (name, true);
}

bool MemberSignature::isValidName (const juce::String& text)
{
    if (text.isEmpty() || ! juce::CharacterFunctions::isLowerCase (text[0]))
        return false;
    for (auto p = text.getCharPointer(); ! p.isEmpty(); ++p)
        if (! juce::CharacterFunctions::isLetterOrDigit (*p))
            return false;
    return true;
}

juce::StringArray MemberSignature::tokenizeIdentifier (const juce::String& text)
{
    juce::StringArray tokens;
    juce::String current;
    juce::juce_wchar previous = 0;
    for (auto p = text.getCharPointer(); ! p.isEmpty(); ++p)
    {
        const auto c = *p;
        const bool cut = juce::CharacterFunctions::isLowerCase (previous)
                      && (juce::CharacterFunctions::isUpperCase (c) || juce::CharacterFunctions::isDigit (c));
        if (cut)
        {
            tokens.add (current);
            current.clear();
        }
        current += juce::String::charToString (c);
        previous = c;
    }
    if (current.isNotEmpty())
        tokens.add (current);
    return tokens;
}

static juce::String withFirstLetter (const juce::String& token, bool upperCase)
{
    if (token.isEmpty())
        return token;
    const auto first = juce::String::charToString (token[0]);
    return (upperCase ? first.toUpperCase() : first.toLowerCase()) + token.substring (1);
}

juce::String MemberSignature::makeFriendlyNameFromName (const juce::String& text, bool capitals)
{
    auto tokens = tokenizeIdentifier (text);
    for (auto& token : tokens)
    {
        const bool smallWord = tokens.size() > 1 && (token.equalsIgnoreCase ("in") || token.equalsIgnoreCase ("of"));
        token = withFirstLetter (token, capitals && ! smallWord);
    }
    return tokens.joinIntoString (" ");
}

} // namespace tov
