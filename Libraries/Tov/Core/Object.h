#pragma once

#include "ClassDeclaration.h"
#include "ObjectPredicate.h"
#include "State.h"
#include "UniqueIdentifier.h"
#include "View.h"
#include <juce_core/juce_core.h>
#include <cstdint>
#include <memory>
#include <vector>

namespace tov
{

class Class;
class ExecutionContext;
class ObjectConverter;
class MemberSignature;
class ObjectExporter;
class ObjectImporter;
class ObjectSpace;
class ObjectWeakPointer;

/** The root of every reflected thing: values, containers, tasks, messages, classes.

    An object holds a small fixed header: identity, owner chain, reference
    count, change counter, views and a flag word. Everything that makes it
    reflective lives in its Class. Member variables are objects embedded in
    the memory of their owner; each has the owner as parent, and change
    notifications climb that chain.

    An object whose reference counter holds the sentinel 0xa0a0a0a0 is
    embedded or stack-allocated ("statically allocated"); any other is a
    heap object owned through its counter.
*/
class Object
{
public:
    TOV_DECLARE_ROOT_CLASS (Object)

    enum Flags : uint32_t
    {
        initializedFlag                  = 0x1,
        beingDestroyedFlag               = 0x2,
        insideChangedFlag                = 0x4,
        propagateChildrenChangesFlag     = 0x8,
        applyingVariableConstraintsFlag  = 0x10,
        multiThreadSafeFlag              = 0x20,
        classDefaultObjectFlag           = 0x40,
        insideGetFriendlyNameFlag        = 0x80,
        markedFlag                       = 0xF000
    };

    static constexpr uint64_t staticAllocationSentinel = 0xa0a0a0a0;

    Object() noexcept = default;
    explicit Object (Class* objectClass) noexcept : objectClass (objectClass) {}
    Object (const Object& other);
    Object& operator= (const Object& other) { other.copyTo (*this); return *this; }
    virtual ~Object();

    //==============================================================================
    // Identity and class
    UniqueIdentifier getUniqueIdentifier() const noexcept           { return uniqueIdentifier; }
    void setUniqueIdentifier (UniqueIdentifier identifier) noexcept  { uniqueIdentifier = identifier; }

    /** The one question that may be asked of a pointer that may be stale. */
    static bool hasBeenDeleted (const Object* object) noexcept;

    Class* getClass() const;
    Class* getClassWithoutLookUp() const noexcept                   { return objectClass; }
    virtual juce::String getClassName() const;
    virtual void setClass (Class* newClass);
    void copyClassTo (Object& target) const;
    juce::String getClassFriendlyName() const;

    /** The class from the run-time type: direct lookup of plain names, class expressions otherwise; not cached. */
    Class* lookupAtomicClassFromRtti() const;

    //==============================================================================
    // Flags
    uint32_t getFlags() const noexcept                   { return flags; }
    bool hasFlag (uint32_t mask) const noexcept          { return (flags & mask) == mask; }
    void setFlag (uint32_t mask) noexcept                { flags |= mask; }
    void setFlag (uint32_t mask, bool value) noexcept    { value ? setFlag (mask) : removeFlag (mask); }
    void removeFlag (uint32_t mask) noexcept             { flags &= ~mask; }

    bool isObjectInitialized() const noexcept            { return hasFlag (initializedFlag); }
    bool isBeingDestroyed() const noexcept               { return hasFlag (beingDestroyedFlag); }
    bool isInsideChanged() const noexcept                { return hasFlag (insideChangedFlag); }
    bool doPropagateChildrenChanges() const noexcept     { return hasFlag (propagateChildrenChangesFlag); }
    void setPropagateChildrenChanges (bool value)        { setFlag (propagateChildrenChangesFlag, value); }
    bool isMultiThreadSafe() const noexcept              { return hasFlag (multiThreadSafeFlag); }
    void setMultiThreadSafe (bool value)                 { setFlag (multiThreadSafeFlag, value); }
    bool isClassDefaultObject() const noexcept           { return hasFlag (classDefaultObjectFlag); }

