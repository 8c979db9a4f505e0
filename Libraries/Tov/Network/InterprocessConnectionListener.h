#pragma once

namespace juce { class MemoryBlock; }

namespace tov
{

class InterprocessConnection;

/** Told of a connection's life and of the blocks it receives, on the connection's thread. */
class InterprocessConnectionListener
{
public:
    virtual ~InterprocessConnectionListener() = default;

    virtual void connectionMade (InterprocessConnection&)   {}
    virtual void connectionLost (InterprocessConnection&)   {}
    virtual void messagesReceived (InterprocessConnection& connection, const juce::MemoryBlock& block) = 0;
};

} // namespace tov
