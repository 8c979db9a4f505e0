#pragma once

#include "../Pointer/ObjectOwnedPointer.h"

namespace tov
{

/** The identifier of a target on another machine: a far identifier qualified by the connection
    on which it came. Envelops that arrive over a connection carry one as their sender, so that
    answers find their way back, and no sender ever has to know its own address.

    The identifier of the connection joins here with the connections themselves. Until then no
    remote target identifier is valid, and every one stands for the identifier of a local peer.
*/
class RemoteTargetIdentifier : public Object
{
public:
    TOV_DECLARE_CLASS (RemoteTargetIdentifier, Object)

    RemoteTargetIdentifier();

    /** Names a connection and a target. */
    bool isValid() const;
    const Object* getTargetIdentifier() const noexcept   { return targetIdentifier.get(); }

    /** Both parts equal; the targets compare by content, not by object. */
    bool equalsSameClass (const Object& other) const override;
    juce::String toString() const override;

private:
    ObjectOwnedPointer targetIdentifier;
};

} // namespace tov
