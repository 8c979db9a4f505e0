#include "NetworkBroadcaster.h"
#include "../Core/State.h"
#include "../Core/StateObjectExporter.h"
#include "../Standard/Profiler/ProfilerScope.h"

namespace tov
{

TOV_BEGIN_CLASS (NetworkBroadcaster)
    TOV_VARIABLE (localNetworkAddress)
    TOV_VARIABLE (remotePort)
    TOV_VARIABLE (periodInSeconds, { "default", "1.0" })
TOV_END_CLASS()

NetworkBroadcaster::NetworkBroadcaster()
{
    periodInSeconds.set (defaultPeriodInSeconds, false);
}

//==============================================================================
bool NetworkBroadcaster::startBroadcasting (ExecutionContext& startContext, const juce::String& localIp, size_t localPort,
                                            size_t newRemotePort, double newPeriodInSeconds)
{
    if (broadcasting)
        return true;

    localNetworkAddress.set (localIp, (unsigned int) localPort, false);
    remoteHost.set (juce::IPAddress::getInterfaceBroadcastAddress (juce::IPAddress (localIp)).toString(), false);
    remotePort.set ((int64_t) newRemotePort, false);
    periodInSeconds.set (newPeriodInSeconds, false);

    socket.reopenIfShutDown();
    if (! bindSocket())
    {
        startContext.error ("Could not bind port to broadcast " + localIp + ":" + juce::String (localPort));
        return false;
    }

    lastSendTimeInMs = clock();
    context.set (&startContext, false);
    broadcasting = true;
    return true;
}

void NetworkBroadcaster::stopBroadcasting()
{
    if (! broadcasting)
        return;
    socket->shutdown();
    broadcasting = false;
}

bool NetworkBroadcaster::bindSocket()
{
    return socket->bindToPort ((int) localNetworkAddress.getLocalPort(), localNetworkAddress.getLocalIp());
}

//==============================================================================
bool NetworkBroadcaster::shouldSendAlifePacket() const
{
    if (! broadcasting)
        return false;
    if (lastSendTimeInMs == 0.0)
        return true;
    return clock() > lastSendTimeInMs + periodInSeconds.get() * 1000.0;
}

void NetworkBroadcaster::updateBroadcasting (const Object& information)
{
    if (! shouldSendAlifePacket())
        return;

    juce::String error;
    if (! sendAlifePacket (information, error))
        if (auto* startContext = context.get())
            startContext->error (error);

    // A failure, too, waits a whole period before the next try, rather than retrying in a burst.
    lastSendTimeInMs = clock();
}

bool NetworkBroadcaster::sendAlifePacket (const Object& information, juce::String& error)
{
    const ProfilerScope scope ("SendAlifePacket");

    if (socket->getBoundPort() < 0)
    {
        // Shut down beneath us: only a fresh socket can be bound again.
        socket.reopenIfShutDown();
        if (! bindSocket())
        {
            error = "Could not bind port to broadcast";
            return false;
        }
    }

    const auto state = StateObjectExporter::make (information, exportTransientVariables, true);
    if (state == nullptr)
    {
        error = "Error when creating Alife packet state";
        return false;
    }

    juce::MemoryOutputStream packet;
    state->toBinary (packet);
    packet.flush();

    const int size = (int) packet.getDataSize();
    const int numSent = socket->write (remoteHost.get(), (int) remotePort.get(), packet.getData(), size);
    return checkSentSize (numSent, size, error);
}

bool NetworkBroadcaster::checkSentSize (int numSent, int size, juce::String& error)
{
    if (numSent < 0)
        error = "Error when sending on socket";
    else if (numSent == 0)
        error = "Could not send on socket";
    else if (numSent < size)
        error = "Could only send " + juce::String (numSent) + " / " + juce::String (size) + " bytes";
    else
        return true;
    return false;
}

} // namespace tov
