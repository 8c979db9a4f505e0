#include "ObjectWeakPointerBase.h"
#include "../Core/ObjectExporter.h"
#include "../Core/StateObjectExporter.h"

namespace tov
{

TOV_BEGIN_CLASS (ObjectWeakPointerBase)
TOV_END_CLASS()

const VariableAddress& ObjectWeakPointerBase::getAddress() const
{
    if (address.isNull() && object != nullptr)
        address.setObject (object, getSpace());
    return address;
}

bool ObjectWeakPointerBase::equalsSameClass (const Object& other) const
{
    auto& pointer = static_cast<const ObjectWeakPointerBase&> (other);
    if (object != nullptr && pointer.object != nullptr)
        return object == pointer.object;
    const auto& ownAddress = getAddress();
    const auto& otherAddress = pointer.getAddress();
    if (ownAddress.isNull() && otherAddress.isNull())
        return object == nullptr && pointer.object == nullptr;
    return ownAddress == otherAddress;
}

juce::String ObjectWeakPointerBase::toString() const
{
    return getAddress().toString();
}

void ObjectWeakPointerBase::save (ObjectExporter& exporter) const
{
    if (getAddress().isNull() && object != nullptr)
    {
        // A pointer to an object without an address cannot be saved; other exporters (hashing)
        // take the object itself.
        if (dynamic_cast<StateObjectExporter*> (&exporter) == nullptr)
            exporter.writeNativePointer (object);
        return;
    }
    address.save (exporter);
}

} // namespace tov
