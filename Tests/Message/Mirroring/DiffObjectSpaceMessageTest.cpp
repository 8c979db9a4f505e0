#include "MirroringTestSupport.h"
#include "Support/TestValues.h"
#include "Support/RecordingExecutionContext.h"
#include <Tov/Core/ObjectExporter.h>
#include <Tov/Core/StateObjectExporter.h>

using namespace tov;
using namespace tov::test;

// The saved form of a diff, its load errors, its text and its merges.
namespace
{
std::shared_ptr<State> parse (const juce::String& text)
{
    tov::testing::RecordingExecutionContext context;
    auto state = State::createFromStateString (context, text, {});
    EXPECT_NE (state, nullptr) << text;
    return state;
}

VariableAddress addressOf (uint64_t identifier, const juce::String& path = {})
{
    VariableAddress address;
    address.setSpace ("Document");
    address.setRootUniqueIdentifier (UniqueIdentifier (identifier));
    if (path.isNotEmpty())
        address.getPath().addChildPath (path);
    return address;
}

/** An item's shallow state, as a mirrorer makes it, with that identifier. */
std::shared_ptr<State> itemState (uint64_t identifier, const juce::String& name, int64_t value)
{
    auto state = parse ("'Item {name = \"" + name + "\", value = " + juce::String (value) + ", amount = 0.0}");
    state->setUniqueIdentifier (UniqueIdentifier (identifier));
    return state;
}

juce::String savedText (const DiffObjectSpaceMessage& diff)
{
    return StateObjectExporter::make (diff, 0, true)->saveToString();
}

class DiffObjectSpaceMessageTest : public ::testing::Test
{
protected:
    TestProgram program;
    bool libraryIsThere = (ensureMirroringTestLibrary(), true);
    tov::testing::RecordingExecutionContext context;

    Owned<DiffObjectSpaceMessage> load (const juce::String& text, bool expectedResult)
    {
        Owned<DiffObjectSpaceMessage> diff (new DiffObjectSpaceMessage());
        EXPECT_EQ (diff->loadFromState (context, parse (text)), expectedResult);
        return diff;
    }
};

using DiffObjectSpaceMergeTest = DiffObjectSpaceMessageTest;
} // namespace

TEST_F (DiffObjectSpaceMessageTest, AnEmptyDiffSavesItsTargetSpaceAlone)
{
    DiffObjectSpaceMessage diff ("Document");
    EXPECT_TRUE (diff.isEmpty());
    EXPECT_EQ (savedText (diff), "'DiffObjectSpaceMessage {targetSpace = \"Document\"}\n");
}

TEST_F (DiffObjectSpaceMessageTest, CreationsAreOwnedPointersAndChangesAreAddressStatePairs)
{
    DiffObjectSpaceMessage diff ("Document");
    diff.setCreation (UniqueIdentifier (0x20), itemState (0x20, "one", 1));
    diff.addChange (addressOf (1, "count"), std::make_shared<State> (5));
    EXPECT_EQ (savedText (diff),
               "'DiffObjectSpaceMessage \n"
               "{\n"
               "  targetSpace = \"Document\", \n"
               "  creations = {=> 'Item @20 {name = \"one\", value = 1, amount = 0.}}, \n"
               "  changes = {{address = {\"Document\", -> @1, \"count\"}, state = => 5}}\n"
               "}\n");
}

TEST_F (DiffObjectSpaceMessageTest, ADiffLoadsWhatItSaved)
{
    DiffObjectSpaceMessage diff ("Document");
    diff.setCreation (UniqueIdentifier (0x20), itemState (0x20, "one", 1));
    diff.setCreation (UniqueIdentifier (0x30), itemState (0x30, "two", 2));
    diff.addChange (addressOf (1, "count"), std::make_shared<State> (5));
    diff.addChange (addressOf (1, "title"), std::make_shared<State> ("renamed"));

    auto loaded = load (savedText (diff), true);
    EXPECT_EQ (loaded->getTargetSpace(), "Document");
    EXPECT_EQ (loaded->getCreations().size(), 2u);
    EXPECT_EQ (loaded->getChanges().size(), 2u);
    EXPECT_TRUE (loaded->equals (diff));
    EXPECT_TRUE (context.errors.empty());
}

