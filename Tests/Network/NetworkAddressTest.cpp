#include "NetworkTestSupport.h"
#include "Atomic/AtomicTestSupport.h"
#include <Tov/Network/NetworkAddress.h>

using namespace tov;
using namespace tov::test;

TEST (NetworkAddressTest, VariablesAreHostThenPort)
{
    NetworkAddress address;
    ASSERT_EQ (address.getNumVariables(), 2u);
    EXPECT_EQ (address.getVariable (0)->getClassName(), "HostIdentifier");
    EXPECT_EQ (address.getVariable (1)->getClassName(), "NetworkPort");
    EXPECT_EQ (address.getVariableByName ("host"), &address.host);
    EXPECT_EQ (address.getVariableByName ("port"), &address.port);
}

TEST (NetworkAddressTest, SetGetAndReset)
{
    NetworkAddress address;
    EXPECT_TRUE (address.isEmpty());
    address.set ("render-3", 7000);
    EXPECT_EQ (address.getHost(), "render-3");
    EXPECT_EQ (address.getPort(), 7000u);
    EXPECT_TRUE (address.isNotEmpty());
    address.reset();
    EXPECT_EQ (address.getHost(), "");
    EXPECT_EQ (address.getPort(), 0u);
    EXPECT_TRUE (address.isEmpty());
    EXPECT_FALSE (address.isNotEmpty());
}

TEST (NetworkAddressTest, SetNotifiesOnlyWhenAsked)
{
    auto address = createOwned<NetworkAddress>();
    ChangeCounter counter (*address);
    address->set ("10.0.0.5", 80, false);
    EXPECT_EQ (counter.count, 0);
    address->set ("10.0.0.6", 80);
    EXPECT_EQ (counter.count, 1);
}

TEST (NetworkAddressTest, ToStringIsHostColonPortOrThePortAlone)
{
    EXPECT_EQ (NetworkAddress ("10.0.0.5", 7000).toString(), "10.0.0.5:7000");
    EXPECT_EQ (NetworkAddress ("", 7000).toString(), "7000");
    EXPECT_EQ (NetworkAddress ("studio", 1).toString(), "studio:1");
}

TEST (NetworkAddressTest, SavesAndLoadsBothVariables)
{
    NetworkAddress source ("render-3", 9000), target;
    EXPECT_EQ (source.makeState (false)->toShortString(), "{host = \"render-3\", port = 9000}");
    auto outcome = saveAndLoad (source, target);
    EXPECT_TRUE (outcome.result);
    EXPECT_EQ (outcome.messages, "");
    EXPECT_TRUE (target.equals (source));
}

TEST (NetworkAddressTest, APlainStringOfAnOlderVersionLoadsIntoHost)
{
    NetworkAddress address ("", 7000);
    auto outcome = loadFromText (address, "\"10.0.0.5\"");
    EXPECT_TRUE (outcome.result);
    EXPECT_EQ (outcome.messages, "");
    EXPECT_EQ (address.getHost(), "10.0.0.5");
    EXPECT_EQ (address.getPort(), 7000u);
}

TEST (NetworkAddressTest, TheOldNameHostNameLoadsIntoHost)
{
    NetworkAddress address;
    auto outcome = loadFromText (address, "{hostName = \"render-3\", port = 9000}");
    EXPECT_TRUE (outcome.result);
    EXPECT_EQ (outcome.messages, "");
    EXPECT_EQ (address.toString(), "render-3:9000");
}

TEST (NetworkAddressTest, LoadsInsideADocumentFromAPlainString)
{
    auto document = State::createFromStateString (ExecutionContext::get(), "'NetworkAddress \"studio\"", "test");
    ASSERT_NE (document, nullptr);
    juce::String messages;
    ToStringExecutionContext context (messages);
    Owned<Object> object (Object::createFromState (context, document, nullptr));
    ASSERT_NE (object, nullptr);
    EXPECT_EQ (object->toString(), "studio:0");
    EXPECT_EQ (messages, "");
}

TEST (NetworkAddressTest, AnotherUnknownVariableIsStillReported)
{
    NetworkAddress address;
    auto outcome = loadFromText (address, "{server = \"x\"}");
    EXPECT_NE (outcome.messages, "");
    EXPECT_EQ (address.getHost(), "");
}

TEST (NetworkPortTest, RangesFromOneTo65535)
{
    NetworkPort port;
    EXPECT_EQ (NetworkPort::staticClass.getBaseClass(), &StrictlyPositiveInteger::staticClass);
    EXPECT_EQ (port.getMinimumValue(), 1.0);
    EXPECT_EQ (port.getMaximumValue(), 65535.0);
    EXPECT_EQ (port.makeNumberValid (70000.0), 65535.0);
    EXPECT_EQ (port.makeNumberValid (0.0), 1.0);
    EXPECT_EQ (port.makeNumberValid (8080.0), 8080.0);
}
