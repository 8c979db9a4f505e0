#include "NetworkDiscoverer.h"
#include "HostIdentifier.h"
#include "LastNetworkServerFootprint.h"
#include "../Core/State.h"
#include "../Standard/ExecutionContext.h"
#include <cstring>

namespace tov
{

NetworkDiscoverer::NetworkDiscoverer() = default;

bool NetworkDiscoverer::startDiscovering (ExecutionContext& context, const LocalNetworkAddress& address, bool reusePort)
{
    reusingPort = reusePort;
    localAddress.set (address.getLocalIp(), address.getLocalPort(), false);

    auto& listener = socket.reopenIfShutDown();
    listener.setEnablePortReuse (reusePort);
    // Every adapter: a socket bound to one adapter's ip would hear no broadcast.
    if (! listener.bindToPort ((int) localAddress.getLocalPort(), HostIdentifier::any))
    {
        context.error ("Could not bind port " + localAddress.toString()
                       + " disable the ability to discover remote broadcasters via KelvoNet");
        return false;
    }
    buffer.setSize ((size_t) bufferSize, false);
    discovering = true;
    return true;
}

void NetworkDiscoverer::stopDiscovering()
{
    socket->shutdown();
    discovering = false;
}

//==============================================================================
bool NetworkDiscoverer::getNetworkServerFootPrint (ExecutionContext& context, LastNetworkServerFootprint& footprint)
{
    const int ready = socket->waitUntilReady (true, 0);
    if (ready < 0)
    {
        context.warning ("Error waiting socket " + localAddress.toString() + " reading in NetworkDiscoverer");
        return false;
    }
    if (ready == 0)
        return false;

    juce::String senderIp;
    int senderPort = 0;
    const int size = socket->read (buffer.getData(), (int) buffer.getSize(), false, senderIp, senderPort);
    if (size < 0)
    {
        context.warning ("Error reading socket " + localAddress.toString() + " in NetworkDiscoverer");
        return false;
    }
    if (size == 0)
        return false;
    return readPacket (context, footprint, buffer.getData(), size, senderIp, senderPort);
}

bool NetworkDiscoverer::readPacket (ExecutionContext& context, LastNetworkServerFootprint& footprint, const void* data,
                                    int size, const juce::String& senderIp, int senderPort)
{
    const int numCopied = juce::jlimit (0, (int) buffer.getSize(), size);
    if (data != buffer.getData() && numCopied > 0)
        std::memcpy (buffer.getData(), data, (size_t) numCopied);

    const NetworkAddress sender (senderIp, (unsigned int) senderPort);
    // A packet handed in from elsewhere may exceed the room; from the socket it can only fill it.
    if (size >= (int) buffer.getSize())
        context.warning ("NetworkDiscoverer Flooded / too large packet received by socket " + describeSocket (sender.toString()));

    // The whole buffer, not only the packet's bytes: the State's own format says where it ends.
    juce::MemoryInputStream input (buffer, false);
    juce::String error;
    auto state = std::make_shared<State>();
    if (! state->loadFromBinary (input, error))
    {
        context.warning ("NetworkDiscoverer with socket " + describeSocket (sender.toString()) + " could not load discovered state:" + error);
        return false;
    }

    juce::String creationErrors;
    ToStringExecutionContext creationContext (creationErrors);
    Object* information = Object::createFromState (creationContext, state, footprint.getParent());
    if (information == nullptr)
    {
        context.warning (creationErrors.trimCharactersAtEnd ("\r\n") + " in NetworkDiscoverer with socket " + describeSocket (sender.toString()));
        return false;
    }

    footprint.set (sender, information);
    return true;
}

juce::String NetworkDiscoverer::describeSocket (const juce::String& sender) const
{
    return localAddress.toString() + " <- " + sender;
}

} // namespace tov
