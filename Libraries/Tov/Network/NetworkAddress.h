#pragma once

#include "HostIdentifier.h"
#include "NetworkPort.h"

namespace tov
{

/** A host and a port to reach, shown as "host:port". */
class NetworkAddress : public Object
{
public:
    TOV_DECLARE_CLASS (NetworkAddress, Object)

    NetworkAddress() = default;
    NetworkAddress (const juce::String& hostText, unsigned int portNumber)  { set (hostText, portNumber, false); }

    HostIdentifier host;
    NetworkPort port;

    const juce::String& getHost() const noexcept     { return host.get(); }
    unsigned int getPort() const noexcept            { return (unsigned int) port.get(); }
    void set (const juce::String& newHost, unsigned int newPort, bool notify = true);
    /** Back to an empty host and port 0. */
    void reset (bool notify = true)                  { set ({}, 0, notify); }
    /** An address without a host names nothing to reach. */
    bool isEmpty() const noexcept                    { return host.isEmpty(); }
    bool isNotEmpty() const noexcept                 { return ! isEmpty(); }

    /** The port alone when there is no host, else host + ":" + port. */
    juce::String toString() const override;

    /** Older versions saved an address as its host alone, a plain string, and called the host
        "hostName": both still load. */
    bool load (ObjectImporter& importer) override;
    bool loadVariable (ObjectImporter& importer, juce::StringRef name) override;
};

} // namespace tov
