#include "SelectionTransactionTestSupport.h"
#include "Support/DeletionWatcher.h"
#include <Tov/Message/Transaction/SelectionTemporalTransaction.h>

using namespace tov;
using namespace tov::test;

namespace
{
class SelectionTemporalTransactionTest : public SelectionEditTest
{
protected:
    SelectionTemporalTransaction backups;

    void setAllValues (int64_t value)
    {
        for (auto* each : document->items)
            each->value.set (value, false);
    }
};
} // namespace

TEST_F (SelectionTemporalTransactionTest, StoreBackupClonesEveryTargetWithItsTargetsParentWhateverItsArgument)
{
    backups.getTargets() = { &item (0)->value, &item (2)->value };
    backups.storeBackup (document->count);
    auto* backup = backups.getBackup (item (0)->value);
    ASSERT_NE (backup, nullptr);
    EXPECT_NE (backup, &item (0)->value);
    EXPECT_TRUE (backup->equals (Integer (1)));
    EXPECT_EQ (backup->getParent(), item (0));
    ASSERT_NE (backups.getBackup (item (2)->value), nullptr);
    EXPECT_TRUE (backups.getBackup (item (2)->value)->equals (Integer (3)));
    EXPECT_EQ (backups.getBackup (item (1)->value), nullptr);
    EXPECT_EQ (backups.getBackup (document->count), nullptr);
}

TEST_F (SelectionTemporalTransactionTest, ApplyBackupPutsEveryTargetBack)
{
    backups.getTargets() = valueVariables();
    backups.storeBackup (item (0)->value);
    setAllValues (9);
    backups.applyBackup (item (0)->value);
    EXPECT_EQ (values(), "1,2,3");
}

TEST_F (SelectionTemporalTransactionTest, ClearBackupAndTheDestructorDeleteTheClones)
{
    backups.getTargets() = valueVariables();
    backups.storeBackup (item (0)->value);
    DeletionWatcher first (*backups.getBackup (item (0)->value));
    backups.clearBackup();
    EXPECT_TRUE (first.deleted);
    EXPECT_EQ (backups.getBackup (item (0)->value), nullptr);

    auto* transaction = new SelectionTemporalTransaction();
    transaction->getTargets() = valueVariables();
    transaction->storeBackup (item (0)->value);
    DeletionWatcher last (*transaction->getBackup (item (2)->value));
    delete transaction;
    EXPECT_TRUE (last.deleted);
}

TEST_F (SelectionTemporalTransactionTest, StoringAgainReplacesTheClones)
{
    backups.getTargets() = valueVariables();
    backups.storeBackup (item (0)->value);
    DeletionWatcher earlier (*backups.getBackup (item (1)->value));
    setAllValues (5);
    backups.storeBackup (item (0)->value);
    EXPECT_TRUE (earlier.deleted);
    EXPECT_TRUE (backups.getBackup (item (1)->value)->equals (Integer (5)));
}

TEST_F (SelectionTemporalTransactionTest, ADragOverTheSelectionEndsAsOneUndoStepFromTheStartValues)
{
    std::unique_ptr<TemporalTransaction> drag (accessor.createTemporalTransaction (item (1)->value));
    drag->startTemporalTransaction (accessor, item (1)->value);
    drag->updateTemporalTransaction (Integer (5));
    EXPECT_EQ (values(), "5,5,5");
    drag->updateTemporalTransaction (Integer (6));
    EXPECT_EQ (history.getNumTransactions(), 1u);

    drag->finalizeTemporalTransaction (Integer (7), "Drag value");
    EXPECT_EQ (values(), "7,7,7");
    ASSERT_EQ (history.getNumTransactions(), 2u);
    EXPECT_EQ (history.getTransactionDescription (1), "Drag value in item0, item1 and item2");
    EXPECT_EQ (static_cast<SelectionTemporalTransaction&> (*drag).getBackup (item (0)->value), nullptr);
    history.undo();
    EXPECT_EQ (values(), "1,2,3");
    history.redo();
    EXPECT_EQ (values(), "7,7,7");
}

TEST_F (SelectionTemporalTransactionTest, ResetPutsEveryTargetBackAsOneVolatileChange)
{
    std::unique_ptr<TemporalTransaction> drag (accessor.createTemporalTransaction (item (1)->value));
    drag->startTemporalTransaction (accessor, item (1)->value);
    drag->updateTemporalTransaction (Integer (20));
    receiver.clear();
    drag->resetTemporalTransaction (false);
    EXPECT_EQ (values(), "1,2,3");
    EXPECT_FALSE (drag->hasPreviewValue());
    EXPECT_EQ (receiver.describe(), "MirroringMessage MirroringMessage MirroringMessage");
    EXPECT_EQ (history.getNumTransactions(), 1u);
}
