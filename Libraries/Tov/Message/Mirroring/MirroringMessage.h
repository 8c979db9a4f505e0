#pragma once

#include "../Message.h"
#include "../../Pointer/ObjectWeakPointer.h"
#include "../../Standard/StateObject.h"

namespace tov
{

/** One object and one state: loads the state into the object at that address on the receiver,
    or creates the object there when it does not exist yet.

    Transactions are made of these. The address survives the object's deletion and re-creation,
    so that undo can bring back what was deleted.
*/
class MirroringMessage : public Message
{
public:
    TOV_DECLARE_CLASS (MirroringMessage, Message)

    MirroringMessage();
    /** The object's shallow state (owned pointers as identifiers) and its address. */
    explicit MirroringMessage (const Object& object);
    MirroringMessage (const Object& object, const std::shared_ptr<State>& state);
    /** Copies the address of the weak pointer. */
    MirroringMessage (const ObjectWeakPointer& address, const std::shared_ptr<State>& state);

    /** An undo or redo makes one message per changed object, and the envelop that carries them
        deletes them together: their blocks are recycled by the thread that deletes them, for
        the next messages it makes. */
    static void* operator new (size_t size);
    static void operator delete (void* block, size_t size) noexcept;

    void process (ExecutionContext& context, const Object& senderIdentifier, MessageTarget& incomingTarget) const override;
    /** What process does once the address is resolved: loads the state into the object, or
        creates the object in the space when there is none. */
    void processAt (ExecutionContext& context, Object* object, ObjectSpace& space) const;

    const ObjectWeakPointer& getPointer() const noexcept  { return pointer; }
    const std::shared_ptr<State>& getState() const noexcept  { return state.get(); }

private:
    ObjectWeakPointer pointer;
    StateObject state;
};

} // namespace tov
