#pragma once

#include "ObjectOwnedVector.h"
#include "../Atomic/String.h"

namespace tov
{

/** A vector of String objects that reads and writes as juce::Strings, compared by content. */
class StringVector : public ObjectOwnedVector
{
public:
    TOV_DECLARE_CLASS (StringVector, ObjectOwnedVector)

    StringVector() = default;
    explicit StringVector (const std::vector<juce::String>& strings)  { set (strings, false); }

    String* get (size_t index) const                 { return static_cast<String*> (ObjectOwnedVector::get (index)); }
    const juce::String& getString (size_t index) const  { return get (index)->get(); }

    void append (const juce::String& string, bool notify = true);
    using ObjectOwnedVector::append;
    /** The index of the first element of that text, or -1. */
    int find (const juce::String& string) const;
    using ObjectOwnedVector::find;
    bool contains (const juce::String& string) const { return find (string) >= 0; }
    using ObjectOwnedVector::contains;
    /** Holds these texts, in this order; nothing when it already does. */
    void set (const std::vector<juce::String>& strings, bool notify = true);

    std::vector<juce::String> getVector() const;
    juce::StringArray getStringArray() const;

    /** Keeps the last capacity messages in a ring of capacity elements: the element at counter
        modulo capacity becomes the counter, a blank and the message, and the counter goes up.
        An empty message does nothing; a vector of another size is first cleared and resized.
        capacity must not be 0. */
    void addCyclicCountedLog (const juce::String& message, int64_t& counter, size_t capacity);
};

} // namespace tov
