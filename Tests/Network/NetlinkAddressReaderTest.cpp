#include <Tov/Network/NetlinkAddressReader.h>
#include <gtest/gtest.h>
#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <sys/socket.h>
#include <cstring>

using namespace tov;

namespace
{
/** Builds datagrams of rtnetlink messages byte by byte, as the kernel lays them out. */
class DatagramBuilder
{
public:
    DatagramBuilder& addAddress (uint32_t index, const char* address, uint8_t flags, uint8_t family = AF_INET)
    {
        beginMessage (RTM_NEWADDR);
        ifaddrmsg message {};
        message.ifa_family = family;
        message.ifa_prefixlen = 24;
        message.ifa_flags = flags;
        message.ifa_index = index;
        append (&message, sizeof (message));
        endMessage();
        if (address != nullptr)
            addAttribute (IFA_LOCAL, juce::IPAddress (address).address, 4);
        return *this;
    }

    DatagramBuilder& addAttribute (uint16_t type, const void* value, size_t size)
    {
        rtattr attribute {};
        attribute.rta_len = (unsigned short) RTA_LENGTH (size);
        attribute.rta_type = type;
        append (&attribute, sizeof (attribute));
        append (value, size);
        pad();
        return endMessage();
    }

    DatagramBuilder& addDone()   { beginMessage (NLMSG_DONE); const int32_t zero = 0; append (&zero, 4); return endMessage(); }
    DatagramBuilder& addError()  { beginMessage (NLMSG_ERROR); const int32_t code = -1; append (&code, 4); return endMessage(); }

    std::vector<uint8_t> bytes;

private:
    size_t messageStart = 0;

    void beginMessage (uint16_t type)
    {
        messageStart = bytes.size();
        nlmsghdr header {};
        header.nlmsg_type = type;
        header.nlmsg_flags = NLM_F_MULTI;
        append (&header, sizeof (header));
        endMessage();
    }

    /** Writes the message's length into its header, for what has been added so far. */
    DatagramBuilder& endMessage()
    {
        const uint32_t length = (uint32_t) (bytes.size() - messageStart);
        std::memcpy (bytes.data() + messageStart, &length, sizeof (length));
        return *this;
    }

    void append (const void* data, size_t size)
    {
        auto* start = static_cast<const uint8_t*> (data);
        bytes.insert (bytes.end(), start, start + size);
    }

    void pad()   { while (bytes.size() % 4 != 0) bytes.push_back (0); }
};

NetlinkAddressReader::Outcome readAll (NetlinkAddressReader& reader, const DatagramBuilder& builder)
{
    return reader.read (builder.bytes.data(), builder.bytes.size());
}
}

TEST (NetlinkAddressReaderTest, ReadsAddressesUntilTheEndOfTheDump)
{
    DatagramBuilder first, last;
    first.addAddress (1, "127.0.0.1", IFA_F_PERMANENT).addAddress (3, "10.9.0.1", 0);
    last.addAddress (4, "10.9.1.7", IFA_F_PERMANENT).addDone();

    NetlinkAddressReader reader;
    EXPECT_EQ (readAll (reader, first), NetlinkAddressReader::Outcome::needsMore);
    EXPECT_EQ (readAll (reader, last), NetlinkAddressReader::Outcome::done);
    const auto& addresses = reader.getAddresses();
    ASSERT_EQ (addresses.size(), 3u);
    EXPECT_EQ (addresses[0].address.toString(), "127.0.0.1");
    EXPECT_EQ (addresses[0].adapterIndex, 1u);
    EXPECT_TRUE (addresses[0].isPermanent());
    EXPECT_EQ (addresses[1].address.toString(), "10.9.0.1");
    EXPECT_FALSE (addresses[1].isPermanent());
    EXPECT_EQ (addresses[2].adapterIndex, 4u);
}

TEST (NetlinkAddressReaderTest, TheExtendedFlagsWordWinsOverTheByte)
{
    DatagramBuilder builder;
    const uint32_t flags = IFA_F_NOPREFIXROUTE;
    builder.addAddress (2, "10.0.0.2", IFA_F_PERMANENT).addAttribute (IFA_FLAGS, &flags, sizeof (flags));
    NetlinkAddressReader reader;
    EXPECT_EQ (readAll (reader, builder), NetlinkAddressReader::Outcome::needsMore);
    ASSERT_EQ (reader.getAddresses().size(), 1u);
    EXPECT_EQ (reader.getAddresses()[0].flags, (uint32_t) IFA_F_NOPREFIXROUTE);
    EXPECT_FALSE (reader.getAddresses()[0].isPermanent());
}

