#include "DatagramSocketHolder.h"

namespace tov
{

DatagramSocketHolder::DatagramSocketHolder (bool enableBroadcasting)
    : broadcasting (enableBroadcasting),
      socket (std::make_unique<juce::DatagramSocket> (enableBroadcasting))
{
}

juce::DatagramSocket& DatagramSocketHolder::reopenIfShutDown()
{
    if (socket->getRawSocketHandle() < 0)
        socket = std::make_unique<juce::DatagramSocket> (broadcasting);
    return *socket;
}

} // namespace tov
