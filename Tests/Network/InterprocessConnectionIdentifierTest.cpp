#include <Tov/Network/InterprocessConnectionIdentifier.h>
#include <gtest/gtest.h>

using namespace tov;

namespace
{
InterprocessConnectionIdentifier identifier (const juce::String& localIp, unsigned int localPort,
                                             const juce::String& remoteHost, unsigned int remotePort)
{
    InterprocessConnectionIdentifier result;
    result.localNetworkAddress.set (localIp, localPort, false);
    result.remoteNetworkAddress.set (remoteHost, remotePort, false);
    return result;
}
} // namespace

TEST (InterprocessConnectionIdentifierTest, ANewIdentifierIsNotValid)
{
    InterprocessConnectionIdentifier id;
    EXPECT_FALSE (id.isLocalSideSet());
    EXPECT_FALSE (id.isRemoteSideSet());
    EXPECT_FALSE (id.isValid());
}

TEST (InterprocessConnectionIdentifierTest, EachSideIsSetByItsAddressOrItsPort)
{
    EXPECT_TRUE (identifier ("127.0.0.1", 0, "", 1).isLocalSideSet());
    EXPECT_TRUE (identifier ("", 5000, "", 1).isLocalSideSet());
    EXPECT_FALSE (identifier ("", 0, "", 1).isLocalSideSet());
    EXPECT_TRUE (identifier ("", 0, "host", 1).isRemoteSideSet());
    EXPECT_TRUE (identifier ("", 0, "", 2).isRemoteSideSet());
    EXPECT_FALSE (identifier ("", 0, "", 1).isRemoteSideSet());
}

TEST (InterprocessConnectionIdentifierTest, ValidNeedsBothSides)
{
    EXPECT_TRUE (identifier ("127.0.0.1", 40000, "127.0.0.1", 5000).isValid());
    EXPECT_FALSE (identifier ("127.0.0.1", 40000, "", 1).isValid());
    EXPECT_FALSE (identifier ("", 0, "127.0.0.1", 5000).isValid());
}

TEST (InterprocessConnectionIdentifierTest, TextHasTheLocalSideOnlyWhenSet)
{
    EXPECT_EQ (identifier ("127.0.0.1", 40000, "10.0.0.2", 5000).toString ("->", {}), "127.0.0.1:40000->10.0.0.2:5000");
    EXPECT_EQ (identifier ("", 0, "10.0.0.2", 5000).toString ("->", {}), "10.0.0.2:5000");
    EXPECT_EQ (identifier ("0.0.0.0", 40000, "10.0.0.2", 5000).toString ("<-", {}), "Any:40000<-10.0.0.2:5000");
}

TEST (InterprocessConnectionIdentifierTest, TextNamesTheHostWhenItIsNotTheRemoteAddress)
{
    const auto id = identifier ("127.0.0.1", 40000, "10.0.0.2", 5000);
    EXPECT_EQ (id.toString ("->", "studio"), "127.0.0.1:40000->10.0.0.2:5000 (studio)");
    EXPECT_EQ (id.toString ("->", "10.0.0.2"), "127.0.0.1:40000->10.0.0.2:5000");
    EXPECT_EQ (id.toString(), "127.0.0.1:4000010.0.0.2:5000");
}

TEST (InterprocessConnectionIdentifierTest, EqualIdentifiersNameTheSameConnection)
{
    EXPECT_TRUE (identifier ("127.0.0.1", 40000, "127.0.0.1", 5000).equals (identifier ("127.0.0.1", 40000, "127.0.0.1", 5000)));
    EXPECT_FALSE (identifier ("127.0.0.1", 40001, "127.0.0.1", 5000).equals (identifier ("127.0.0.1", 40000, "127.0.0.1", 5000)));
    EXPECT_FALSE (identifier ("127.0.0.1", 40000, "127.0.0.2", 5000).equals (identifier ("127.0.0.1", 40000, "127.0.0.1", 5000)));
}
