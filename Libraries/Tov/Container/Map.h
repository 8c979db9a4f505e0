#pragma once

#include "ObjectMap.h"
#include "../Core/ClassRegistry.h"

namespace tov
{

/** A map from K to V, of class "Map({key=K,value=V})": the typed front of ObjectMap.

        Map<ObjectWeakPointer, Integer> counters;
        counters.insert (new ObjectWeakPointer (&target), new Integer (1));
        for (auto entry : counters)
            entry.getValue()->set (0);
*/
template <class K, class V>
class Map : public ObjectMap
{
public:
    Map() = default;

    /** One entry, its key and value as K and V. */
    class TypedIterator
    {
    public:
        explicit TypedIterator (ObjectMap::Iterator position) : position (position) {}
        K* getKey() const                            { return static_cast<K*> (position->key); }
        V* getValue() const                          { return static_cast<V*> (position->value); }
        const TypedIterator& operator*() const       { return *this; }
        TypedIterator& operator++()                  { ++position; return *this; }
        bool operator!= (const TypedIterator& other) const  { return position != other.position; }
        bool operator== (const TypedIterator& other) const  { return position == other.position; }
        ObjectMap::Iterator getPosition() const      { return position; }

    private:
        ObjectMap::Iterator position;
    };

    using ConstIterator = TypedIterator;

    TypedIterator begin() const                      { return TypedIterator (ObjectMap::getBegin()); }
    TypedIterator end() const                        { return TypedIterator (ObjectMap::getEnd()); }

    V* find (const K& key) const                     { return static_cast<V*> (ObjectMap::find (key)); }
    /** The value of the key, made and inserted when absent; takes the key. */
    V* get (K* key, bool notify = true)              { return static_cast<V*> (ObjectMap::get (key, notify)); }
    TypedIterator getEntry (K* key, bool notify = true)  { return TypedIterator (ObjectMap::getEntry (key, notify)); }
    void insert (K* key, V* value, bool notify = true)  { ObjectMap::insert (key, value, notify); }
    bool remove (const K& key, bool notify = true)   { return ObjectMap::remove (key, notify); }
    void remove (const TypedIterator& entry, bool notify = true)  { ObjectMap::remove (entry.getPosition(), notify); }

    juce::String getClassName() const override
    {
        auto* generated = lookUpTemplateClass();
        return generated != nullptr ? generated->getName() : juce::String ("Map");
    }
    /** "Map({key=K,value=V})", made when first named. */
    static Class* lookUpTemplateClass()              { return mapClass (classOf<K>(), classOf<V>()); }

protected:
    Class* lookUpClass() const override              { return lookUpTemplateClass(); }
};

} // namespace tov
