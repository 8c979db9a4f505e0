#include "TransactionTestSupport.h"
#include "Support/TestValues.h"
#include <Tov/Message/Transaction/DefaultTemporalTransaction.h>
#include <Tov/Standard/Accessor.h>

namespace tov::test
{

/** A drag of the document's count through an accessor. */
class TemporalTransactionTest : public TransactionTest
{
protected:
    Accessor accessor;
    DefaultTemporalTransaction drag;

    void SetUp() override
    {
        TransactionTest::SetUp();
        history.clear ("Start");
        document->count.set (10, false);
    }
};

TEST_F (TemporalTransactionTest, CreateTemporalTransactionMakesADefaultOne)
{
    std::unique_ptr<TemporalTransaction> made (accessor.createTemporalTransaction (document->count));
    EXPECT_NE (dynamic_cast<DefaultTemporalTransaction*> (made.get()), nullptr);
}

TEST_F (TemporalTransactionTest, StartKeepsACloneAndExcludesTheTargetUntilTheEnd)
{
    drag.startTemporalTransaction (accessor, document->count);
    ASSERT_NE (drag.getUndoValue(), nullptr);
    EXPECT_TRUE (drag.getUndoValue()->equals (Integer (10)));
    EXPECT_FALSE (drag.hasPreviewValue());
    EXPECT_EQ (drag.getSpace(), &space());
    for (int i = 0; i < 5; ++i)
        space().updateMirroring (0.0, 0.05);
    EXPECT_TRUE (space().isInMirroringExclusionList (document->count));
}

TEST_F (TemporalTransactionTest, UpdatesShowTheValueWithoutAnUndoStep)
{
    drag.startTemporalTransaction (accessor, document->count);
    drag.updateTemporalTransaction (Integer (11));
    drag.updateTemporalTransaction (Integer (12));
    EXPECT_EQ (document->count.get(), 12);
    EXPECT_TRUE (drag.hasPreviewValue());
    EXPECT_EQ (history.getNumTransactions(), 1u);
    EXPECT_EQ (receiver.describe(), "MirroringMessage|MirroringMessage");
}

TEST_F (TemporalTransactionTest, FinalizeMakesOneUndoStepFromTheStartValue)
{
    drag.startTemporalTransaction (accessor, document->count);
    drag.updateTemporalTransaction (Integer (11));
    drag.updateTemporalTransaction (Integer (12));
    drag.finalizeTemporalTransaction (Integer (13), "Drag count");
    EXPECT_EQ (document->count.get(), 13);
    ASSERT_EQ (history.getNumTransactions(), 2u);
    EXPECT_EQ (history.getTransactionDescription (1), "Drag count");
    EXPECT_EQ (drag.getUndoValue(), nullptr);
    history.undo();
    EXPECT_EQ (document->count.get(), 10);
}

TEST_F (TemporalTransactionTest, CleanupLetsTheMirrorInAtTheNextUpdate)
{
    drag.startTemporalTransaction (accessor, document->count);
    drag.finalizeTemporalTransaction (Integer (13), "Drag count");
    EXPECT_EQ (drag.getSpace(), nullptr);
    space().updateMirroring (0.0, 0.05);
    space().updateMirroring (0.0, 0.05);
    EXPECT_FALSE (space().isInMirroringExclusionList (document->count));
}

TEST_F (TemporalTransactionTest, ResetPutsTheStartValueBackAsAVolatileChange)
{
    drag.startTemporalTransaction (accessor, document->count);
    drag.updateTemporalTransaction (Integer (20));
    receiver.clear();
    drag.resetTemporalTransaction (false);
    EXPECT_EQ (document->count.get(), 10);
    EXPECT_FALSE (drag.hasPreviewValue());
    EXPECT_EQ (receiver.describe(), "MirroringMessage");
    EXPECT_NE (drag.getUndoValue(), nullptr);
    EXPECT_EQ (history.getNumTransactions(), 1u);
}

TEST_F (TemporalTransactionTest, ResetWithoutPreviewChangesNothingAndCleanupClearsTheBackup)
{
    drag.startTemporalTransaction (accessor, document->count);
    drag.resetTemporalTransaction (true);
    EXPECT_TRUE (receiver.envelops.empty());
    EXPECT_EQ (drag.getUndoValue(), nullptr);
}

TEST_F (TemporalTransactionTest, ADeadTargetMakesEveryOperationANoOp)
{
    document->items.append (makeItem ("dragged", 1), false);
    auto* item = document->items[0];
    drag.startTemporalTransaction (accessor, item->value);
    document->items.remove ((size_t) 0, false);
    receiver.clear();
    drag.updateTemporalTransaction (Integer (5));
    drag.finalizeTemporalTransaction (Integer (6), "Too late");
    EXPECT_FALSE (drag.hasPreviewValue());
    EXPECT_EQ (history.getNumTransactions(), 1u);
    EXPECT_TRUE (receiver.envelops.empty());
    EXPECT_EQ (drag.getUndoValue(), nullptr);
}

TEST_F (TemporalTransactionTest, SetTargetValueWithADescriptionMakesOneUndoStep)
{
    accessor.setTargetValue (document->count, Integer (3), "Set count", nullptr);
    EXPECT_EQ (document->count.get(), 3);
    ASSERT_EQ (history.getNumTransactions(), 2u);
    history.undo();
    EXPECT_EQ (document->count.get(), 10);
}

TEST_F (TemporalTransactionTest, SetTargetValueOfTheValueTheTargetHoldsMakesNoStepAndSendsNothing)
{
    accessor.setTargetValue (document->count, Integer (10), "Set count", nullptr);
    accessor.setTargetValue (document->count, Integer (10), "", nullptr);
    EXPECT_EQ (history.getNumTransactions(), 1u);
    EXPECT_TRUE (receiver.envelops.empty());
}

TEST_F (TemporalTransactionTest, SetTargetValueOfAnotherNumberClassConvertsIt)
{
    accessor.setTargetValue (document->count, Real (4.0), "Set count", nullptr);
    EXPECT_EQ (document->count.get(), 4);
    EXPECT_EQ (history.getNumTransactions(), 2u);
}

TEST_F (TemporalTransactionTest, SetTargetValueOnAReadOnlyTargetChangesNothing)
{
    ReadOnlyParent locked;
    Integer readOnly;
    readOnly.set (1, false);
    readOnly.setParent (&locked);
    ASSERT_FALSE (readOnly.isEditable());
    accessor.setTargetValue (readOnly, Integer (2), "Set", nullptr);
    EXPECT_EQ (readOnly.get(), 1);
}

TEST_F (TemporalTransactionTest, GetMultiTargetsGivesTheTargetAlone)
{
    std::vector<Object*> targets;
    accessor.getMultiTargets (document->count, targets);
    EXPECT_EQ (targets, std::vector<Object*> { &document->count });
}

} // namespace tov::test
