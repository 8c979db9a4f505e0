#pragma once

#include <juce_core/juce_core.h>
#include <map>
#include <memory>

namespace tov
{

class InterprocessConnection;
class InterprocessConnectionIdentifier;
class InterprocessConnectionMessageTarget;
class MessageTarget;
class Object;

/** Every registered connection of the process, each with the list of far targets reached
    through it (one object per target for the connection's whole life).

    Its lock also guards the connections' identifiers, which a connection's thread fills while
    posting threads look them up, and it is held across a post to a far target, so that a
    connection cannot be deleted while a post to it runs. Lock order: this lock, then a list's
    lock, then a connection's queue lock.
*/
class InterprocessConnectionTable
{
public:
    static juce::CriticalSection& getLock();

    /** Enters the connection with no targets; the targets of an earlier entry are deleted. */
    static void enter (InterprocessConnection& connection);
    /** Takes the connection out; its targets are deleted. */
    static void remove (InterprocessConnection& connection);

    /** Under the lock, the first connection in address order whose identifier equals that one. */
    static InterprocessConnection* find (const InterprocessConnectionIdentifier& identifier);

    /** The target of that identifier on the connection, made the first time. */
    static MessageTarget& getOrCreateTarget (const InterprocessConnection& connection, const Object& targetIdentifier);
    /** Deletes the connection's targets. */
    static void resetTargets (const InterprocessConnection& connection);
    static size_t getNumTargets (const InterprocessConnection& connection);

private:
    struct Targets;
    using Entries = std::map<const InterprocessConnection*, std::unique_ptr<Targets>>;
    static Entries& getEntries();
};

} // namespace tov
