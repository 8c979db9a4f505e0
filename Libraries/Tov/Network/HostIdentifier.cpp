#include "HostIdentifier.h"
#include "NetworkInterfaceTable.h"
#include "../Standard/ExecutionContext.h"

namespace tov
{

TOV_BEGIN_CLASS (HostIdentifier)
TOV_END_CLASS()

const juce::String HostIdentifier::any ("0.0.0.0");
const juce::String HostIdentifier::localhost ("127.0.0.1");
const juce::String HostIdentifier::broadcast ("255.255.255.255");

bool HostIdentifier::isLocalIPAddress() const
{
    return isLocalIPAddress (value, false);
}

bool HostIdentifier::isLocalIPAddress (juce::StringRef ip, bool onlyConnected)
{
    if (ip.isEmpty())
        return false;
    juce::Array<juce::IPAddress> addresses;
    NetworkInterfaceTable::readFromSystem().findAllAddresses (addresses, onlyConnected);
    for (const auto& address : addresses)
        if (address.toString() == ip)
            return true;
    return false;
}

unsigned int HostIdentifier::getNativeEndian32BitFromIpV4() const
{
    return getNativeEndian32BitFromIpV4 (value);
}

namespace
{
/** A token's number as juce::String::getIntValue reads it (blanks, a sign, digits up to the
    first other character), but wrapping modulo 2^32 where getIntValue would overflow. */
unsigned int readDecimal (const juce::String& token)
{
    auto text = token.trimStart();
    const bool negative = text.startsWithChar ('-');
    unsigned int result = 0;
    for (auto character = text.getCharPointer() + (negative ? 1 : 0); *character >= '0' && *character <= '9'; ++character)
        result = result * 10u + (unsigned int) (*character - '0');
    return negative ? 0u - result : result;
}
} // namespace

unsigned int HostIdentifier::getNativeEndian32BitFromIpV4 (juce::StringRef text)
{
    const auto tokens = juce::StringArray::fromTokens (text, ".", {});
    if (tokens.size() != 4)
        return 0;
    unsigned int result = 0;
    for (const auto& token : tokens)
        result = result * 256u + readDecimal (token);
    return result;
}

juce::String HostIdentifier::getIpV4StringFromNativeEndian32Bit (unsigned int address)
{
    return juce::String ((address >> 24) & 0xff) + "." + juce::String ((address >> 16) & 0xff) + "."
         + juce::String ((address >> 8) & 0xff) + "." + juce::String (address & 0xff);
}

juce::String HostIdentifier::getLocalIpOrAnyWithWarning (ExecutionContext& context, const juce::String& ip)
{
    if (ip == any)
        return ip;
    if (! isLocalIPAddress (ip, false))
    {
        context.warning ("Bad local ip: " + ip + " Fallback to \"any (0.0.0.0)\" adapters.");
        return any;
    }
    if (NetworkInterfaceTable::readFromSystem().isDHCPInterface (juce::IPAddress (ip)))
        context.warning ("Local ip: " + ip + " forced on network adapter with DHCP activated. Disable DHCP or use \"any\" Ip (0.0.0.0) instead");
    else if (! isLocalIPAddress (ip, true))
        context.warning ("Local ip: " + ip + " is disconnected. Check your cable or network adapter status");
    return ip;
}

} // namespace tov
