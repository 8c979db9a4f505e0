#pragma once

#include "ObjectWeakPointer.h"
#include "../Core/ClassRegistry.h"

namespace tov
{

/** A weak pointer to a T, of class "WeakPointer(T)": the typed front of ObjectWeakPointer. */
template <class T>
class WeakPointer : public ObjectWeakPointer
{
public:
    WeakPointer() = default;
    explicit WeakPointer (T* target) : ObjectWeakPointer (target) {}

    T* get (juce::String* errorMessage = nullptr) const  { return static_cast<T*> (ObjectWeakPointer::get (errorMessage)); }
    T* operator->() const                            { return get(); }
    T* getIfAlreadyCached() const noexcept           { return static_cast<T*> (ObjectWeakPointer::getIfAlreadyCached()); }
    using ObjectWeakPointer::set;
    void set (T* target, bool notify = true)         { ObjectWeakPointer::set (target, notify); }

    juce::String getClassName() const override       { return "WeakPointer(" + classOf<T>()->getName() + ")"; }
    /** "WeakPointer(T)", made when first named. */
    static Class* lookUpTemplateClass()              { return weakPointerClass (classOf<T>()); }

protected:
    Class* lookUpClass() const override              { return lookUpTemplateClass(); }
};

} // namespace tov
