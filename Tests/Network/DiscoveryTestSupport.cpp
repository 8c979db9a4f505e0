#include "DiscoveryTestSupport.h"
#include "Support/Waiting.h"
#include <Tov/Core/State.h>
#include <Tov/Core/StateObjectExporter.h>

namespace tov::test
{

int findFreeUdpPort()
{
    juce::DatagramSocket probe;
    probe.setEnablePortReuse (false);
    return probe.bindToPort (0) ? probe.getBoundPort() : -1;
}

juce::MemoryBlock alifePacketOf (const Object& information)
{
    juce::MemoryOutputStream packet;
    StateObjectExporter::make (information, exportTransientVariables, true)->toBinary (packet);
    return packet.getMemoryBlock();
}

//==============================================================================
DatagramEnd::DatagramEnd (int port)
{
    socket.setEnablePortReuse (false);
    socket.bindToPort (port, "127.0.0.1");
}

bool DatagramEnd::send (const void* data, size_t size, int port)
{
    return socket.write ("127.0.0.1", port, data, (int) size) == (int) size;
}

bool DatagramEnd::receive (juce::MemoryBlock& packet, int timeOutMilliseconds, int* senderPort)
{
    if (socket.waitUntilReady (true, timeOutMilliseconds) != 1)
        return false;
    packet.setSize ((size_t) NetworkDiscoverer::bufferSize, false);
    juce::String senderIp;
    int port = 0;
    const int size = socket.read (packet.getData(), (int) packet.getSize(), false, senderIp, port);
    if (senderPort != nullptr)
        *senderPort = port;
    if (size <= 0)
        return false;
    packet.setSize ((size_t) size);
    return true;
}

//==============================================================================
bool pollUntilFootprint (NetworkDiscoverer& discoverer, ExecutionContext& context, LastNetworkServerFootprint& footprint,
                         int timeOutMilliseconds)
{
    return waitUntil ([&] { return discoverer.getNetworkServerFootPrint (context, footprint); }, timeOutMilliseconds);
}

//==============================================================================
bool runInVethNamespace (const std::function<void()>& body, juce::String& failure)
{
    static const juce::StringArray setup {
        "ip link set lo up",
        "ip link add disc1 type veth peer name disc2",
        "ip addr add 10.61.0.1/24 brd + dev disc1",
        "ip addr add 10.61.0.2/24 brd + dev disc2",
        "ip link set disc1 up && ip link set disc2 up",
        NetworkNamespace::waitForLinkState ("disc1", "UP"),
        NetworkNamespace::waitForLinkState ("disc2", "UP")
    };
    return NetworkNamespace::run (setup, body, failure);
}

} // namespace tov::test
