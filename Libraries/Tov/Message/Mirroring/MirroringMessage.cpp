#include "MirroringMessage.h"
#include "../../Core/ObjectExporter.h"
#include "../../Core/ObjectSpace.h"
#include "../../Core/RecycledBlocks.h"
#include "../../Core/StateObjectExporter.h"

namespace tov
{

TOV_BEGIN_CLASS (MirroringMessage)
    TOV_VARIABLE (pointer)
    TOV_VARIABLE (state)
TOV_END_CLASS()

MirroringMessage::MirroringMessage()
{
    pointer.setParent (this);
    state.setParent (this);
}

MirroringMessage::MirroringMessage (const Object& object)
    : MirroringMessage (object, StateObjectExporter::make (object, exportOwnedPointersAsIdentifiers, true))
{
}

MirroringMessage::MirroringMessage (const Object& object, const std::shared_ptr<State>& objectState)
    : MirroringMessage()
{
    pointer.setAddressOf (const_cast<Object*> (&object), false);
    state.set (objectState, false);
}

MirroringMessage::MirroringMessage (const ObjectWeakPointer& address, const std::shared_ptr<State>& objectState)
    : MirroringMessage()
{
    pointer.set (address.getAddress(), false);
    state.set (objectState, false);
}

// Room for the messages of a composite of a thousand changes.
using MirroringMessageBlocks = ThreadRecycledBlocks<MirroringMessage, 1024>;

void* MirroringMessage::operator new (size_t size)                        { return MirroringMessageBlocks::allocate (size); }
void MirroringMessage::operator delete (void* block, size_t size) noexcept  { MirroringMessageBlocks::deallocate (block, size); }

// The exclusion list is not consulted: a transaction's message always lands.
void MirroringMessage::process (ExecutionContext& context, const Object&, MessageTarget&) const
{
    ObjectSpace* space = nullptr;
    Object* object = pointer.getAddress().getObject (&pointer, &space);
    if (space != nullptr)
        processAt (context, object, *space);
}

void MirroringMessage::processAt (ExecutionContext& context, Object* object, ObjectSpace& space) const
{
    const auto& objectState = state.get();
    if (objectState == nullptr)
        return;
    if (object != nullptr)
    {
        object->loadFromState (context, objectState);
        return;
    }
    if (objectState->getUniqueIdentifier().isNull())
        return;

    Object* parent = space.getRootObject() != nullptr ? space.getRootObject() : static_cast<Object*> (&space);
    if (auto* created = Object::createFromState (context, objectState, parent))
        created->callInitializeObject (&space, nullptr, parent);
}

} // namespace tov