TEST_F (DiffObjectSpaceMessageTest, ACreationThatIsNotAnOwnedPointerIsReportedAndTheOthersAreRead)
{
    auto diff = load ("'DiffObjectSpaceMessage {targetSpace = \"Document\", creations = {3, => 'Item @20 {value = 1}}}", false);
    ASSERT_EQ (context.errors.size(), 1u);
    EXPECT_EQ (context.errors[0], "Wrong type: expected ownedPointer, found integer (in 3) (in DiffObjectSpaceMessage::load)");
    EXPECT_EQ (diff->getCreations().size(), 1u);
    EXPECT_EQ (diff->getCreations().count (UniqueIdentifier (0x20)), 1u);
}

TEST_F (DiffObjectSpaceMessageTest, AChangeWithoutExactlyTwoVariablesIsAnInvalidFormat)
{
    auto diff = load ("'DiffObjectSpaceMessage {targetSpace = \"Document\", changes = {"
                      "{address = {\"Document\", -> @1, \"count\"}},"
                      "{address = {\"Document\", -> @1, \"level\"}, state = => 2.5},"
                      "{address = {\"Document\", -> @1, \"title\"}, state = => \"x\", more = 1}}}", false);
    ASSERT_EQ (context.errors.size(), 2u);
    EXPECT_EQ (context.errors[0], "invalid format (in DiffObjectSpaceMessage::load)");
    EXPECT_EQ (context.errors[1], "invalid format (in DiffObjectSpaceMessage::load)");
    ASSERT_EQ (diff->getChanges().size(), 1u);
    EXPECT_EQ (diff->getChanges().begin()->first, addressOf (1, "level"));
    EXPECT_EQ (diff->getChanges().begin()->second->toString(), "2.5");
}

TEST_F (DiffObjectSpaceMessageTest, ToStringCountsOnlyWhatThereIs)
{
    DiffObjectSpaceMessage diff ("Document");
    EXPECT_EQ (diff.toString(), "DiffObjectSpaceMessage: ");
    diff.setCreation (UniqueIdentifier (0x20), itemState (0x20, "one", 1));
    diff.setCreation (UniqueIdentifier (0x30), itemState (0x30, "two", 2));
    EXPECT_EQ (diff.toString(), "DiffObjectSpaceMessage: 2 creations, ");
    diff.addChange (addressOf (1, "count"), std::make_shared<State> (5));
    EXPECT_EQ (diff.toString(), "DiffObjectSpaceMessage: 2 creations, 1 changes");

    DiffObjectSpaceMessage changesOnly ("Document");
    changesOnly.addChange (addressOf (1, "count"), std::make_shared<State> (5));
    EXPECT_EQ (changesOnly.toString(), "DiffObjectSpaceMessage: 1 changes");
}

TEST_F (DiffObjectSpaceMessageTest, AClonedEnvelopCarriesAnEqualDiffThatSharesTheStates)
{
    auto* diff = new DiffObjectSpaceMessage ("Document");
    const auto state = itemState (0x20, "one", 1);
    diff->setCreation (UniqueIdentifier (0x20), state);
    diff->addChange (addressOf (1, "count"), std::make_shared<State> (5));
    Envelop envelop (new Integer (1), diff);

    Owned<Envelop> copy (static_cast<Envelop*> (envelop.clone()));
    auto* copied = dynamic_cast<DiffObjectSpaceMessage*> (copy->getMessage (0));
    ASSERT_NE (copied, nullptr);
    EXPECT_NE (copied, diff);
    EXPECT_TRUE (copied->equals (*diff));
    EXPECT_EQ (copied->getCreations().at (UniqueIdentifier (0x20)).get(), state.get());

    copied->addChange (addressOf (1, "level"), std::make_shared<State> (2.5));
    EXPECT_FALSE (copied->equals (*diff));
    EXPECT_EQ (diff->getChanges().size(), 1u);
}

TEST_F (DiffObjectSpaceMessageTest, TheWireFormOfAnEnvelopBringsTheDiffBack)
{
    auto* diff = new DiffObjectSpaceMessage ("Document");
    diff->setCreation (UniqueIdentifier (0x20), itemState (0x20, "one", 1));
    diff->addChange (addressOf (1, "count"), std::make_shared<State> (5));
    Envelop envelop (new Integer (1), diff);
    ObjectOwnedPointer receiver;
    receiver.set (new Integer (2), false);

    juce::MemoryBlock block;
    ASSERT_TRUE (envelop.saveToMemoryBlock (receiver, block));
    ObjectOwnedPointer loadedReceiver;
    Owned<Envelop> loaded (Envelop::createFromMemoryBlock (context, block, loadedReceiver));
    ASSERT_NE (loaded, nullptr);
    auto* loadedDiff = dynamic_cast<DiffObjectSpaceMessage*> (loaded->getMessage (0));
    ASSERT_NE (loadedDiff, nullptr);
    EXPECT_TRUE (loadedDiff->equals (*diff));
    EXPECT_TRUE (context.errors.empty());
}

