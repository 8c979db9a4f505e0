#pragma once

#include "Map.h"
#include "../Atomic/String.h"

namespace tov
{

/** A map from texts to V, of class "Map({key=String,value=V})": the key is a juce::String,
    held in the map as a String object. */
template <class V>
class StringMap : public Map<String, V>
{
public:
    using Base = Map<String, V>;
    using Base::find;
    using Base::get;
    using Base::insert;
    using Base::remove;

    V* find (const juce::String& key) const          { return Base::find (String (key)); }
    /** The value of the key, made and inserted when absent. */
    V* get (const juce::String& key, bool notify = true)  { return Base::get (makeKey (key), notify); }
    void insert (const juce::String& key, V* value, bool notify = true)  { Base::insert (makeKey (key), value, notify); }
    bool remove (const juce::String& key, bool notify = true)  { return Base::remove (String (key), notify); }
    bool contains (const juce::String& key) const    { return find (key) != nullptr; }

private:
    static String* makeKey (const juce::String& text)
    {
        auto* key = static_cast<String*> (String::staticClass.createObject());
        key->set (text, false);
        return key;
    }
};

} // namespace tov
