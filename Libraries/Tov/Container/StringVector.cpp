#include "StringVector.h"

namespace tov
{

TOV_BEGIN_CLASS (StringVector, { "target", "String" })
TOV_END_CLASS()

static String* createString (const juce::String& text)
{
    auto* string = static_cast<String*> (String::staticClass.createObject());
    string->set (text, false);
    return string;
}

void StringVector::append (const juce::String& string, bool notify)
{
    ObjectOwnedVector::append (createString (string), notify);
}

int StringVector::find (const juce::String& string) const
{
    for (size_t i = 0; i < size(); ++i)
        if (getString (i) == string)
            return (int) i;
    return -1;
}

void StringVector::set (const std::vector<juce::String>& strings, bool notify)
{
    if (getVector() == strings)
        return;
    std::vector<Object*> created;
    created.reserve (strings.size());
    for (auto& string : strings)
        created.push_back (createString (string));
    ObjectOwnedVector::set (created, notify);
}

std::vector<juce::String> StringVector::getVector() const
{
    std::vector<juce::String> strings;
    strings.reserve (size());
    for (size_t i = 0; i < size(); ++i)
        strings.push_back (getString (i));
    return strings;
}

juce::StringArray StringVector::getStringArray() const
{
    juce::StringArray strings;
    strings.ensureStorageAllocated ((int) size());
    for (size_t i = 0; i < size(); ++i)
        strings.add (getString (i));
    return strings;
}

void StringVector::addCyclicCountedLog (const juce::String& message, int64_t& counter, size_t capacity)
{
    if (message.isEmpty())
        return;
    if (size() != capacity)
    {
        clear (false);
        resize (capacity, false);
    }
    get ((size_t) (counter % (int64_t) capacity))->set (juce::String (counter) + " " + message, false);
    ++counter;
    changed();
}

} // namespace tov
