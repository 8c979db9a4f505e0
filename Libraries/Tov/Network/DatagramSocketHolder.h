#pragma once

#include <juce_core/juce_core.h>
#include <memory>

namespace tov
{

/** A juce::DatagramSocket that can be bound again after it was shut down.

    A shut-down juce::DatagramSocket keeps an invalid handle for good, so that it can never be
    bound again: the holder makes a fresh socket, with the same broadcast setting, when its
    current one has been shut down, whether by its owner or by the layer below.
*/
class DatagramSocketHolder
{
public:
    explicit DatagramSocketHolder (bool enableBroadcasting);

    juce::DatagramSocket& get() noexcept                { return *socket; }
    const juce::DatagramSocket& get() const noexcept    { return *socket; }
    juce::DatagramSocket* operator->() noexcept         { return socket.get(); }
    const juce::DatagramSocket* operator->() const noexcept { return socket.get(); }

    /** The socket, a fresh unbound one in place of a socket that was shut down. */
    juce::DatagramSocket& reopenIfShutDown();

private:
    bool broadcasting;
    std::unique_ptr<juce::DatagramSocket> socket;

    JUCE_DECLARE_NON_COPYABLE (DatagramSocketHolder)
};

} // namespace tov
