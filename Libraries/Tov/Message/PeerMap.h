#pragma once

#include "IdentifierMap.h"
#include "../Network/InterprocessConnectionIdentifier.h"
#include "../Pointer/WeakPointer.h"
#include <memory>
#include <mutex>
#include <vector>

namespace tov
{

class Envelop;
class InterprocessConnection;
class Peer;
class RemoteTargetIdentifier;

/** All peers of the process by identifier, and the routing of envelops to them.

    An identifier that names a far target on a connection goes to that connection; any other
    is looked up here. The map owns its keys (clones of the peers' identifiers), hashed with
    computeHash and compared with equals, and holds each peer by a weak pointer: an entry whose
    peer has died answers as not found. The lock is held during a post to a local peer, so that
    a peer cannot leave the map half way through a post to it.

    The lock is a plain mutex: under it run only the identifiers' hash and comparison, the
    weak pointers and the peer's queue. An envelop refused for want of a peer is deleted after
    it; one refused by a stopping service is deleted under it, so deleting a message must not
    come back to the map.

    One map belongs to the Program, which forwards its operations of the same names here.
*/
class PeerMap
{
public:
    PeerMap();
    ~PeerMap();

    /** False when the peer has no identifier or another peer has an equal one. */
    bool registerPeer (Peer& peer);
    /** False when no entry has the peer's identifier. */
    bool unregisterPeer (Peer& peer);

    /** Takes ownership of the envelop. Routes it to a far target through its connection, or to
        a local peer. targetNotFound, when given, tells whether it failed for want of a target. */
    bool postEnvelopToMessageTarget (const Object& target, Envelop* envelop, bool* targetNotFound) const;
    /** Takes ownership of the envelop and queues it on the local peer of that identifier. */
    bool postEnvelopToPeer (const Object& target, Envelop* envelop, bool* targetNotFound) const;

    /** On a connection's thread: rebuilds the envelop of a received block, qualifies its sender
        with the connection, and posts it to its receiver, or puts it in the thread's batch. False
        for a connection that does not carry envelops and for a block that does not load (with
        the reason on the thread's context). */
    bool processReceivedNetworkMessage (const InterprocessConnection& connection, const juce::MemoryBlock& block) const;

    /** While one lives on a thread, the envelops that processReceivedNetworkMessage rebuilds on
        that thread wait in it, in order, and are posted when it ends. A connection that read many
        frames at once opens one, so that each receiving service wakes once for all of them
        rather than once per envelop. A batch opened inside another adds to the outer one. */
    class ReceivedEnvelopBatch
    {
    public:
        ReceivedEnvelopBatch();
        ~ReceivedEnvelopBatch();

    private:
        struct Entry
        {
            const PeerMap* map;
            Object* receiver;
            Envelop* envelop;
        };
        std::vector<Entry> entries;
        ReceivedEnvelopBatch* outer;
        const InterprocessConnection* identifiedConnection = nullptr;
        InterprocessConnectionIdentifier connectionIdentifier;

        const InterprocessConnectionIdentifier& getIdentifierOf (const InterprocessConnection& connection);

        friend class PeerMap;
        static ReceivedEnvelopBatch*& current() noexcept;

        JUCE_DECLARE_NON_COPYABLE (ReceivedEnvelopBatch)
    };

    size_t getNumPeers() const;

private:
    using Entries = IdentifierMap<std::unique_ptr<WeakPointer<Peer>>>;

    mutable std::mutex lock;
    Entries entries;

    Peer* getPeerWithoutLock (const Object& identifier) const;
    bool postEnvelopThroughConnection (const RemoteTargetIdentifier& target, Envelop* envelop, bool* targetNotFound) const;
    static bool refuse (Envelop* envelop, bool* targetNotFound);
};

} // namespace tov