    /** A class default object always counts as applying constraints, so no constraint code runs on defaults. */
    bool isApplyingVariableConstraints() const noexcept  { return (flags & (applyingVariableConstraintsFlag | classDefaultObjectFlag)) != 0; }
    void startApplyingVariableConstraints() noexcept     { setFlag (applyingVariableConstraintsFlag); }
    void finishApplyingVariableConstraints() noexcept    { removeFlag (applyingVariableConstraintsFlag); }
    void startApplyingVariableConstraintsOnParents (std::vector<Object*>& marked);
    static void finishApplyingVariableConstraintsOnParents (const std::vector<Object*>& marked);

    void setMarkedFlag (bool value)                      { setFlag (markedFlag, value); }
    void removeMarkedFlag()                              { removeFlag (markedFlag); }
    bool hasMarkedFlag() const noexcept                  { return hasFlag (markedFlag); }

    static void setClassDefaultObjectAndMultiThreadSafeRecursively (Object* object, Class* objectClass);

    //==============================================================================
    // Reference counting
    bool hasStaticAllocationFlag() const noexcept        { return referenceCounter == staticAllocationSentinel; }
    bool isReferenceCounted() const noexcept             { return ! hasStaticAllocationFlag(); }
    void setStaticAllocationFlag() noexcept              { referenceCounter = staticAllocationSentinel; }
    void removeStaticAllocationFlag() noexcept           { if (hasStaticAllocationFlag()) referenceCounter = 0; }
    void incrementReferenceCounter();
    void decrementReferenceCounter (bool deleteAtZero = true);
    uint64_t getReferenceCount() const noexcept          { return referenceCounter; }

    uint64_t getNumChanges() const noexcept              { return numChanges; }
    void setNumChanges (uint64_t value) noexcept         { numChanges = value; }

    //==============================================================================
    // Variables
    size_t getNumVariables() const;
    Object* getVariable (size_t index);
    const Object* getVariable (size_t index) const;
    int findVariable (juce::StringRef name) const;
    int findVariable (const Object* variable) const;
    virtual Object* getVariableByName (juce::StringRef name);
    const Object* getVariableByName (juce::StringRef name) const { return const_cast<Object*> (this)->getVariableByName (name); }
    Object* getVariableByNameAndClass (juce::StringRef name, Class* requiredClass);
    Object* getVariableByClass (Class* requiredClass);
    Object* getContextVariableByNameAndClass (juce::StringRef name, Class* requiredClass);
    Object* getContextVariableByName (juce::StringRef name);

    virtual MemberSignature* getVariableSignature (const Object* variable) const;
    virtual MemberSignature* getVariableSignature (size_t index) const;
    /** The parent's signature of this object; null at the root and at the top of a default-object tree. */
    MemberSignature* getSignature() const;

    virtual size_t getNumNumberVariables() const          { return 0; }
    virtual Object* getNumberVariable (size_t)            { return nullptr; }

    bool acceptVariables (ObjectPredicate& predicate);
    bool acceptVariablesRecursively (ObjectPredicate& predicate, bool followOwnedPointers);

    //==============================================================================
    // Object tree
    Object* getParent() const noexcept                   { return parent; }
    bool hasParent() const noexcept                      { return parent != nullptr; }
    void setParent (Object* newParent) noexcept          { parent = newParent; }
    void setParentsRecursively (Object* newParent);
    ObjectSpace* getSpace() const noexcept               { return space; }
    bool hasSpace() const noexcept                       { return space != nullptr; }
    void setSpace (ObjectSpace* newSpace) noexcept       { space = newSpace; }

    bool isChildOf (const Object* ancestor, bool strict) const;
    Object* findAncestorOfClass (Class* ancestorClass, int maxLevels = 0x7fffffff) const;
    Object* getCommonAncestor (Object* other);

