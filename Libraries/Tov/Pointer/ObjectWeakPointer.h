#pragma once

#include "ObjectWeakPointerBase.h"
#include "../Core/View.h"
#include "../Core/TargetClassCache.h"

namespace tov
{

/** A weak pointer that resolves its address lazily and watches its target.

    Loading stores addresses; the first get after all objects exist finds them. The pointer is
    a view of its target, so that the target's deletion clears the cached object while the
    address stays, which lets the pointer reconnect should the object come back under the same
    address (after an undo, for instance).

        state      object   address
        null       null     null       construction, reset
        unresolved null     set        load, set with an address, target deleted
        resolved   set      set        get after load
        native     set      null       set with an object, until getAddress fills it
*/
class ObjectWeakPointer : public ObjectWeakPointerBase, public View
{
public:
    TOV_DECLARE_CLASS (ObjectWeakPointer, ObjectWeakPointerBase)

    ObjectWeakPointer() = default;
    explicit ObjectWeakPointer (Object* target)      { set (target, false); }
    ObjectWeakPointer (const ObjectWeakPointer& other);
    ObjectWeakPointer& operator= (const ObjectWeakPointer& other)  { other.copyTo (*this); return *this; }
    ~ObjectWeakPointer() override;

    /** The target, resolving the address when needed; null with the reason in errorMessage. */
    Object* get (juce::String* errorMessage = nullptr);
    Object* get (juce::String* errorMessage = nullptr) const  { return const_cast<ObjectWeakPointer*> (this)->get (errorMessage); }
    /** The cached target alone; never resolves. */
    Object* getIfAlreadyCached() const noexcept      { return object; }
    /** The class attribute "target", Object by default; kept until the class changes, since
        every resolution checks it. */
    Class* getTargetClass() const;

    void set (Object* target, bool notify = true);
    void set (const VariableAddress& newAddress, bool notify = true);
    /** Points at the target through its address; a target without one leaves the pointer as it is. */
    void setAddressOf (Object* target, bool notify = true);
    void reset (bool notify = true)                  { set ((Object*) nullptr, notify); }

    void setClass (Class* newClass) override;
    void copyTo (Object& target) const override;
    bool load (ObjectImporter& importer) override;
    void deinitializeObject() override;

    void deinitializedCallback (Object* deinitialized) override  { deletedCallback (deinitialized); }
    void deletedCallback (Object* deleted) override;

private:
    TargetClassCache targetClass;

    void attachToObject (Object* target);
    void detachFromObject();
    /** Tells the views attached to the old and new targets that this pointer changed. */
    void notifyTargetsOfChange (Object* previous, Object* current) const;
    /** The class named "WazuService" defers resolution of loaded addresses; absent here. */
    static bool resolvesLoadedAddressesEarly (const Object& provider);
};

} // namespace tov
