#pragma once

#include "LocalIp.h"
#include "LocalNetworkPort.h"

namespace tov
{

/** A local adapter's ip and a port to bind, shown as "ip:port", or "Any:port" for every adapter. */
class LocalNetworkAddress : public Object
{
public:
    TOV_DECLARE_CLASS (LocalNetworkAddress, Object)

    LocalNetworkAddress() = default;
    LocalNetworkAddress (const juce::String& ip, unsigned int port)  { set (ip, port, false); }

    LocalIp localIp;
    LocalNetworkPort localPort;

    const juce::String& getLocalIp() const noexcept  { return localIp.get(); }
    unsigned int getLocalPort() const noexcept       { return (unsigned int) localPort.get(); }
    void set (const juce::String& newLocalIp, unsigned int newLocalPort, bool notify = true);
    /** Back to an empty ip and port 0. */
    void reset (bool notify = true)                  { set ({}, 0, notify); }
    /** No ip chosen yet. */
    bool isEmpty() const noexcept                    { return localIp.isEmpty(); }

    juce::String toString() const override;
};

} // namespace tov
