#pragma once

#include <juce_core/juce_core.h>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace tov
{

/** Reads the IPv4 addresses of the kernel's rtnetlink address table (an RTM_GETADDR dump).

    The bytes come from the kernel, but they are read as outside bytes: every length is
    checked against what is left before anything is read, and a message that does not fit
    ends the reading as a failure. Addresses of other families are skipped.

        NetlinkAddressReader reader;
        while (reader.read (datagram, size) == NetlinkAddressReader::Outcome::needsMore)
            ... receive the next datagram ...
*/
class NetlinkAddressReader
{
public:
    /** One IPv4 address of an adapter, with the flags that the kernel keeps for it. */
    struct Address
    {
        uint32_t adapterIndex = 0;
        juce::IPAddress address;
        /** IFA_F_* flags: the extended word when the kernel sends it, else the message's byte. */
        uint32_t flags = 0;
        juce::String label;

        bool isPermanent() const noexcept;
    };

    enum class Outcome
    {
        needsMore,  ///< the dump goes on in another datagram
        done,       ///< the end of the dump arrived
        failed      ///< the kernel refused, or the bytes do not hold together
    };

    /** Reads one datagram of the dump, adding its addresses. */
    Outcome read (const void* data, size_t size);

    const std::vector<Address>& getAddresses() const noexcept { return addresses; }

    /** Asks the kernel of the calling thread's network namespace for its addresses; false
        when the socket cannot be opened or the dump fails. */
    static bool readFromKernel (std::vector<Address>& result);

private:
    std::vector<Address> addresses;

    bool readAddressMessage (const uint8_t* payload, size_t size);
};

} // namespace tov
