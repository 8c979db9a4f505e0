#include <Tov/Core/UniqueIdentifier.h>
#include <gtest/gtest.h>

using namespace tov;

TEST (UniqueIdentifierTest, NullPrintsAsNil)
{
    EXPECT_EQ (UniqueIdentifier().to64BitsHexadecimalString(), "nil");
}

TEST (UniqueIdentifierTest, PrintsLowerCaseHexadecimalAfterAt)
{
    EXPECT_EQ (UniqueIdentifier (255).to64BitsHexadecimalString(), "@ff");
    EXPECT_EQ (UniqueIdentifier::getDeletedObjectIdentifier().to64BitsHexadecimalString(), "@dddddddddddddddd");
}

TEST (UniqueIdentifierTest, ReadsItsOwnText)
{
    UniqueIdentifier identifier;
    identifier.setFrom64BitsHexadecimalString ("@1f2e");
    EXPECT_EQ (identifier.getInt64(), 0x1f2eu);
}

TEST (UniqueIdentifierTest, ReservedValues)
{
    EXPECT_TRUE (UniqueIdentifier().isNull());
    EXPECT_EQ (UniqueIdentifier::getRootIdentifier().getInt64(), 1u);
    EXPECT_EQ (UniqueIdentifier::getDeletedObjectIdentifier().getInt64(), 0xddddddddddddddddull);
    EXPECT_EQ ((UniqueIdentifier (0xf0) ^ UniqueIdentifier (0x0f)).getInt64(), 0xffu);
    EXPECT_TRUE (UniqueIdentifier (1) < UniqueIdentifier (2));
}

TEST (UniqueIdentifierTest, UuidRoundTrip)
{
    for (uint64_t value : { 1ull, 0x1234ull, 0xabcd000000000001ull, 0xffffffffffffffffull, 0x0000ffffffffffffull })
    {
        const UniqueIdentifier identifier (value);
        const auto uuid = identifier.convertToUuid();
        EXPECT_TRUE (UniqueIdentifier::isConvertibleFromUuid (uuid));
        EXPECT_EQ (UniqueIdentifier::convertFromUuid (uuid, true), identifier);
    }
}

TEST (UniqueIdentifierTest, UuidFieldsHoldTheValue)
{
    const auto uuid = UniqueIdentifier (0x123456789abcdef0ull).convertToUuid();
    EXPECT_EQ (uuid.getTimeLow(), 0u);
    EXPECT_EQ (uuid.getTimeMid(), 0x1234);
    EXPECT_EQ (uuid.getTimeHighAndVersion(), 0x4000);
    EXPECT_EQ (uuid.getClockSeqAndReserved(), 0x80);
    EXPECT_EQ (uuid.getClockSeqLow(), 0);
    EXPECT_EQ (uuid.getNode(), 0x56789abcdef0ull);
}

TEST (UniqueIdentifierTest, NullUuidIsNullIdentifier)
{
    EXPECT_TRUE (UniqueIdentifier().convertToUuid().isNull());
    EXPECT_TRUE (UniqueIdentifier::isConvertibleFromUuid (juce::Uuid::null()));
    EXPECT_TRUE (UniqueIdentifier::convertFromUuid (juce::Uuid::null(), true).isNull());
}

TEST (UniqueIdentifierTest, UuidWithTimeLowIsNotConvertible)
{
    juce::uint8 bytes[16] = {};
    bytes[3] = 1;       // time_low
    bytes[6] = 0x40;    // version
    bytes[8] = 0x80;    // variant
    bytes[15] = 7;      // node
    const juce::Uuid uuid (bytes);
    EXPECT_FALSE (UniqueIdentifier::isConvertibleFromUuid (uuid));
    EXPECT_TRUE (UniqueIdentifier::convertFromUuid (uuid, true).isNull());
    EXPECT_EQ (UniqueIdentifier::convertFromUuid (uuid, false).getInt64(), 7u);
}

TEST (UniqueIdentifierTest, MakeUuidCompliantSetsVersionAndVariant)
{
    juce::uint8 bytes[16];
    memset (bytes, 0xff, sizeof (bytes));
    const auto compliant = UniqueIdentifier::makeUuidCompliantToRfc4122 (juce::Uuid (bytes));
    EXPECT_EQ (compliant.getRawData()[6], 0x4f);
    EXPECT_EQ (compliant.getRawData()[8], 0xbf);
    EXPECT_EQ (compliant.getRawData()[0], 0xff);
}
