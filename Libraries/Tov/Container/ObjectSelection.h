#pragma once

#include "Container.h"
#include "../Atomic/AsyncTrigger.h"
#include <functional>
#include <set>
#include <vector>
#include "../Core/TargetClassCache.h"

namespace tov
{

class ObjectWeakPointer;

/** The reflected ordered list of objects that are chosen without being owned.

    Each element is a weak pointer of its own, held by the selection and parented to it, so that
    a selection saves by address and outlives what it names: after a reload its addresses find
    the new objects, and after a deletion the element is dropped, the list shrinking at the next
    flush of async triggers or at the next read, never inside the deleting call.

        selection.insert (layer);                     // appended, once
        selection.setSingleton (other);
        if (auto* chosen = selection.getSingleton())  // reads drop dead elements first
            ...

    Its class "Selection(T)" names the class of what is selected in the class attribute "target";
    Selection<T> is the typed front. The signature attribute "notifyInCaseOfAddressLoss"
    (true by default) decides whether a read that drops dead elements calls changed().

    Reads of the list as a whole (front, back, find, contains, the singleton and the questions
    over the members) drop dead elements first. size and get (index) do not, so that a walk by
    index stays valid while it runs: a dead element there reads null.
*/
class ObjectSelection : public Container
{
public:
    TOV_DECLARE_CLASS (ObjectSelection, Container)

    /** Appends, in insert, when no position is given. */
    static constexpr uint32_t append = 0xffffffff;

    ObjectSelection();
    ObjectSelection (const ObjectSelection& other);
    ObjectSelection& operator= (const ObjectSelection& other)  { other.copyTo (*this); return *this; }
    /** Deletes every element, without notification. */
    ~ObjectSelection() override;

    //==============================================================================
    /** The number of elements, dead ones included until they are dropped. */
    size_t size() const override                     { return elements.size(); }
    /** The live object of the element at that index, or null when it died. */
    Object* get (size_t index) const;
    /** The first and last live members; null when empty. */
    Object* front();
    Object* back();
    ObjectWeakPointer* getWeakPointer (size_t index) const  { return elements[index]; }
    bool isSingleton();
    /** A single member whose class inherits from that class. */
    bool isSingletonOfClass (Class* memberClass);
    /** The one member, or null when there are none or several. */
    Object* getSingleton();
    /** The index of that member, or -1. */
    int find (const Object* object);
    bool contains (const Object* object)             { return find (object) >= 0; }

    //==============================================================================
    /** Adds the object at the position, clamped to the present elements, or at the end. With
        unique, an object that is already a member changes nothing. A null object is ignored. */
    void insert (Object* object, bool notify = true, bool unique = true, uint32_t position = append);
    /** Adds the live members of the other selection; one change at most. */
    void insert (ObjectSelection& other, bool notify = true, bool unique = true);
    /** Adds, once each, what the function gives for each live member of the source; with check,
        the source drops its dead elements first. One change at most. */
    void insertRelatedObject (ObjectSelection& source, const std::function<Object* (Object*)>& function,
                              bool notify = true, bool check = true);
    void remove (size_t index, bool notify = true);
    /** False when the object is no member. */
    bool remove (const Object* object, bool notify = true);
    /** Removes those of the objects that are members; one change at most. */
    void remove (const std::vector<Object*>& objects, bool notify = true);
    /** Removes the members that lie below the object, and the object itself with includeSelf. */
    void removeChildrenOf (const Object* object, bool includeSelf, bool notify = true);
    /** Removes the members that lie below another member. */
    void keepOnlyRootObjects (bool notify = true);
    /** Holds exactly these objects, in this order; nothing, not even a change, when it already does. */
    void set (const std::vector<Object*>& objects, bool notify = true);
    void set (const std::set<Object*>& objects, bool notify = true);
    /** As set, with the objects in the reverse order. */
    void reverseSet (const std::vector<Object*>& objects, bool notify = true);
    void setSingleton (Object* object, bool notify = true)  { set (std::vector<Object*> { object }, notify); }
    /** Deletes every element; a change only when there was one. */
    void clear (bool notify = true) override;
    void reserve (size_t count)                      { elements.reserve (count); }
    /** Whether dead elements are dropped; a selection starts with auto-pruning on. */
    void setAutoPruning (bool shouldPrune)           { autoPruning = shouldPrune; }
    bool isAutoPruning() const noexcept              { return autoPruning; }

