#include "TransactionTestSupport.h"
#include <Tov/Message/Transaction/CompositeTransaction.h>
#include <Tov/Message/Transaction/DummyTransaction.h>
#include <Tov/Message/Transaction/ScopedTransaction.h>

namespace tov::test
{
namespace
{
/** A transaction that writes each step it takes into a shared log. */
class LoggingTransaction : public Transaction
{
public:
    LoggingTransaction (const juce::String& description, juce::StringArray& log) : Transaction (description), log (log) {}

    void perform (Envelop&) override                 { log.add ("perform " + getDescription()); }
    void undo (Envelop&) override                    { log.add ("undo " + getDescription()); }
    void redo (Envelop&) override                    { log.add ("redo " + getDescription()); }
    juce::String toString() const override           { return getDescription(); }

private:
    juce::StringArray& log;
};
} // namespace

/** A history whose targets are the fixture's, filled with logging transactions. */
class HistoryTest : public TransactionTest
{
protected:
    juce::StringArray log;

    void SetUp() override
    {
        TransactionTest::SetUp();
        history.setMessageTargets (receiver, *editor->getIncomingMessageTarget());
    }

    Transaction* add (const juce::String& description)
    {
        auto* transaction = new LoggingTransaction (description, log);
        history.addTransaction (transaction);
        return transaction;
    }

