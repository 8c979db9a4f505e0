#include "InterprocessConnectionTable.h"
#include "InterprocessConnection.h"
#include "../Container/OwnedVector.h"
#include "../Message/InterprocessConnectionMessageTarget.h"

namespace tov
{

struct InterprocessConnectionTable::Targets
{
    juce::CriticalSection lock;
    OwnedVector<InterprocessConnectionMessageTarget> targets;
};

// Made once and never destroyed: connections may outlive static destruction order.
juce::CriticalSection& InterprocessConnectionTable::getLock()
{
    static auto* lock = new juce::CriticalSection();
    return *lock;
}

InterprocessConnectionTable::Entries& InterprocessConnectionTable::getEntries()
{
    static auto* entries = new Entries();
    return *entries;
}

void InterprocessConnectionTable::enter (InterprocessConnection& connection)
{
    const juce::ScopedLock lock (getLock());
    getEntries()[&connection].reset();
}

void InterprocessConnectionTable::remove (InterprocessConnection& connection)
{
    const juce::ScopedLock lock (getLock());
    getEntries().erase (&connection);
}

InterprocessConnection* InterprocessConnectionTable::find (const InterprocessConnectionIdentifier& identifier)
{
    const juce::ScopedLock lock (getLock());
    for (auto& entry : getEntries())
        if (entry.first->getIdentifier().equals (identifier))
            return const_cast<InterprocessConnection*> (entry.first);
    return nullptr;
}

MessageTarget& InterprocessConnectionTable::getOrCreateTarget (const InterprocessConnection& connection, const Object& targetIdentifier)
{
    const juce::ScopedLock lock (getLock());
    auto& targets = getEntries()[&connection];
    if (targets == nullptr)
        targets = std::make_unique<Targets>();

    const juce::ScopedLock listLock (targets->lock);
    for (size_t i = 0; i < targets->targets.size(); ++i)
        if (targets->targets.get (i)->hasIdentifierEqualTo (targetIdentifier))
            return *targets->targets.get (i);

    auto* target = new InterprocessConnectionMessageTarget (const_cast<InterprocessConnection&> (connection),
                                                           targetIdentifier.clone());
    targets->targets.append (target, false);
    return *target;
}

void InterprocessConnectionTable::resetTargets (const InterprocessConnection& connection)
{
    const juce::ScopedLock lock (getLock());
    auto entry = getEntries().find (&connection);
    if (entry != getEntries().end())
        entry->second.reset();
}

size_t InterprocessConnectionTable::getNumTargets (const InterprocessConnection& connection)
{
    const juce::ScopedLock lock (getLock());
    auto entry = getEntries().find (&connection);
    return entry != getEntries().end() && entry->second != nullptr ? entry->second->targets.size() : 0;
}

} // namespace tov
