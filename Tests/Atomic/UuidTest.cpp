#include "AtomicTestSupport.h"

using namespace tov;
using namespace tov::test;

namespace
{
const juce::String dashed = "0f8fad5b-d9cb-469f-a165-70867728950e";
}

TEST (UuidTest, IsNullByDefault)
{
    Uuid uuid;
    EXPECT_TRUE (uuid.get().isNull());
    EXPECT_EQ (uuid.toString(), "00000000-0000-0000-0000-000000000000");
}

TEST (UuidTest, ValidDashedStrings)
{
    EXPECT_TRUE (Uuid::isValidUuidDashedString (dashed));
    EXPECT_TRUE (Uuid::isValidUuidDashedString (dashed.toUpperCase()));
    EXPECT_FALSE (Uuid::isValidUuidDashedString (dashed.substring (1)));
    EXPECT_FALSE (Uuid::isValidUuidDashedString (dashed + "0"));
    EXPECT_FALSE (Uuid::isValidUuidDashedString ("0f8fad5bd-9cb-469f-a165-70867728950e"));
    EXPECT_FALSE (Uuid::isValidUuidDashedString ("0f8fad5b-d9cb-469f-a165-70867728950g"));
    EXPECT_FALSE (Uuid::isValidUuidDashedString ("0f8fad5b-d9cb-469f-a165-70867728950-"));
    EXPECT_FALSE (Uuid::isValidUuidDashedString (""));
}

TEST (UuidTest, SavesTheDashedText)
{
    Uuid source { juce::Uuid (dashed) }, target;
    EXPECT_EQ (source.toString(), dashed);
    EXPECT_EQ (source.makeState (false)->toShortString(), dashed.quoted());
    EXPECT_TRUE (saveAndLoad (source, target).result);
    EXPECT_TRUE (target.equals (source));
}

TEST (UuidTest, AnInvalidTextFailsWithoutReport)
{
    Uuid uuid { juce::Uuid (dashed) };
    const auto outcome = loadFromState (uuid, std::make_shared<State> ("not-a-uuid"));
    EXPECT_FALSE (outcome.result);
    EXPECT_EQ (outcome.messages, "");
    EXPECT_EQ (uuid.toString(), dashed);
}

TEST (UuidTest, SetNotifiesOnAChange)
{
    Uuid uuid;
    ChangeCounter counter (uuid);
    uuid.set (juce::Uuid (dashed));
    uuid.set (juce::Uuid (dashed));
    EXPECT_EQ (counter.count, 1);
}
