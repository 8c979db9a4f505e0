#include "StateObjectExporter.h"
#include "Object.h"
#include "../Standard/ExecutionContext.h"

namespace tov
{

// Snapshots follow one another on a thread (several per edited number): make leaves its emptied
// stack to the next exporter of the thread, which then allocates none. Read with the
// initial-exec model (24 bytes of static TLS) rather than through the loader.
[[gnu::tls_model ("initial-exec")]] static thread_local std::vector<std::shared_ptr<State>> spareStack;

StateObjectExporter::StateObjectExporter (uint32_t flags)
    : ObjectExporter (flags)
{
    stack.swap (spareStack);
    stack.reserve (typicalDepth);
    stack.push_back (std::make_shared<State>());
}

std::shared_ptr<State> StateObjectExporter::make (const Object& object, uint32_t flags, bool writeClass)
{
    StateObjectExporter exporter (flags);
    exporter.save (object, writeClass);
    auto root = std::move (exporter.stack.front());
    exporter.stack.clear();
    exporter.stack.swap (spareStack);
    return root;
}

void StateObjectExporter::save (const Object& object, bool writeClass)
{
    // Embedded objects live inside their parent and never carry identifiers in a state.
    const bool embedded = object.hasStaticAllocationFlag();
    if (! hasFlag (exportWithoutIdentifiers) && ! embedded)
        current().setUniqueIdentifier (object.getUniqueIdentifier());

    if (writeClass)
    {
        if (auto* objectClass = object.getClass())
            setClass (objectClass);
        else
            ExecutionContext::get().error ("Error: object " + Class::getName (typeid (object)) + "has no class");
    }

    if (hasFlag (exportWithoutDefaults) && embedded)
        if (auto* defaultValue = object.getDefaultValue())
            if (object.equals (*defaultValue))
                return;

    object.save (*this);

    if (hasFlag (exportWithoutDefaults))
        current().removeEmptyVariables();
}

void StateObjectExporter::setClass (Class* objectClass)
{
    current().setClass (objectClass);
}

void StateObjectExporter::enterVariable (const juce::String& name)
{
    auto variable = std::make_shared<State>();
    current().addVariable (name, variable);
    stack.push_back (variable);
}

// A null pointer stands in the tree as a weak pointer of value null. The class is
// written only when it says more than the declaration does.
void StateObjectExporter::writeOwnedPointer (const Object* object, Class* declaredClass)
{
    if (object == nullptr)
    {
        writeUniqueIdentifier (UniqueIdentifier());
        return;
    }
    if (hasFlag (exportOwnedPointersAsIdentifiers))
    {
        writeUniqueIdentifier (object->getUniqueIdentifier());
        return;
    }
    auto target = std::make_shared<State>();
    current().setOwnedPointer (target);
    stack.push_back (target);
    save (*object, object->getClass() != declaredClass);
    stack.pop_back();
}

void StateObjectExporter::writeState (const std::shared_ptr<State>& state)
{
    if (state != nullptr)
        current().setOwnedPointer (state);
}

void StateObjectExporter::writeBuffer (uint64_t size, void* data, bool copy)
{
    if (hasFlag (exportBuffersAsBase64))
        current().setString (juce::MemoryBlock (data, (size_t) size).toBase64Encoding());
    else
        current().setBuffer (size, data, copy);
}

} // namespace tov