    void getObjectPath (std::vector<uint64_t>& path) const;
    static bool compareObjectPaths (const std::vector<uint64_t>& a, const std::vector<uint64_t>& b);

    //==============================================================================
    // Comparison and copying
    /** True for the same object; false for different classes; otherwise equalsSameClass. */
    bool equals (const Object& other) const;
    /** Compares with an object of the same class; the base compares the variables pairwise. */
    virtual bool equalsSameClass (const Object& other) const;
    virtual bool equalsIgnoringVariables (const Object& other, ObjectPredicate& ignored) const;
    bool equalsIgnoringReadOnly (const Object& other, bool includeNotEditable) const;
    virtual void copyTo (Object& target) const;
    Object* clone (Object* newParent = nullptr) const;

    virtual bool isConvertibleTo (const Object& target) const;
    bool isConvertibleTo (Class* targetClass) const;
    bool isConvertibleTo (const juce::String& className) const;
    virtual bool isConvertibleFrom (const Object&) const  { return false; }
    virtual void convertFrom (const Object&)              {}
    virtual void convertToObject (Object& target) const;
    /** Converts into the target with the first converter that ObjectConverters has for the
        target's class, reporting on the calling thread's context. No converter is nothing to
        do: true, and the target stays as it was. */
    bool convertTo (Object& target) const;
    bool convertTo (ExecutionContext& context, Object& target) const;
    /** A null converter leaves the target as it was and answers true. */
    bool convertTo (ExecutionContext& context, Object& target, const ObjectConverter* converter) const;

    //==============================================================================
    // Saving and loading
    virtual void save (ObjectExporter& exporter) const;
    virtual bool load (ObjectImporter& importer);
    virtual void saveVariable (ObjectExporter& exporter, size_t index) const;
    virtual bool loadVariable (ObjectImporter& importer, juce::StringRef name);
    bool loadFromState (ExecutionContext& context, const std::shared_ptr<State>& state);
    /** The object as a State; without defaults, embedded values equal to their defaults are left out. */
    std::shared_ptr<State> makeState (bool withoutDefaults = true, bool writeClass = false) const;
    /** A new object of the class the state names, loaded from it; null with the lookup's words on the context. */
    static Object* createFromState (ExecutionContext& context, const std::shared_ptr<State>& state, Object* parent = nullptr);
    bool loadFromFile (ExecutionContext& context, const juce::File& file);
    /** Saves the state without defaults to a state file. */
    bool saveToFile (ExecutionContext& context, const juce::File& file, bool writeClass = false) const;

    //==============================================================================
    // JSON (see Json.h): no identifiers, class names or versions, driven by the variable signatures.
    /** An object of its variables' JSON, keyed by their JSON identifiers; void without variables.
        Flags are ExporterFlags: exportTransientVariables saves transient variables,
        exportWithoutDefaults leaves out those equal to their default. */
    virtual juce::var saveToJson (uint32_t flags) const;
    /** The properties of an object value into the variables; any other value only when it converts to false. */
    virtual bool loadFromJson (ExecutionContext& context, const juce::var& value);
    /** One property: "custom_fields" loads into this object, unknown keys and nulls are ignored. */
    virtual bool loadVariableFromJson (ExecutionContext& context, juce::StringRef name, const juce::var& value, juce::String* error);
    juce::var toJson (uint32_t flags = 0) const     { return saveToJson (flags); }

    /** A 64-bit hash of what the object saves, transient variables included and owned objects by identifier. */
    uint64_t computeHash() const;

    //==============================================================================
    // Names and texts
    virtual juce::String getFriendlyName() const;
    virtual void getFriendlyNameDependencies (VariableDependenciesDeclarator& declarator) const;
    virtual juce::String getAutomaticFriendlyName() const;
    virtual juce::String toString() const;
    /** The String variable named "name", "label" or "caption", if any. */
    Object* getLabelVariable() const;
    /** The text of the label variable; empty without one. */
    juce::String getLabelText() const;

