#pragma once

#include "../Message.h"

namespace tov
{

/** The changes of one object space over one mirroring period, applied to the space of the same
    name on the receiver.

    Only what the routing of incoming messages needs is here so far: the name of the target
    space, and the merge of a later diff into an earlier one, by which a peer applies the diffs
    of one space that arrive together as one. The creations and changes themselves, their
    application and their wire form come with mirroring.
*/
class DiffObjectSpaceMessage : public Message
{
public:
    TOV_DECLARE_CLASS (DiffObjectSpaceMessage, Message)

    const juce::String& getTargetSpace() const noexcept  { return targetSpace; }
    void setTargetSpace (const juce::String& name)       { targetSpace = name; }

    /** Takes the changes of a later diff of the same space into this one. */
    virtual void merge (const DiffObjectSpaceMessage& other)  {}

    void process (ExecutionContext& context, const Object& senderIdentifier, MessageTarget& incomingTarget) const override  {}

private:
    juce::String targetSpace;
};

} // namespace tov