//==============================================================================
TEST_F (DiffObjectSpaceMergeTest, ALaterCreationReplacesTheEarlierOne)
{
    DiffObjectSpaceMessage pending ("Document"), later ("Document");
    pending.setCreation (UniqueIdentifier (0x20), itemState (0x20, "one", 1));
    later.setCreation (UniqueIdentifier (0x20), itemState (0x20, "one", 2));
    later.setCreation (UniqueIdentifier (0x30), itemState (0x30, "two", 3));
    pending.merge (later);
    ASSERT_EQ (pending.getCreations().size(), 2u);
    EXPECT_EQ (pending.getCreations().at (UniqueIdentifier (0x20))->getVariableStateByName ("value")->toString(), "2");
    EXPECT_TRUE (pending.getChanges().empty());
}

TEST_F (DiffObjectSpaceMergeTest, AChangeOfACreatedObjectItselfReplacesItsCreation)
{
    DiffObjectSpaceMessage pending ("Document"), later ("Document");
    pending.setCreation (UniqueIdentifier (0x20), itemState (0x20, "one", 1));
    const auto changed = itemState (0x20, "uno", 1);
    later.addChange (addressOf (0x20), changed);
    pending.merge (later);
    EXPECT_EQ (pending.getCreations().at (UniqueIdentifier (0x20)).get(), changed.get());
    EXPECT_TRUE (pending.getChanges().empty());
}

TEST_F (DiffObjectSpaceMergeTest, AChangeToAVariableOfACreatedObjectGoesIntoACopyOfTheCreation)
{
    DiffObjectSpaceMessage pending ("Document"), later ("Document");
    const auto created = itemState (0x20, "one", 1);
    pending.setCreation (UniqueIdentifier (0x20), created);
    later.addChange (addressOf (0x20, "value"), std::make_shared<State> (7));
    pending.merge (later);

    EXPECT_TRUE (pending.getChanges().empty());
    const auto& merged = pending.getCreations().at (UniqueIdentifier (0x20));
    EXPECT_EQ (merged->saveToString(), "'Item @20 {name = \"one\", value = 7, amount = 0.}\n");
    // The earlier state may be anywhere already: it is left as it was.
    EXPECT_EQ (created->getVariableStateByName ("value")->toString(), "1");
    EXPECT_EQ (merged->getVariableState (0).get(), created->getVariableState (0).get());
}

TEST_F (DiffObjectSpaceMergeTest, AChangeAtAPathTheCreationLacksStaysAChangeOfItsOwn)
{
    DiffObjectSpaceMessage pending ("Document"), later ("Document");
    pending.setCreation (UniqueIdentifier (0x20), itemState (0x20, "one", 1));
    later.addChange (addressOf (0x20, "colour"), std::make_shared<State> (3));
    later.addChange (addressOf (0x20, "value.digits"), std::make_shared<State> (4));
    pending.merge (later);
    EXPECT_EQ (pending.getChanges().size(), 2u);
    EXPECT_EQ (pending.getChanges().count (addressOf (0x20, "colour")), 1u);
    EXPECT_EQ (pending.getCreations().at (UniqueIdentifier (0x20))->getVariableStateByName ("value")->toString(), "1");
}

TEST_F (DiffObjectSpaceMergeTest, ChangesOfOtherObjectsAndOfNoObjectStayChangesAndTheLaterWins)
{
    DiffObjectSpaceMessage pending ("Document"), later ("Document");
    pending.addChange (addressOf (1, "count"), std::make_shared<State> (1));
    later.addChange (addressOf (1, "count"), std::make_shared<State> (2));
    later.addChange (addressOf (0, "count"), std::make_shared<State> (3));
    pending.merge (later);
    ASSERT_EQ (pending.getChanges().size(), 2u);
    EXPECT_EQ (pending.getChanges().at (addressOf (1, "count"))->toString(), "2");
    EXPECT_EQ (pending.getChanges().at (addressOf (0, "count"))->toString(), "3");
}
