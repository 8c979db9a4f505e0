#pragma once

#include <Tov/Atomic/String.h>
#include <Tov/Network/NetworkPort.h>
#include <Tov/Standard/SoftwareVersion.h>

namespace tov::test
{

/** What a test server announces of itself in its "Alife" packets: a name, a version and the
    port of its service. Shared by the discovery tests (in the "NetworkTests" library) and DiscoveryTestApplication. */
class ServerAnnouncement : public Object
{
public:
    TOV_DECLARE_CLASS (ServerAnnouncement, Object)

    String name;
    SoftwareVersion version;
    NetworkPort port;

    /** A heap object, as an application's would be, with the identifier given. */
    static ServerAnnouncement* create (const juce::String& name, int port, uint64_t identifier);
};

} // namespace tov::test
