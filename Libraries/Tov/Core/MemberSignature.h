#pragma once

#include "AttributesHost.h"

namespace tov
{

class Class;

/** What a class says about one of its members: value class, name, read-only flag and attributes. */
class MemberSignature : public AttributesHost
{
public:
    MemberSignature() = default;
    MemberSignature (Class* valueClass, const juce::String& name, bool readOnly)
        : valueClass (valueClass), name (name), readOnly (readOnly) {}

    Class* getValueClass() const noexcept             { return valueClass; }
    void setValueClass (Class* newClass) noexcept     { valueClass = newClass; }
    const juce::String& getName() const noexcept      { return name; }
    void setName (const juce::String& newName)        { name = newName; }
    bool isReadOnly() const noexcept                  { return readOnly; }
    void setReadOnly (bool value) noexcept            { readOnly = value; }

    /** Read-only members are saved only when asked for; "internal" ones never. */
    bool canBeSaved (bool saveReadOnly) const;

    juce::String getFriendlyName() const              { return makeFriendlyNameFromName (name, false); }
    /** The "friendlyName" attribute, or the name cut into capitalised words. */
    juce::String getFriendlyNameWithCapitals() const;

    /** Not empty, a lower-case letter first, then letters and digits only. */
    static bool isValidName (const juce::String& text);

    /** Cuts after a lower-case letter followed by an upper-case letter or a digit: "mp3Decoder" gives "mp", "3Decoder". */
    static juce::StringArray tokenizeIdentifier (const juce::String& text);

    /** The tokens joined by blanks, with first letters in upper case (but "in", "of") or in lower case. */
    static juce::String makeFriendlyNameFromName (const juce::String& text, bool capitals);

private:
    Class* valueClass = nullptr;
    juce::String name;
    bool readOnly = false;
};

/** The signature of a member variable. */
class VariableSignature : public MemberSignature
{
public:
    using MemberSignature::MemberSignature;
};

/** The signature of a method; getMethodClass gives the class that creates it. */
class MethodSignature : public MemberSignature
{
public:
    using MemberSignature::MemberSignature;
};

} // namespace tov
