#include "NetworkTestSupport.h"
#include "Support/RecordingExecutionContext.h"
#include <Tov/Network/HostIdentifier.h>

using namespace tov;
using namespace tov::test;
using tov::testing::RecordingExecutionContext;

TEST (HostIdentifierTest, StaticTextsAreTheWellKnownAddresses)
{
    EXPECT_EQ (HostIdentifier::any, "0.0.0.0");
    EXPECT_EQ (HostIdentifier::localhost, "127.0.0.1");
    EXPECT_EQ (HostIdentifier::broadcast, "255.255.255.255");
}

TEST (HostIdentifierTest, IsAStringClassOfTheNetworkLibrary)
{
    auto* library = Library::getRootLibrary()->getLibraryByName ("Tov")->getLibraryByName ("Network");
    ASSERT_NE (library, nullptr);
    juce::StringArray names;
    for (size_t i = 0; i < library->getNumClasses(); ++i)
        names.add (library->getClass (i)->getName());
    EXPECT_EQ (names.joinIntoString (" "), "HostIdentifier NetworkAdapterStats NetworkStats NetworkPort NetworkAddress "
                                           "LocalIp LocalNetworkPort LocalNetworkAddress "
                                           "InterprocessConnectionIdentifier InterprocessConnection InterprocessConnectionServer "
                                           "NetworkBroadcaster LastNetworkServerFootprint");
    EXPECT_EQ (HostIdentifier::staticClass.getBaseClass(), &String::staticClass);
    auto identifier = createOwned<HostIdentifier>();
    identifier->set ("render-3");
    EXPECT_EQ (identifier->makeState (false)->toShortString(), "\"render-3\"");
}

TEST (HostIdentifierTest, FourPartsGiveTheNumberAndBack)
{
    EXPECT_EQ (HostIdentifier::getNativeEndian32BitFromIpV4 ("1.2.3.4"), 0x01020304u);
    EXPECT_EQ (HostIdentifier::getIpV4StringFromNativeEndian32Bit (0x01020304u), "1.2.3.4");
    EXPECT_EQ (HostIdentifier::getNativeEndian32BitFromIpV4 ("255.255.255.255"), 0xffffffffu);
    EXPECT_EQ (HostIdentifier::getIpV4StringFromNativeEndian32Bit (0xc0a80114u), "192.168.1.20");
    EXPECT_EQ (HostIdentifier::getIpV4StringFromNativeEndian32Bit (0u), "0.0.0.0");
    EXPECT_EQ (HostIdentifier ("10.0.0.9").getNativeEndian32BitFromIpV4(), 0x0a000009u);
}

TEST (HostIdentifierTest, OtherThanFourPartsGivesZero)
{
    EXPECT_EQ (HostIdentifier::getNativeEndian32BitFromIpV4 ("1.2.3"), 0u);
    EXPECT_EQ (HostIdentifier::getNativeEndian32BitFromIpV4 ("1.2.3.4.5"), 0u);
    EXPECT_EQ (HostIdentifier::getNativeEndian32BitFromIpV4 (""), 0u);
    EXPECT_EQ (HostIdentifier::getNativeEndian32BitFromIpV4 ("studio.local"), 0u);
}

TEST (HostIdentifierTest, PartsAreNotRangeChecked)
{
    // Each part counts as getIntValue reads it: 256 carries into the next byte, text counts as 0.
    EXPECT_EQ (HostIdentifier::getNativeEndian32BitFromIpV4 ("1.2.3.256"), 0x01020400u);
    EXPECT_EQ (HostIdentifier::getNativeEndian32BitFromIpV4 ("a.b.c.d"), 0u);
    EXPECT_EQ (HostIdentifier::getNativeEndian32BitFromIpV4 ("1.2.3."), 0x01020300u);
    EXPECT_EQ (HostIdentifier::getNativeEndian32BitFromIpV4 ("0.0.0.-1"), 0xffffffffu);
    EXPECT_EQ (HostIdentifier::getNativeEndian32BitFromIpV4 (" 7.8x.9.10"), 0x0708090au);
}

TEST (HostIdentifierTest, AnEmptyTextIsNeverLocal)
{
    EXPECT_FALSE (HostIdentifier::isLocalIPAddress ("", false));
    EXPECT_FALSE (HostIdentifier::isLocalIPAddress ("", true));
    EXPECT_FALSE (HostIdentifier().isLocalIPAddress());
}

TEST (HostIdentifierTest, TheLoopbackAddressIsLocal)
{
    EXPECT_TRUE (HostIdentifier::isLocalIPAddress ("127.0.0.1", false));
    EXPECT_TRUE (HostIdentifier (HostIdentifier::localhost).isLocalIPAddress());
    EXPECT_FALSE (HostIdentifier::isLocalIPAddress ("localhost", false));
    EXPECT_FALSE (HostIdentifier::isLocalIPAddress ("203.0.113.77", false));
}

TEST (HostIdentifierTest, AnyIsKeptWithoutWarning)
{
    RecordingExecutionContext context;
    EXPECT_EQ (HostIdentifier::getLocalIpOrAnyWithWarning (context, "0.0.0.0"), "0.0.0.0");
    EXPECT_TRUE (context.warnings.empty());
}

TEST (HostIdentifierTest, AnIpOfNoAdapterFallsBackToAny)
{
    RecordingExecutionContext context;
    EXPECT_EQ (HostIdentifier::getLocalIpOrAnyWithWarning (context, "203.0.113.77"), "0.0.0.0");
    ASSERT_EQ (context.warnings.size(), 1u);
    EXPECT_EQ (context.warnings[0], "Bad local ip: 203.0.113.77 Fallback to \"any (0.0.0.0)\" adapters.");
    EXPECT_TRUE (context.errors.empty());
}

TEST (HostIdentifierTest, AHostNameIsNoLocalIp)
{
    RecordingExecutionContext context;
    EXPECT_EQ (HostIdentifier::getLocalIpOrAnyWithWarning (context, "render-3"), "0.0.0.0");
    ASSERT_EQ (context.warnings.size(), 1u);
    EXPECT_EQ (context.warnings[0], "Bad local ip: render-3 Fallback to \"any (0.0.0.0)\" adapters.");
}

TEST (HostIdentifierTest, TheConnectedLoopbackIsKeptWithoutWarning)
{
    RecordingExecutionContext context;
    EXPECT_EQ (HostIdentifier::getLocalIpOrAnyWithWarning (context, "127.0.0.1"), "127.0.0.1");
    EXPECT_TRUE (context.warnings.empty());
}
