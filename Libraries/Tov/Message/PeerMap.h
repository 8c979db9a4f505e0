#pragma once

#include "IdentifierMap.h"
#include "../Pointer/WeakPointer.h"
#include <memory>

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
        with the connection, and posts it to its receiver. False for a connection that does not
        carry envelops and for a block that does not load (with the reason on the thread's context). */
    bool processReceivedNetworkMessage (const InterprocessConnection& connection, const juce::MemoryBlock& block) const;

    size_t getNumPeers() const;

private:
    using Entries = IdentifierMap<std::unique_ptr<WeakPointer<Peer>>>;

    juce::CriticalSection lock;
    Entries entries;

    Peer* getPeerWithoutLock (const Object& identifier) const;
    bool postEnvelopThroughConnection (const RemoteTargetIdentifier& target, Envelop* envelop, bool* targetNotFound) const;
    static bool refuse (Envelop* envelop, bool* targetNotFound);
};

} // namespace tov
