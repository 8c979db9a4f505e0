#pragma once

#include "ObjectOwnedVector.h"
#include "../Core/ClassRegistry.h"

namespace tov
{

/** A vector of T, of class "OwnedVector(T)": the typed front of ObjectOwnedVector.

        OwnedVector<Layer> layers;
        layers.append (new Layer());
        for (auto* layer : layers) ...
*/
template <class T>
class OwnedVector : public ObjectOwnedVector
{
public:
    OwnedVector() = default;

    T* get (size_t index) const                      { return static_cast<T*> (ObjectOwnedVector::get (index)); }
    T* operator[] (size_t index) const               { return get (index); }
    T* getFirst() const                              { return static_cast<T*> (ObjectOwnedVector::getFirst()); }
    T* getLast() const                               { return static_cast<T*> (ObjectOwnedVector::getLast()); }
    T* getByFriendlyName (const juce::String& name) const  { return static_cast<T*> (ObjectOwnedVector::getByFriendlyName (name)); }
    T* getByLabel (const juce::String& label) const  { return static_cast<T*> (ObjectOwnedVector::getByLabel (label)); }
    std::vector<T*> getVector() const
    {
        std::vector<T*> typed;
        typed.reserve (size());
        for (auto* object : ObjectOwnedVector::getVector())
            typed.push_back (static_cast<T*> (object));
        return typed;
    }

    int find (const T* object) const                 { return ObjectOwnedVector::find (object); }
    bool contains (const T* object) const            { return ObjectOwnedVector::contains (object); }
    void append (T* object, bool notify = true, bool uniqueLabel = false)  { ObjectOwnedVector::append (object, notify, uniqueLabel); }
    void insert (size_t index, T* object, bool notify = true, bool uniqueLabel = false)  { ObjectOwnedVector::insert (index, object, notify, uniqueLabel); }
    using ObjectOwnedVector::remove;
    bool remove (const T* object, bool notify = true)  { return ObjectOwnedVector::remove (static_cast<const Object*> (object), notify); }
    using ObjectOwnedVector::move;
    void set (const std::vector<T*>& newObjects, bool notify = true)  { ObjectOwnedVector::set (toObjects (newObjects), notify); }
    void setShallow (const OwnedVector& other, bool notify = true)    { ObjectOwnedVector::setShallow (other, notify); }
    bool equalsVector (const std::vector<T*>& other) const            { return ObjectOwnedVector::equalsVector (toObjects (other)); }

    /** Walks the elements as T pointers. */
    class Iterator
    {
    public:
        explicit Iterator (std::vector<Object*>::const_iterator position) : position (position) {}
        T* operator*() const                         { return static_cast<T*> (*position); }
        Iterator& operator++()                       { ++position; return *this; }
        bool operator!= (const Iterator& other) const { return position != other.position; }
        bool operator== (const Iterator& other) const { return position == other.position; }

    private:
        std::vector<Object*>::const_iterator position;
    };

    Iterator begin() const noexcept                  { return Iterator (ObjectOwnedVector::getVector().begin()); }
    Iterator end() const noexcept                    { return Iterator (ObjectOwnedVector::getVector().end()); }

    juce::String getClassName() const override       { return "OwnedVector(" + classOf<T>()->getName() + ")"; }
    /** "OwnedVector(T)", made when first named. */
    static Class* lookUpTemplateClass()              { return ownedVectorClass (classOf<T>()); }

protected:
    Class* lookUpClass() const override              { return lookUpTemplateClass(); }

private:
    static std::vector<Object*> toObjects (const std::vector<T*>& typed)  { return { typed.begin(), typed.end() }; }
};

} // namespace tov
