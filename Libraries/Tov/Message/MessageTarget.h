#pragma once

#include "../Pointer/ObjectOwnedPointer.h"
#include <mutex>

namespace tov
{

class Envelop;
class Message;

/** Something that accepts envelops: a peer's incoming queue, or a far target on a connection.

    A target has an identifier, set once, which is the address that others post to and the
    sender identifier of the envelops made in its name. The identifier has a lock of its own,
    so that any thread may read it: a plain mutex, since only the identifier's clone, comparison
    and deletion run under it.
*/
class MessageTarget : public Object
{
public:
    TOV_DECLARE_CLASS (MessageTarget, Object)

    /** Takes ownership of the identifier, which may be null. */
    explicit MessageTarget (Object* identifier = nullptr);
    ~MessageTarget() override;

    /** Takes ownership of the envelop, also when it fails. An envelop without messages is
        deleted, and that counts as delivered. Otherwise stamps its posting time and hands it on. */
    bool postEnvelop (Envelop* envelop);

    /** Takes ownership of the envelop; true when it was accepted. */
    virtual bool handleEnvelop (Envelop* envelop) = 0;

    /** A new envelop with this target's identifier as sender, holding the message (which may
        be null), with that parent. Without an identifier the message is deleted and the result is null. */
    Envelop* createEnvelopAsSender (Message* message, Object* parent) const;

    /** Sets a clone of the identifier; false when a different one is set already. */
    bool storeIdentifier (const Object& newIdentifier);
    /** Puts a clone of the identifier into the pointer; false, leaving it alone, when there is none. */
    bool loadIdentifier (ObjectOwnedPointer& result) const;
    /** An identifier is set and equals that one. */
    bool hasIdentifierEqualTo (const Object& other) const;

private:
    ObjectOwnedPointer identifier;
    mutable std::mutex identifierLock;
};

} // namespace tov
