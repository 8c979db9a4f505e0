#include "NetworkTestSupport.h"
#include "Atomic/AtomicTestSupport.h"
#include <Tov/Network/LocalNetworkAddress.h>

using namespace tov;
using namespace tov::test;

TEST (LocalNetworkAddressTest, VariablesAreLocalIpThenLocalPort)
{
    LocalNetworkAddress address;
    ASSERT_EQ (address.getNumVariables(), 2u);
    EXPECT_EQ (address.getVariable (0)->getClassName(), "LocalIp");
    EXPECT_EQ (address.getVariable (1)->getClassName(), "LocalNetworkPort");
}

TEST (LocalNetworkAddressTest, ToStringNamesAnyAdapterAny)
{
    EXPECT_EQ (LocalNetworkAddress ("0.0.0.0", 0).toString(), "Any:0");
    EXPECT_EQ (LocalNetworkAddress ("0.0.0.0", 5000).toString(), "Any:5000");
    EXPECT_EQ (LocalNetworkAddress ("192.168.1.20", 5000).toString(), "192.168.1.20:5000");
    EXPECT_EQ (LocalNetworkAddress ("", 5000).toString(), ":5000");
}

TEST (LocalNetworkAddressTest, SetGetResetAndIsEmpty)
{
    LocalNetworkAddress address;
    EXPECT_TRUE (address.isEmpty());
    address.set ("127.0.0.1", 4242);
    EXPECT_EQ (address.getLocalIp(), "127.0.0.1");
    EXPECT_EQ (address.getLocalPort(), 4242u);
    EXPECT_FALSE (address.isEmpty());
    address.reset();
    EXPECT_TRUE (address.isEmpty());
    EXPECT_EQ (address.getLocalPort(), 0u);
}

TEST (LocalNetworkAddressTest, SavesAndLoads)
{
    LocalNetworkAddress source ("0.0.0.0", 5000), target;
    EXPECT_EQ (source.makeState (false)->toShortString(), "{localIp = \"0.0.0.0\", localPort = 5000}");
    auto outcome = saveAndLoad (source, target);
    EXPECT_TRUE (outcome.result);
    EXPECT_EQ (outcome.messages, "");
    EXPECT_EQ (target.toString(), "Any:5000");
}

TEST (LocalNetworkPortTest, RangesFromZeroTo65535)
{
    LocalNetworkPort port;
    EXPECT_EQ (LocalNetworkPort::staticClass.getBaseClass(), &PositiveInteger::staticClass);
    EXPECT_EQ (port.getMinimumValue(), 0.0);
    EXPECT_EQ (port.getMaximumValue(), 65535.0);
    EXPECT_EQ (port.makeNumberValid (65536.0), 65535.0);
    EXPECT_EQ (port.makeNumberValid (0.0), 0.0);
}
