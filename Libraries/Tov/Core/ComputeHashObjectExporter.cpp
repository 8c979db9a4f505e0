#include "ComputeHashObjectExporter.h"
#include "Object.h"

namespace tov
{

void ComputeHashObjectExporter::save (const Object& object, bool)
{
    object.save (*this);
}

// A null object counts as the 64-bit value 51, where a void State hashes the 32-bit one.
void ComputeHashObjectExporter::writeOwnedPointer (const Object* object, Class* declaredClass)
{
    if (object == nullptr)
        hasher.pushInteger (51);
    else if (hasFlag (exportOwnedPointersAsIdentifiers))
        hasher.pushUniqueIdentifier (object->getUniqueIdentifier());
    else
        save (*object, object->getClass() != declaredClass);
}

void ComputeHashObjectExporter::writeState (const std::shared_ptr<State>& state)
{
    if (state != nullptr)
        state->hash (hasher, nullptr);
}

void ComputeHashObjectExporter::writeBuffer (uint64_t size, void* data, bool)
{
    hasher.pushInteger ((int64_t) size);
    hasher.pushPointer (data);
}

} // namespace tov