    void editCount (int64_t value)
    {
        ScopedTransaction transaction ("Count " + juce::String (value), *document);
        document->count.set (value);
    }
};

TEST_F (HistoryTest, TheFirstTransactionOfAnEmptyHistoryIsItsBaseAndCantBeUndone)
{
    add ("a");
    EXPECT_EQ (history.getNumTransactions(), 1u);
    EXPECT_EQ (history.getPosition(), 0u);
    EXPECT_FALSE (history.canUndo());
    EXPECT_FALSE (history.canRedo());
}

TEST_F (HistoryTest, AfterClearTheFirstTransactionCanBeUndone)
{
    history.clear ("Start");
    add ("a");
    EXPECT_EQ (history.getPosition(), 1u);
    EXPECT_TRUE (history.canUndo());
    EXPECT_EQ (history.getTransactionDescription (0), "Start");
    EXPECT_NE (dynamic_cast<DummyTransaction*> (history.getTransactions()[0]), nullptr);
}

TEST_F (HistoryTest, UndoAndRedoMoveThePositionAndRunTheTransaction)
{
    history.clear ("Start");
    add ("a");
    add ("b");
    history.undo();
    EXPECT_EQ (history.getPosition(), 1u);
    EXPECT_TRUE (history.canRedo());
    history.redo();
    EXPECT_EQ (history.getPosition(), 2u);
    EXPECT_EQ (log.joinIntoString (","), "undo b,redo b");
}

TEST_F (HistoryTest, AddingAfterUndoDeletesTheUndoneTransactions)
{
    history.clear ("Start");
    add ("a");
    add ("b");
    add ("c");
    history.undo();
    history.undo();
    add ("d");
    ASSERT_EQ (history.getNumTransactions(), 3u);
    EXPECT_EQ (history.getTransactionDescription (1), "a");
    EXPECT_EQ (history.getTransactionDescription (2), "d");
    EXPECT_EQ (history.getPosition(), 2u);
    EXPECT_FALSE (history.canRedo());
}

TEST_F (HistoryTest, ClearingUnderClearHistoryIsNotTheInitialPosition)
{
    history.clear ("Clear history");
    EXPECT_FALSE (history.isInInitialPosition());
    history.clear ("New document");
    EXPECT_TRUE (history.isInInitialPosition());
    add ("a");
    EXPECT_FALSE (history.isInInitialPosition());
}

TEST_F (HistoryTest, ClearLeavesOneDummyEntryAtPositionZero)
{
    history.clear ("Start");
    add ("a");
    add ("b");
    history.clear ("Again");
    EXPECT_EQ (history.getNumTransactions(), 1u);
    EXPECT_EQ (history.getPosition(), 0u);
    EXPECT_EQ (history.getTransactionDescription (0), "Again");
}

TEST_F (HistoryTest, MoveToPositionUndoesOrRedoesStepByStep)
{
    history.clear ("Start");
    add ("a");
    add ("b");
    add ("c");
    history.moveToPosition (0);
    EXPECT_EQ (log.joinIntoString (","), "undo c,undo b,undo a");
    history.moveToPosition (2);
    EXPECT_EQ (log.joinIntoString (","), "undo c,undo b,undo a,redo a,redo b");
    EXPECT_EQ (history.getPosition(), 2u);
    log.clear();
    history.moveToPosition (2);
    EXPECT_TRUE (log.isEmpty());
}

TEST_F (HistoryTest, MoveToPositionPastTheEndStopsAtTheLastTransaction)
{
    history.clear ("Start");
    add ("a");
    add ("b");
    history.moveToPosition (0);
    log.clear();
    history.moveToPosition (10);
    EXPECT_EQ (log.joinIntoString (","), "redo a,redo b");
    EXPECT_EQ (history.getPosition(), 2u);
    EXPECT_FALSE (history.canRedo());
    EXPECT_TRUE (history.canUndo());
    log.clear();
    history.moveToPosition (5);
    EXPECT_TRUE (log.isEmpty());
    EXPECT_EQ (history.getPosition(), 2u);
}

TEST_F (HistoryTest, MoveToPositionOfAnEmptyHistoryDoesNothing)
{
    history.moveToPosition (3);
    EXPECT_EQ (history.getPosition(), 0u);
    EXPECT_EQ (history.getNumTransactions(), 0u);
}

TEST_F (HistoryTest, MoveToTransactionFindsItsPositionAndIgnoresStrangers)
{
    history.clear ("Start");
    auto* a = add ("a");
    add ("b");
    history.moveToTransaction (*a);
    EXPECT_EQ (history.getPosition(), 1u);
    DummyTransaction stranger ("x");
    history.moveToTransaction (stranger);
    EXPECT_EQ (history.getPosition(), 1u);
}

TEST_F (HistoryTest, HasBeenPerformedIsTrueUpToThePosition)
{
    history.clear ("Start");
    auto* a = add ("a");
    auto* b = add ("b");
    history.undo();
    EXPECT_TRUE (history.hasBeenPerformed (*a));
    EXPECT_FALSE (history.hasBeenPerformed (*b));
    DummyTransaction stranger;
    EXPECT_FALSE (history.hasBeenPerformed (stranger));
}

TEST_F (HistoryTest, UndoAndRedoPostOneEnvelopEachInTheSendersName)
{
    history.clear ("Start");
    editCount (1);
    receiver.clear();
    history.undo();
    history.redo();
    ASSERT_EQ (receiver.envelops.size(), 2u);
    EXPECT_TRUE (receiver.envelops[0]->getSenderIdentifier()->equals (Integer (1)));
    EXPECT_EQ (receiver.describe(), "MirroringMessage|MirroringMessage");
}

TEST_F (HistoryTest, UndoRestoresTheOlderValueHereAndRedoTheNewerOne)
{
    history.clear ("Start");
    editCount (1);
    editCount (2);
    history.undo();
    EXPECT_EQ (document->count.get(), 1);
    history.undo();
    EXPECT_EQ (document->count.get(), 0);
    history.redo();
    history.redo();
    EXPECT_EQ (document->count.get(), 2);
}

TEST_F (HistoryTest, UndoOfACompositeRunsLastToFirstSoDeletedObjectsComeBackFirst)
{
    history.clear ("Start");
    document->items.append (makeItem ("kept", 4), false);
    const auto before = documentState();
    {
        ScopedTransaction transaction ("Delete", *document, true);
        document->items.remove ((size_t) 0);
    }
    EXPECT_EQ (document->items.size(), 0u);
    history.undo();
    ASSERT_EQ (document->items.size(), 1u);
    EXPECT_EQ (document->items[0]->name.get(), "kept");
    EXPECT_EQ (document->items[0]->value.get(), 4);
    EXPECT_TRUE (State::equals (documentState(), before));
}

TEST_F (HistoryTest, UndoOfACreationRemovesTheObjectAndRedoBringsItBack)
{
    history.clear ("Start");
    const auto before = documentState();
    {
        ScopedTransaction transaction ("Add", *document);
        document->items.append (makeItem ("new", 3));
    }
    const auto after = documentState();
    history.undo();
    EXPECT_TRUE (State::equals (documentState(), before));
    history.redo();
    EXPECT_TRUE (State::equals (documentState(), after));
}

TEST_F (HistoryTest, UndoExcludesAChangedNumberFromMirroringForTwoUpdates)
{
    history.clear ("Start");
    editCount (5);
    history.undo();
    EXPECT_TRUE (space().isInMirroringExclusionList (document->count));
    space().updateMirroring (0.0, 0.05);
    EXPECT_TRUE (space().isInMirroringExclusionList (document->count));
    space().updateMirroring (0.0, 0.05);
    EXPECT_FALSE (space().isInMirroringExclusionList (document->count));
}

TEST_F (HistoryTest, AnItemIsNotExcludedFromMirroringWhenItsStateIsSent)
{
    history.clear ("Start");
    document->items.append (makeItem ("a"), false);
    {
        ScopedTransaction transaction ("Whole", *document->items[0]);
        transaction.addObjectCurrentValue (*document->items[0]);
    }
    history.undo();
    EXPECT_FALSE (space().isInMirroringExclusionList (*document->items[0]));
}

} // namespace tov::test
