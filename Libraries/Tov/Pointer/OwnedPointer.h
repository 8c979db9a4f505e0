#pragma once

#include "ObjectOwnedPointer.h"
#include "../Core/ClassRegistry.h"

namespace tov
{

/** An owned pointer to a T, of class "OwnedPointer(T)": the typed front of ObjectOwnedPointer. */
template <class T>
class OwnedPointer : public ObjectOwnedPointer
{
public:
    OwnedPointer() = default;
    explicit OwnedPointer (T* pointer)               { set (pointer, false); }

    T* get() const noexcept                          { return static_cast<T*> (ObjectOwnedPointer::get()); }
    T* operator->() const noexcept                   { return get(); }
    T& operator*() const noexcept                    { return *get(); }
    void set (T* pointer, bool notify = true)        { ObjectOwnedPointer::set (pointer, notify); }
    T* release()                                     { return static_cast<T*> (ObjectOwnedPointer::release()); }

    juce::String getClassName() const override       { return "OwnedPointer(" + classOf<T>()->getName() + ")"; }
    /** "OwnedPointer(T)", made when first named. */
    static Class* lookUpTemplateClass()              { return ownedPointerClass (classOf<T>()); }

protected:
    Class* lookUpClass() const override              { return lookUpTemplateClass(); }
};

} // namespace tov
