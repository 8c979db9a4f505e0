// libFuzzer target for NetlinkAddressReader, which reads the kernel's answers about the
// machine's addresses.
//
// The input is read once as one datagram, and once as a dump over several datagrams, each
// led by a byte that gives its length. Any bytes must
// end in one of the three outcomes without reading out of bounds, and every address read
// must come from a message that fits in what was given.
//
//   NetlinkAddressFuzzer work Corpus/NetlinkAddress -max_len=4096
#include <Tov/Network/NetlinkAddressReader.h>
#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <cstddef>
#include <cstdint>

using namespace tov;

namespace
{
    void check (bool condition)
    {
        if (! condition)
            __builtin_trap();
    }

    /** The smallest message that yields an address: header, ifaddrmsg and one 4-byte attribute. */
    constexpr size_t smallestAddressMessage = NLMSG_HDRLEN + NLMSG_ALIGN (sizeof (ifaddrmsg)) + RTA_LENGTH (4);
}

extern "C" int LLVMFuzzerTestOneInput (const uint8_t* data, size_t size)
{
    // The whole input as one datagram.
    NetlinkAddressReader whole;
    whole.read (data, size);
    check (whole.getAddresses().size() <= size / smallestAddressMessage);

    // The same bytes over several datagrams, as a long dump arrives.
    NetlinkAddressReader pieces;
    size_t offset = 0, total = 0;
    while (offset < size)
    {
        const size_t length = std::min ((size_t) data[offset], size - offset - 1);
        total += length;
        if (pieces.read (data + offset + 1, length) != NetlinkAddressReader::Outcome::needsMore)
            break;
        offset += length + 1;
    }
    check (pieces.getAddresses().size() <= total / smallestAddressMessage + 1);
    for (const auto& address : pieces.getAddresses())
        check (address.address.toString().isNotEmpty());
    return 0;
}
