#pragma once

#include "../Core/Object.h"
#include "../Core/TargetClassCache.h"

namespace tov
{

/** Owns a heap object through its reference counter and is its parent.

    A member of class "OwnedPointer(Foo)" is an object in its own right, with a place in saved
    state (the pointed object after "=> "); what it points at is a separate object that may
    be shared by several owners. Two owned pointers are equal only when they hold the same
    object: equalsIgnoringVariables compares what they hold.
*/
class ObjectOwnedPointer : public Object
{
public:
    TOV_DECLARE_CLASS (ObjectOwnedPointer, Object)

    ObjectOwnedPointer() = default;
    /** A pointer of class "OwnedPointer(targetClass)" holding the object. */
    ObjectOwnedPointer (Class* targetClass, Object* pointer);
    ObjectOwnedPointer (const ObjectOwnedPointer& other) : Object (other)  { other.copyTo (*this); }
    ObjectOwnedPointer& operator= (const ObjectOwnedPointer& other)        { other.copyTo (*this); return *this; }
    ~ObjectOwnedPointer() override;

    Object* get() const noexcept                     { return object; }
    Object* operator->() const noexcept              { return object; }
    Object& operator*() const noexcept               { return *object; }
    explicit operator bool() const noexcept          { return object != nullptr; }

    /** Holds the new object, letting go of the old one; nothing at all when it is the same. */
    void set (Object* pointer, bool notify = true);
    void reset (bool notify = true)                  { set (nullptr, notify); }
    /** Gives up ownership without deleting: the object's count goes down by one (unless it is 0)
        and, when this pointer was its parent, it has none. */
    Object* release();

    /** The class attribute "target", Object by default; cached until the class changes. */
    Class* getTargetClass() const;
    /** Makes this pointer an "OwnedPointer(target)", or a plain ObjectOwnedPointer for null. */
    void setTargetClass (Class* target);
    /** Not null, child of the owner, and held by it alone. */
    static bool isStrictlyOwnedBy (const Object* object, const Object* owner);

    bool shouldDisplayInElementTree (const MemberSignature* signature) const;
    bool shouldDisplayInElementTree() const          { return shouldDisplayInElementTree (getSignature()); }
    bool shouldDisplayTypeSelector (const MemberSignature* signature) const;
    bool shouldDisplayTypeSelector() const           { return shouldDisplayTypeSelector (getSignature()); }

    void setClass (Class* newClass) override;
    /** Copies into the target's object when both hold objects of one class, else gives it a clone. */
    void copyTo (Object& target) const override;
    /** The same object, or both none. */
    bool equalsSameClass (const Object& other) const override;
    bool equalsIgnoringVariables (const Object& other, ObjectPredicate& ignored) const override;
    juce::String toString() const override;
    void save (ObjectExporter& exporter) const override;
    bool load (ObjectImporter& importer) override;
    /** The pointed object's JSON, wrapped as {"class", "value"} when its class is not the target class;
        void when empty. */
    juce::var saveToJson (uint32_t flags) const override;
    bool loadFromJson (ExecutionContext& context, const juce::var& value) override;
    void initializeObject() override;
    void deinitializeObject() override;
    void markObjectsAsBeingDestroyed() override;

private:
    Object* object = nullptr;
    TargetClassCache targetClass;

    /** Gives the held object its parent, initialising it when this pointer already is. */
    void adoptObject();
    bool loadIntoExistingObject (ObjectImporter& importer);
};

/** Accepts owned pointers that hold an object. */
class OwnedPointerIsSet : public ObjectPredicate
{
public:
    bool doesAcceptObject (Object* candidate) override;
};

/** Accepts owned pointers that hold nothing. */
class OwnedPointerIsReset : public ObjectPredicate
{
public:
    bool doesAcceptObject (Object* candidate) override;
};

} // namespace tov
