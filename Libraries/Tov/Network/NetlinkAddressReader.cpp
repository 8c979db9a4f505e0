#include "NetlinkAddressReader.h"
#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <sys/socket.h>
#include <unistd.h>
#include <cstring>

namespace tov
{

bool NetlinkAddressReader::Address::isPermanent() const noexcept
{
    return (flags & IFA_F_PERMANENT) != 0;
}

//==============================================================================
NetlinkAddressReader::Outcome NetlinkAddressReader::read (const void* data, size_t size)
{
    auto* bytes = static_cast<const uint8_t*> (data);
    size_t offset = 0;
    while (size - offset >= sizeof (nlmsghdr))
    {
        nlmsghdr header;
        std::memcpy (&header, bytes + offset, sizeof (header));
        if (header.nlmsg_len < sizeof (nlmsghdr) || header.nlmsg_len > size - offset)
            return Outcome::failed;

        if (header.nlmsg_type == NLMSG_DONE)
            return Outcome::done;
        if (header.nlmsg_type == NLMSG_ERROR)
            return Outcome::failed;
        if (header.nlmsg_type == RTM_NEWADDR
             && ! readAddressMessage (bytes + offset + NLMSG_HDRLEN, header.nlmsg_len - NLMSG_HDRLEN))
            return Outcome::failed;

        // The last message of a datagram may go without its padding.
        offset += std::min ((size_t) NLMSG_ALIGN (header.nlmsg_len), size - offset);
    }
    return offset == size ? Outcome::needsMore : Outcome::failed;
}

bool NetlinkAddressReader::readAddressMessage (const uint8_t* payload, size_t size)
{
    if (size < sizeof (ifaddrmsg))
        return false;
    ifaddrmsg message;
    std::memcpy (&message, payload, sizeof (message));
    if (message.ifa_family != AF_INET)
        return true;

    Address entry;
    entry.adapterIndex = message.ifa_index;
    entry.flags = message.ifa_flags;
    bool hasLocal = false, hasAddress = false;

    size_t offset = NLMSG_ALIGN (sizeof (ifaddrmsg));
    while (offset < size && size - offset >= sizeof (rtattr))
    {
        rtattr attribute;
        std::memcpy (&attribute, payload + offset, sizeof (attribute));
        if (attribute.rta_len < sizeof (rtattr) || attribute.rta_len > size - offset)
            return false;

        const uint8_t* value = payload + offset + RTA_LENGTH (0);
        const size_t valueSize = attribute.rta_len - RTA_LENGTH (0);
        // A point-to-point address has its own end in IFA_LOCAL and the peer in IFA_ADDRESS.
        if ((attribute.rta_type == IFA_LOCAL || (attribute.rta_type == IFA_ADDRESS && ! hasLocal)) && valueSize == 4)
        {
            entry.address = juce::IPAddress (value, false);
            hasLocal = hasLocal || attribute.rta_type == IFA_LOCAL;
            hasAddress = true;
        }
        else if (attribute.rta_type == IFA_FLAGS && valueSize == sizeof (uint32_t))
        {
            std::memcpy (&entry.flags, value, sizeof (uint32_t));
        }
        else if (attribute.rta_type == IFA_LABEL)
        {
            entry.label = juce::String::fromUTF8 ((const char*) value, (int) strnlen ((const char*) value, valueSize));
        }
        offset += std::min ((size_t) RTA_ALIGN (attribute.rta_len), size - offset);
    }

    if (hasAddress)
        addresses.push_back (entry);
    return true;
}

//==============================================================================
namespace
{
/** A netlink route socket, closed on every way out. */
struct NetlinkSocket
{
    NetlinkSocket()  : handle (::socket (AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_ROUTE)) {}
    ~NetlinkSocket() { if (handle >= 0) ::close (handle); }
    const int handle;
};

bool sendAddressDumpRequest (int handle)
{
    struct
    {
        nlmsghdr header;
        ifaddrmsg message;
    } request {};
    request.header.nlmsg_len = NLMSG_LENGTH (sizeof (ifaddrmsg));
    request.header.nlmsg_type = RTM_GETADDR;
    request.header.nlmsg_flags = NLM_F_REQUEST | NLM_F_DUMP;
    request.header.nlmsg_seq = 1;
    request.message.ifa_family = AF_INET;

    sockaddr_nl kernel {};
    kernel.nl_family = AF_NETLINK;
    return ::sendto (handle, &request, request.header.nlmsg_len, 0, (const sockaddr*) &kernel, sizeof (kernel))
             == (ssize_t) request.header.nlmsg_len;
}
} // namespace

bool NetlinkAddressReader::readFromKernel (std::vector<Address>& result)
{
    NetlinkSocket socket;
    if (socket.handle < 0 || ! sendAddressDumpRequest (socket.handle))
        return false;

    NetlinkAddressReader reader;
    std::vector<uint8_t> buffer (65536);
    for (;;)
    {
        // With MSG_TRUNC the answer is the datagram's whole length, so a cut one shows.
        const ssize_t received = ::recv (socket.handle, buffer.data(), buffer.size(), MSG_TRUNC);
        if (received <= 0 || (size_t) received > buffer.size())
            return false;
        const auto outcome = reader.read (buffer.data(), (size_t) received);
        if (outcome == Outcome::failed)
            return false;
        if (outcome == Outcome::done)
            break;
    }
    result = reader.addresses;
    return true;
}

} // namespace tov