    //==============================================================================
    // Changes
    /** Counts the change, tells the parents, the space and the views; see Object.cpp for the order. */
    void changed();
    virtual void variableChangedCallback (Object* variable, Object* changedObject) {}
    virtual bool shouldIncrementNumChanges (Object* variable, Object* changedObject) { return true; }
    virtual void thisChangedCallback() {}

    virtual bool hasVariableConstraints (const Object* variable) const { return hasVariableConstraints(); }
    virtual bool hasVariableConstraints() const { return false; }

    //==============================================================================
    // Editing and visibility
    bool isReadOnly() const;
    bool isEditable (VariableDependenciesDeclarator& declarator) const;
    bool isEditable() const;
    bool isVisible (VariableDependenciesDeclarator& declarator) const;
    bool isVisible() const;
    virtual bool isVariableEditable (const Object* variable, VariableDependenciesDeclarator& declarator) const;
    virtual bool isVariableVisible (const Object* variable, VariableDependenciesDeclarator& declarator) const;
    bool isAnimatable() const;

    /** The object against which this one's current value counts as default. */
    const Object* getDefaultValue() const;

    //==============================================================================
    // Life cycle
    void callInitializeObject (ObjectSpace* newSpace, Class* newClass, Object* newParent);
    void callDeinitializeObject();
    virtual void initializeObject();
    virtual void deinitializeObject();
    virtual void markObjectsAsBeingDestroyed();
    void destroyed();
    virtual void deleteThis();

    //==============================================================================
    // Views
    void addView (View* view);
    void removeView (View* view);
    void detachAllViews();
    size_t getNumViews() const noexcept                  { return views != nullptr ? views->views.size() : 0; }
    View* getView (size_t index) const                   { return views->views[index]; }
    void callMessageCallbackOnAllViews (void* message);

    /** The views that are weak pointers to this object. */
    void getWeakPointersToThis (std::vector<ObjectWeakPointer*>& result) const;
    bool hasWeakPointersToThis() const;
    /** Tells the views attached to this object, other than source, that a weak pointer to it
        changed; null source skips none. */
    void weakPointerToThisChangedCallback (ObjectWeakPointer* source);

protected:
    virtual Class* lookUpClass() const;

    /** The name that the class declaration gives; null for a type that is not declared. */
    virtual const char* getDeclaredClassName() const { return nullptr; }

    /** Runs callback on every view in order, surviving views that detach or attach during the walk. */
    template <class Callback>
    void walkViews (Callback&& callback);

private:
    struct ViewList
    {
        std::vector<View*> views;
        std::vector<uint64_t> traversals;
    };

    UniqueIdentifier uniqueIdentifier;
    mutable Class* objectClass = nullptr;
    Object* parent = nullptr;
    ObjectSpace* space = nullptr;
    uint64_t referenceCounter = staticAllocationSentinel;
    uint64_t numChanges = 0;
    std::unique_ptr<ViewList> views;
    uint32_t flags = 0;
};

/** Deletes a heap object through deleteThis, as its owners do: the deleter of a
    std::unique_ptr that holds an object outside any owner. */
struct ObjectDeleter
{
    void operator() (Object* object) const      { object->deleteThis(); }
};

template <class Callback>
void Object::walkViews (Callback&& callback)
{
    if (views == nullptr)
        return;

    views->traversals.push_back (0);
    if (! views->views.empty())
    {
        View* view = views->views.front();
        for (;;)
        {
            const bool wasInsideCallback = view->insideCallback;
            view->insideCallback = true;
            callback (view);
            view->insideCallback = wasInsideCallback;

            if (views == nullptr)
                return;
            auto& position = views->traversals.back();
            ++position;
            if (position >= views->views.size())
                break;
            view = views->views[(size_t) position];
        }
    }
    views->traversals.pop_back();
}

} // namespace tov

// Class completes Object's declaration: every reflected class needs both.
#include "Class.h"
