#pragma once

#include "../Network/InterprocessConnectionIdentifier.h"
#include "../Pointer/ObjectOwnedPointer.h"

namespace tov
{

/** The identifier of a target on another machine: a far identifier qualified by the connection
    on which it came. Envelops that arrive over a connection carry one as their sender, so that
    answers find their way back, and no sender ever has to know its own address.

    One that is not valid (no connection, or no target) stands for the identifier of a local peer.
*/
class RemoteTargetIdentifier : public Object
{
public:
    TOV_DECLARE_CLASS (RemoteTargetIdentifier, Object)

    RemoteTargetIdentifier();
    /** Copies the connection's identifier and clones the target's. */
    RemoteTargetIdentifier (const InterprocessConnectionIdentifier& connection, const Object& target);
    /** Copies the connection's identifier and takes ownership of the target's. */
    RemoteTargetIdentifier (const InterprocessConnectionIdentifier& connection, Object* target);

    InterprocessConnectionIdentifier connectionIdentifier;

    /** Names a connection and a target. */
    bool isValid() const;
    const InterprocessConnectionIdentifier& getConnectionIdentifier() const noexcept  { return connectionIdentifier; }
    const Object* getTargetIdentifier() const noexcept   { return targetIdentifier.get(); }

    /** Both parts equal; the targets compare by content, not by object. */
    bool equalsSameClass (const Object& other) const override;
    juce::String toString() const override;

private:
    ObjectOwnedPointer targetIdentifier;
};

} // namespace tov