TEST (NetlinkAddressReaderTest, ReadsTheLabelAndPrefersTheLocalEndOfAPeerAddress)
{
    DatagramBuilder builder;
    builder.addAddress (5, nullptr, 0);
    builder.addAttribute (IFA_ADDRESS, juce::IPAddress ("192.168.5.6").address, 4);
    builder.addAttribute (IFA_LOCAL, juce::IPAddress ("192.168.5.5").address, 4);
    builder.addAttribute (IFA_ADDRESS, juce::IPAddress ("192.168.5.7").address, 4);
    builder.addAttribute (IFA_LABEL, "va:two", 7);
    NetlinkAddressReader reader;
    EXPECT_EQ (readAll (reader, builder), NetlinkAddressReader::Outcome::needsMore);
    ASSERT_EQ (reader.getAddresses().size(), 1u);
    EXPECT_EQ (reader.getAddresses()[0].address.toString(), "192.168.5.5");
    EXPECT_EQ (reader.getAddresses()[0].label, "va:two");
}

TEST (NetlinkAddressReaderTest, SkipsOtherFamiliesAndMessagesWithoutAddress)
{
    DatagramBuilder builder;
    builder.addAddress (1, "10.0.0.1", 0, AF_INET6).addAddress (2, nullptr, 0).addAddress (3, "10.0.0.3", 0);
    NetlinkAddressReader reader;
    EXPECT_EQ (readAll (reader, builder), NetlinkAddressReader::Outcome::needsMore);
    ASSERT_EQ (reader.getAddresses().size(), 1u);
    EXPECT_EQ (reader.getAddresses()[0].adapterIndex, 3u);
}

TEST (NetlinkAddressReaderTest, AnErrorAnswerFails)
{
    DatagramBuilder builder;
    builder.addError();
    NetlinkAddressReader reader;
    EXPECT_EQ (readAll (reader, builder), NetlinkAddressReader::Outcome::failed);
}

TEST (NetlinkAddressReaderTest, AMessageLongerThanTheDatagramFails)
{
    DatagramBuilder builder;
    builder.addAddress (1, "10.0.0.1", 0);
    NetlinkAddressReader reader;
    EXPECT_EQ (reader.read (builder.bytes.data(), builder.bytes.size() - 1), NetlinkAddressReader::Outcome::failed);
    EXPECT_EQ (reader.read (builder.bytes.data(), 10), NetlinkAddressReader::Outcome::failed);
    EXPECT_TRUE (reader.getAddresses().empty());
}

TEST (NetlinkAddressReaderTest, BadLengthsFail)
{
    DatagramBuilder builder;
    builder.addAddress (1, "10.0.0.1", 0);
    auto tooShortHeader = builder.bytes;
    const uint32_t length = 8;
    std::memcpy (tooShortHeader.data(), &length, sizeof (length));
    NetlinkAddressReader reader;
    EXPECT_EQ (reader.read (tooShortHeader.data(), tooShortHeader.size()), NetlinkAddressReader::Outcome::failed);

    // An attribute that claims more than its message holds.
    auto longAttribute = builder.bytes;
    const uint16_t attributeLength = 200;
    std::memcpy (longAttribute.data() + NLMSG_HDRLEN + NLMSG_ALIGN (sizeof (ifaddrmsg)), &attributeLength, sizeof (attributeLength));
    EXPECT_EQ (reader.read (longAttribute.data(), longAttribute.size()), NetlinkAddressReader::Outcome::failed);

    // An address message too short for its ifaddrmsg.
    DatagramBuilder cut;
    cut.addDone();
    const uint16_t type = RTM_NEWADDR;
    std::memcpy (cut.bytes.data() + 4, &type, sizeof (type));
    EXPECT_EQ (reader.read (cut.bytes.data(), cut.bytes.size()), NetlinkAddressReader::Outcome::failed);
    EXPECT_TRUE (reader.getAddresses().empty());
}

TEST (NetlinkAddressReaderTest, AnEmptyDatagramNeedsMore)
{
    NetlinkAddressReader reader;
    EXPECT_EQ (reader.read (nullptr, 0), NetlinkAddressReader::Outcome::needsMore);
}

TEST (NetlinkAddressReaderTest, TheKernelGivesTheLoopbackAsPermanent)
{
    std::vector<NetlinkAddressReader::Address> addresses;
    ASSERT_TRUE (NetlinkAddressReader::readFromKernel (addresses));
    auto loopback = std::find_if (addresses.begin(), addresses.end(), [] (auto& entry) { return entry.address == juce::IPAddress::local (false); });
    ASSERT_NE (loopback, addresses.end());
    EXPECT_TRUE (loopback->isPermanent());
    EXPECT_EQ (loopback->label, "lo");
}