    //==============================================================================
    /** True when empty; otherwise whether every member has the first member's parent, which must
        have one. */
    bool areAllBrothers();
    /** Some member is an ancestor of the object, or the object itself with includeSelf. */
    bool containsAncestorsOf (const Object* object, bool includeSelf);
    /** Some member lies below the object, or is the object itself with includeSelf. */
    bool containsChildOf (const Object* object, bool includeSelf);
    /** The first member that is an ancestor of the object (or the object with includeSelf), or null. */
    Object* findAncestorOf (const Object* object, bool includeSelf);
    bool containsEditableObjects();
    /** True also when empty. */
    bool containsOnlyEditableObjects();
    /** True also when empty. */
    bool doAllObjectsInheritFrom (Class* baseClass);
    /** The most derived class that every member's class inherits from; null when empty. */
    Class* findCommonBaseClass();
    /** The nearest object that every member lies at or below; null when empty or when there is none. */
    Object* getCommonAncestor();

    /** The class attribute "target", Object by default; cached until the class changes. */
    Class* getTargetClass() const;
    void setClass (Class* newClass) override;

    //==============================================================================
    /** "<Empty selection>", one member's description, or "a, b and c". */
    juce::String getDescription();
    /** One member's description per line; past a screenful, the last line counts the others. */
    juce::String getMultiLineDescription();
    /** How a member reads in the descriptions: its friendly name. */
    virtual juce::String getObjectDescription (const Object* object) const;
    /** "{", the elements' texts (their addresses) joined by ", ", "}". */
    juce::String toString() const override;

    //==============================================================================
    /** Runs a pending prune at once; then, when a dead element may be present, drops it,
        calling changed() as the signature attribute "notifyInCaseOfAddressLoss" says. */
    void ensureHasBeenChecked();
    /** With auto-pruning, drops each element whose object is gone, writing a line to the debug
        output; then, with notify, one change when something was dropped. */
    void checkNullPointers (bool notify);

    //==============================================================================
    /** Same number of elements, each pointing at the same object or address. */
    bool equalsSameClass (const Object& other) const override;
    bool equalsIgnoringVariables (const Object& other, ObjectPredicate& ignored) const override;
    /** The other selection points at the same objects and addresses afterwards. */
    void copyTo (Object& target) const override;
    /** Elements that have an address, each as an unnamed variable; the others are not saved. */
    void save (ObjectExporter& exporter) const override;
    /** Reads an element per variable; one that fails is left out and makes the result false.
        Loading the members the selection already has changes nothing. */
    bool load (ObjectImporter& importer) override;
    void initializeObject() override;
    void deinitializeObject() override;
    /** The deferred half of pruning, and the trigger for it when an element's object dies. */
    void variableChangedCallback (Object* variable, Object* changedObject) override;

private:
    std::vector<ObjectWeakPointer*> elements;
    bool autoPruning = true;
    bool hasBeenChecked = false;
    /** While load reads them, the new elements are no members yet. */
    bool loadingElements = false;
    AsyncTrigger pruneTrigger;
    TargetClassCache targetClass;

    /** Holds the element: counted, with this selection as parent and its space. */
    ObjectWeakPointer* adoptElement (ObjectWeakPointer* element) const;
    static void deleteElement (ObjectWeakPointer* element);
    void eraseElement (size_t index);
    void deleteAll (std::vector<ObjectWeakPointer*>& list);
    /** Makes the list the elements in place of the present ones, deleting those, when it points
        elsewhere; otherwise deletes the list. True when the elements changed. */
    bool replaceElements (std::vector<ObjectWeakPointer*>& list);
    bool holdsElements (const std::vector<ObjectWeakPointer*>& list) const;
    template <class Iterator>
    bool holdsObjects (Iterator begin, Iterator end) const;
    template <class Iterator>
    void setObjects (Iterator begin, Iterator end, size_t count, bool notify);
    bool loadElement (ObjectImporter& importer, size_t index, std::vector<ObjectWeakPointer*>& list);
    /** Removes the members the predicate accepts; with notify, one change when there were some. */
    template <class Predicate>
    void removeIf (Predicate&& shouldRemove, bool notify);
    template <class Predicate>
    bool anyMember (Predicate&& predicate);
};

} // namespace tov
