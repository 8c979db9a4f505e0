#pragma once

#include "../Core/Object.h"

namespace tov
{

/** A unit of work that is sent to a target and executes itself on arrival.

    Only its place in the object model is here so far: whoever takes a message
    takes ownership of it, and deletes it through deleteThis when it cannot pass
    it on. Envelopes, targets and execution come with the messaging layer.
*/
class Message : public Object
{
public:
    ~Message() override = default;
};

} // namespace tov
