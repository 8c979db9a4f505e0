#pragma once

#include "TransactionBuilderImplementation.h"
#include <set>

namespace tov
{

class Envelop;
class MessageTarget;

/** Builds no history: it gathers what changed and sends the objects' states when its scope
    closes, for changes that the other peer must see but that are no steps of the user's work.

    A volatile builder opened inside another hands everything first to the outer one.
*/
class VolatileTransactionBuilderImplementation : public TransactionBuilderImplementation
{
public:
    /** Makes the envelop at once, in the name of the sender target and with it as parent. */
    VolatileTransactionBuilderImplementation (ObjectSpace& space, VolatileTransactionBuilderImplementation* parentBuilder,
                                              const MessageTarget& senderTarget);
    ~VolatileTransactionBuilderImplementation() override;

    /** Sends the object's state at once. */
    void objectCreated (Object* object) override;
    void objectChanged (Object* object) override;
    void objectPreDeleted (Object* object) override;

    void addObjectCurrentValue (const Object&) override                  {}
    void addObjectWithUndoValue (const Object&, const Object&) override  {}
    void store (const Object&, bool, bool) override                      {}
    void flush() override                                                {}

    /** True when every changed object is the object or lies below it. */
    bool checkThatAllChangedObjectsAreChildOf (const Object& object) const override;

    /** Adds a message for each changed object, in set order, and hands over the envelop; null
        when the sender target had no identifier. */
    Envelop* takeFinishedEnvelop();

    VolatileTransactionBuilderImplementation* getParentBuilder() const noexcept  { return parentBuilder; }
    const std::set<Object*>& getChangedObjects() const noexcept  { return changedObjects; }

private:
    VolatileTransactionBuilderImplementation* parentBuilder;
    Envelop* envelop;
    std::set<Object*> changedObjects;
};

} // namespace tov
