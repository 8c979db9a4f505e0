#pragma once

#include "Container.h"
#include <vector>
#include "../Core/TargetClassCache.h"

namespace tov
{

/** The reflected list of objects: holds its elements in order through their reference
    counters, is their parent, and saves them one after the other as unnamed variables.

    Its class "OwnedVector(T)" names the element class T in the class attribute "target";
    OwnedVector<T> is the typed front. An element may be held by several vectors at once
    (setShallow, loading by identifier): it lives until the last lets go of it.

    Notifications come after the vector has changed: in changedCallback a removed element is
    gone from the vector, yet still alive.
*/
class ObjectOwnedVector : public Container
{
public:
    TOV_DECLARE_CLASS (ObjectOwnedVector, Container)

    ObjectOwnedVector() = default;
    /** A vector of class "OwnedVector(targetClass)". */
    explicit ObjectOwnedVector (Class* targetClass)  { setTargetClass (targetClass); }
    ObjectOwnedVector (const ObjectOwnedVector& other) : Container (other)  { other.copyTo (*this); }
    ObjectOwnedVector& operator= (const ObjectOwnedVector& other)           { other.copyTo (*this); return *this; }
    /** Lets go of every element, without notification. */
    ~ObjectOwnedVector() override;

    //==============================================================================
    size_t size() const override                     { return objects.size(); }
    Object* get (size_t index) const                 { return objects[index]; }
    Object* operator[] (size_t index) const          { return objects[index]; }
    Object* getFirst() const                         { return objects.empty() ? nullptr : objects.front(); }
    Object* getLast() const                          { return objects.empty() ? nullptr : objects.back(); }
    const std::vector<Object*>& getVector() const noexcept  { return objects; }

    /** The index of that very object, or -1. */
    int find (const Object* object) const;
    bool contains (const Object* object) const       { return find (object) >= 0; }
    /** The index of the first element the predicate accepts, or -1. */
    int findIf (ObjectPredicate& predicate) const;
    Object* getByFriendlyName (const juce::String& name) const;
    /** The first element whose label is that text, or whose label is empty and whose friendly
        name is that text. */
    Object* getByLabel (const juce::String& label) const;

    //==============================================================================
    /** The class attribute "target", Object by default; cached until the class changes. */
    Class* getTargetClass() const;
    /** Makes this vector an "OwnedVector(target)", or a plain ObjectOwnedVector for null. */
    void setTargetClass (Class* target);
    void setClass (Class* newClass) override;
    /** The attribute "canUserRemoveObject" of the signature or the class, true by default. */
    bool canUserRemoveObject() const;

    /** The name of the element at that index: the vector's friendly name without a last "s",
        a blank and index + 1, so that element 2 of "Layers" is "Layer 3". */
    virtual juce::String getObjectFriendlyName (size_t index) const;

    //==============================================================================
    void append (Object* object, bool notify = true, bool uniqueLabel = false);
    void append (const std::vector<Object*>& newObjects, bool notify = true, bool uniqueLabel = false);
    /** Takes a count of the object and places it at the index; a null object or an index past
        the end does nothing. With uniqueLabel, a labelled object's label is first made unique. */
    void insert (size_t index, Object* object, bool notify = true, bool uniqueLabel = false);
    /** The element leaves the vector, observers hear of it, and only then is it let go of. */
    void remove (size_t index, bool notify = true);
    /** False when the object is not an element. */
    bool remove (const Object* object, bool notify = true);
    void removeFirst (bool notify = true)            { if (! objects.empty()) remove ((size_t) 0, notify); }
    void removeLast (bool notify = true)             { if (! objects.empty()) remove (objects.size() - 1, notify); }
    bool removeByFriendlyName (const juce::String& name, bool notify = true);
    /** Takes the element out and inserts it at index to of the shortened vector. */
    void move (size_t from, size_t to, bool notify = true);
    /** Grows with new objects of the target class, or shrinks from the end. */
    void resize (size_t count, bool notify = true);
    void reserve (size_t count)                      { objects.reserve (count); }
    /** The vector is already empty when observers hear of it; the elements go afterwards, in order. */
    void clear (bool notify = true) override;
    /** Holds exactly these objects, in this order; nothing when it already does. */
    void set (const std::vector<Object*>& newObjects, bool notify = true);
    /** Holds the same elements as the other vector, which keeps them too. */
    void setShallow (const ObjectOwnedVector& other, bool notify = true)  { set (other.objects, notify); }
    /** The same objects in the same order. */
    bool equalsVector (const std::vector<Object*>& other) const  { return objects == other; }

    /** The first index whose element's friendly name sorts after the name, else the size. */
    size_t getInsertionPositionAccordingToFriendlyName (const juce::String& name) const;
    void insertByFriendlyNameOrder (Object* object, bool notify = true, bool uniqueLabel = false);
    /** Moves the element to where its friendly name belongs. */
    void moveToFriendlyNameOrderedVector (size_t index, bool notify = true);

    /** The label itself when no element has it; otherwise the next free one: "Layer" gives
        "Layer 2", "Layer 3"...; "Take07" gives "Take08", keeping the width of the digits. */
    juce::String makeUniqueLabel (const juce::String& label) const;

    //==============================================================================
    /** Same size, and element by element of one class and the same or equal. */
    bool equalsSameClass (const Object& other) const override;
    bool equalsIgnoringVariables (const Object& other, ObjectPredicate& ignored) const override;
    /** Copies element by element: a target element of the same class keeps its identity. */
    void copyTo (Object& target) const override;
    /** "[a, b, c]"; of 33 elements or more, the first 30 and " and " + the rest + " others". */
    juce::String toString() const override;
    void save (ObjectExporter& exporter) const override;
    bool load (ObjectImporter& importer) override;
    /** An array of the elements' JSON; elements are created anew on loading. */
    juce::var saveToJson (uint32_t flags) const override;
    bool loadFromJson (ExecutionContext& context, const juce::var& value) override;
    void initializeObject() override;
    void deinitializeObject() override;
    void markObjectsAsBeingDestroyed() override;

protected:
    /** Called just before the element at that index leaves the vector. */
    virtual void objectRemoved (size_t index, bool notify)  {}

private:
    std::vector<Object*> objects;
    TargetClassCache targetClass;

    void makeLabelUnique (Object& object) const;
    bool loadElement (ObjectImporter& importer, Object*& loaded);
    void releaseAll (std::vector<Object*>& released);
    void releasePrevious (const std::vector<Object*>& previous);
};

} // namespace tov
