#include <Tov/Core/Class.h>
#include <Tov/Core/ClassExpression.h>
#include <Tov/Standard/ExecutionContext.h>
#include <gtest/gtest.h>

using namespace tov;

namespace classAttributeStateTest
{
    /** A class whose attributes are written as State texts of every kind. */
    class AttributeCarrier : public Object
    {
    public:
        TOV_DECLARE_CLASS (AttributeCarrier, Object)
    };
}

using classAttributeStateTest::AttributeCarrier;

TOV_BEGIN_CLASS (AttributeCarrier,
                 { "friendlyName", "\"Human being\"" },
                 { "count", "3" },
                 { "ratio", "0.5" },
                 { "flag", "true" },
                 { "target", "OwnedVector(String)" },
                 { "settings", "{size = 12, name = \"big\"}" },
                 { "broken", "{a = }" })
TOV_END_CLASS()

TEST (ClassAttributeStateTest, AttributesAreParsedStates)
{
    auto& carrier = AttributeCarrier::staticClass;
    carrier.initializeClass();

    EXPECT_EQ (carrier.getStringAttribute ("friendlyName"), "Human being");
    EXPECT_EQ (carrier.getIntegerAttribute ("count"), 3);
    EXPECT_EQ (carrier.getRealAttribute ("ratio"), 0.5);
    EXPECT_TRUE (carrier.getBooleanAttribute ("flag"));

    auto target = carrier.getAttribute ("target");
    ASSERT_NE (target, nullptr);
    EXPECT_EQ (target->getType(), StateType::classExpressionType);
    EXPECT_EQ (target->getClassExpressionValue(), createClassExpressionFromString ("OwnedVector(String)", nullptr));

    auto settings = carrier.getAttribute ("settings");
    ASSERT_NE (settings, nullptr);
    EXPECT_EQ (settings->toString(), "{size = 12, name = \"big\"}");
}

TEST (ClassAttributeStateTest, AnAttributeThatDoesNotParseIsLeftOut)
{
    auto& carrier = AttributeCarrier::staticClass;
    carrier.initializeClass();
    EXPECT_FALSE (carrier.hasAttribute ("broken"));
    EXPECT_TRUE (carrier.hasAttribute ("count"));
}

TEST (ClassAttributeStateTest, CreateAttributeNamesTheSourceInReports)
{
    juce::String messages;
    ToStringExecutionContext context (messages);
    EXPECT_EQ (AttributeCarrier::staticClass.createAttribute (context, "5e3", "AttributeCarrier::size"), nullptr);
    EXPECT_EQ (messages, "Error: Stream: AttributeCarrier::size\nLine: 0\nColumn: 0\nEntire line in question: [*Here*] 5e3\n => Expected a value.\n"
                         "Error: Could not parse value \"5e3\"\n");
}
