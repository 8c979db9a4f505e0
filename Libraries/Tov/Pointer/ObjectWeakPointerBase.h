#pragma once

#include "../Core/Object.h"
#include "../Core/VariableAddress.h"

namespace tov
{

/** What every weak pointer holds: an address that survives saving, and the object it resolved
    to, not counted. ObjectWeakPointer adds resolution and watching its target. */
class ObjectWeakPointerBase : public Object
{
public:
    TOV_DECLARE_CLASS (ObjectWeakPointerBase, Object)

    ObjectWeakPointerBase() = default;
    ObjectWeakPointerBase (const ObjectWeakPointerBase& other) : Object (other), object (other.object), address (other.address) {}

    /** The address, first made from the object when there is none yet. */
    const VariableAddress& getAddress() const;
    /** Neither an address nor an object. */
    bool isNull() const                              { return address.isNull() && object == nullptr; }
    /** An object that has no address. */
    bool isNativePointer() const                     { return getAddress().isNull(); }

    /** The same objects when both are resolved; otherwise the same addresses. */
    bool equalsSameClass (const Object& other) const override;
    /** The text of the address. */
    juce::String toString() const override;
    void save (ObjectExporter& exporter) const override;

protected:
    Object* object = nullptr;
    mutable VariableAddress address;
};

} // namespace tov
