#include "PeerMap.h"
#include "Envelop.h"
#include "InterprocessConnectionMessageTarget.h"
#include "../Network/InterprocessConnectionTable.h"
#include "../Standard/ExecutionContext.h"
#include "Peer.h"
#include "RemoteTargetIdentifier.h"
#include "RemoteCall/ThreadAwareEnvelopQueueMessageTarget.h"
#include "../Core/Class.h"

namespace tov
{

PeerMap::PeerMap()
    : entries (8)
{
    entries.max_load_factor (1.0f);
}

PeerMap::~PeerMap()
{
    for (auto& entry : entries)
        entry.first->deleteThis();
}

bool PeerMap::registerPeer (Peer& peer)
{
    ObjectOwnedPointer identifier;
    if (! peer.getIncomingMessageTarget()->loadIdentifier (identifier))
        return false;

    const std::lock_guard<std::mutex> scopedLock (lock);
    if (entries.find (identifier.get()) != entries.end())
        return false;
    auto weakPeer = std::make_unique<WeakPointer<Peer>>();
    weakPeer->set (&peer, false);
    entries.emplace (identifier.release(), std::move (weakPeer));
    return true;
}

// A peer whose registration was refused shares its identifier with the one registered: its
// end must not take the other's entry with it.
bool PeerMap::unregisterPeer (Peer& peer)
{
    ObjectOwnedPointer identifier;
    if (! peer.getIncomingMessageTarget()->loadIdentifier (identifier))
        return false;

    const std::lock_guard<std::mutex> scopedLock (lock);
    auto entry = entries.find (identifier.get());
    if (entry == entries.end())
        return false;
    auto* registered = entry->second->getIfAlreadyCached();
    if (registered != nullptr && registered != &peer)
        return false;
    Object* key = entry->first;
    entries.erase (entry);
    key->deleteThis();
    return true;
}

size_t PeerMap::getNumPeers() const
{
    const std::lock_guard<std::mutex> scopedLock (lock);
    return entries.size();
}

//==============================================================================
bool PeerMap::postEnvelopToMessageTarget (const Object& target, Envelop* envelop, bool* targetNotFound) const
{
    if (targetNotFound != nullptr)
        *targetNotFound = false;
    if (envelop == nullptr)
        return false;
    if (envelop->getNumMessages() == 0)
    {
        envelop->deleteThis();
        return true;
    }

    // Asked of the class rather than by a cast: this runs for every envelop, and a cast of an
    // identifier whose class lives in another library compares type names.
    const bool isRemote = Class::inheritsFrom (target.getClass(), &RemoteTargetIdentifier::staticClass);
    if (isRemote && static_cast<const RemoteTargetIdentifier&> (target).isValid())
        return postEnvelopThroughConnection (static_cast<const RemoteTargetIdentifier&> (target), envelop, targetNotFound);
    return postEnvelopToPeer (target, envelop, targetNotFound);
}

// The table's lock is held across the post, so that the connection cannot be deleted while
// the envelop is written for it.
bool PeerMap::postEnvelopThroughConnection (const RemoteTargetIdentifier& target, Envelop* envelop, bool* targetNotFound) const
{
    const juce::ScopedLock tableLock (InterprocessConnectionTable::getLock());
    auto* connection = InterprocessConnection::getByIdentifier (target.getConnectionIdentifier());
    if (connection == nullptr)
        return refuse (envelop, targetNotFound);
    return InterprocessConnectionMessageTarget::getOrCreateThrough (*connection, *target.getTargetIdentifier()).postEnvelop (envelop);
}

bool PeerMap::processReceivedNetworkMessage (const InterprocessConnection& connection, const juce::MemoryBlock& block) const
{
    if (connection.getMagicNumber() != InterprocessConnection::envelopMagicNumber)
        return false;

    ObjectOwnedPointer receiver;
    auto* envelop = Envelop::createFromMemoryBlock (ExecutionContext::get(), block, receiver);
    if (envelop == nullptr)
        return false;

    auto* batch = ReceivedEnvelopBatch::current();
    InterprocessConnectionIdentifier ownIdentifier;
    const auto& connectionIdentifier = batch != nullptr ? batch->getIdentifierOf (connection) : ownIdentifier;
    if (batch == nullptr)
        connection.copyIdentifierTo (ownIdentifier);
    envelop->setSenderIdentifier (new RemoteTargetIdentifier (connectionIdentifier, envelop->releaseSenderIdentifier()));
    if (receiver.get() == nullptr)
        return refuse (envelop, nullptr);
    if (batch != nullptr)
    {
        batch->entries.push_back ({ this, receiver.release(), envelop });
        return true;
    }
    return postEnvelopToMessageTarget (*receiver, envelop, nullptr);
}

//==============================================================================
PeerMap::ReceivedEnvelopBatch*& PeerMap::ReceivedEnvelopBatch::current() noexcept
{
    thread_local ReceivedEnvelopBatch* batch = nullptr;
    return batch;
}

PeerMap::ReceivedEnvelopBatch::ReceivedEnvelopBatch()
    : outer (current())
{
    if (outer == nullptr)
        current() = this;
}

// Copied under the table's lock once per batch, not once per envelop: the posting threads
// hold that lock while they write their envelops.
const InterprocessConnectionIdentifier& PeerMap::ReceivedEnvelopBatch::getIdentifierOf (const InterprocessConnection& connection)
{
    if (identifiedConnection != &connection)
    {
        connection.copyIdentifierTo (connectionIdentifier);
        identifiedConnection = &connection;
    }
    return connectionIdentifier;
}

PeerMap::ReceivedEnvelopBatch::~ReceivedEnvelopBatch()
{
    if (outer != nullptr)
        return;
    current() = nullptr;
    for (auto& entry : entries)
    {
        entry.map->postEnvelopToMessageTarget (*entry.receiver, entry.envelop, nullptr);
        entry.receiver->deleteThis();
    }
}

bool PeerMap::postEnvelopToPeer (const Object& target, Envelop* envelop, bool* targetNotFound) const
{
    if (targetNotFound != nullptr)
        *targetNotFound = false;
    {
        const std::lock_guard<std::mutex> scopedLock (lock);
        if (auto* peer = getPeerWithoutLock (target))
            return peer->getIncomingMessageTarget()->postEnvelop (envelop);
    }
    return refuse (envelop, targetNotFound);
}

Peer* PeerMap::getPeerWithoutLock (const Object& identifier) const
{
    auto entry = entries.find (const_cast<Object*> (&identifier));
    if (entry == entries.end())
        return nullptr;
    return static_cast<Peer*> (entry->second->getIfAlreadyCached());
}

bool PeerMap::refuse (Envelop* envelop, bool* targetNotFound)
{
    if (targetNotFound != nullptr)
        *targetNotFound = true;
    if (envelop != nullptr)
        envelop->deleteThis();
    return false;
}

} // namespace tov
