#include "TransactionTestSupport.h"
#include <Tov/Message/Mirroring/MirroringMessage.h>
#include <Tov/Message/Transaction/CompositeTransaction.h>
#include <Tov/Message/Transaction/CreateObjectMirroredTransaction.h>
#include <Tov/Message/Transaction/CreateTransactionBuilderImplementation.h>
#include <Tov/Message/Transaction/DestroyObjectMirroredTransaction.h>
#include <Tov/Message/Transaction/DummyTransaction.h>
#include <Tov/Message/Transaction/ScopedBypassTransaction.h>
#include <Tov/Message/Transaction/ScopedTransaction.h>
#include <Tov/Message/Transaction/ScopedVolatileTransaction.h>
#include <Tov/Message/Transaction/TransactionMakerObjectSpaceView.h>
#include <Tov/Message/Transaction/UpdateObjectMirroredTransaction.h>

namespace tov::test
{
namespace
{
CompositeTransaction* lastComposite (const History& history)
{
    return dynamic_cast<CompositeTransaction*> (history.getTransactions().getLast());
}

template <class T>
T* child (const History& history, size_t index)
{
    auto* composite = lastComposite (history);
    return composite != nullptr && index < composite->getTransactions().size()
               ? dynamic_cast<T*> (composite->getTransactions()[index]) : nullptr;
}
} // namespace

//==============================================================================
// What a scope records
using TransactionBuilderTest = TransactionTest;

TEST_F (TransactionBuilderTest, AChangeBecomesOneUpdateInTheHistoryAndIsSentToTheReceiver)
{
    {
        ScopedTransaction transaction ("Rename", *document);
        document->title.set ("Intro");
    }
    ASSERT_EQ (history.getNumTransactions(), 1u);
    EXPECT_EQ (history.getTransactionDescription (0), "Rename");
    auto* update = child<UpdateObjectMirroredTransaction> (history, 0);
    ASSERT_NE (update, nullptr);
    EXPECT_EQ (update->getState()->getString(), "Intro");
    EXPECT_EQ (update->getUndoState()->getString(), "");
    EXPECT_EQ (receiver.describe(), "MirroringMessage");
}

TEST_F (TransactionBuilderTest, SettingTheValueAnObjectAlreadyHasMakesNoTransaction)
{
    document->count.set (4, false);
    {
        ScopedTransaction transaction ("Same", *document);
        document->count.set (5);
        document->count.set (4);
    }
    EXPECT_EQ (history.getNumTransactions(), 0u);
    EXPECT_TRUE (receiver.envelops.empty());
}

TEST_F (TransactionBuilderTest, TwoConsecutiveChangesOfOneObjectMakeOneUpdate)
{
    {
        ScopedTransaction transaction ("Twice", *document);
        document->count.set (1);
        document->count.set (2);
    }
    ASSERT_EQ (lastComposite (history)->getTransactions().size(), 1u);
    auto* update = child<UpdateObjectMirroredTransaction> (history, 0);
    EXPECT_EQ (update->getState()->getInteger(), 2);
    EXPECT_EQ (update->getUndoState()->getInteger(), 0);
}

TEST_F (TransactionBuilderTest, ChangesToABAMakeThreeEntriesAndTheThirdUndoesToWhatTheFirstLeft)
{
    {
        ScopedTransaction transaction ("ABA", *document);
        document->count.set (1);
        document->title.set ("b");
        document->count.set (2);
    }
    ASSERT_EQ (lastComposite (history)->getTransactions().size(), 3u);
    auto* third = child<UpdateObjectMirroredTransaction> (history, 2);
    ASSERT_NE (third, nullptr);
    EXPECT_EQ (third->getState()->getInteger(), 2);
    EXPECT_EQ (third->getUndoState()->getInteger(), 1);
}

TEST_F (TransactionBuilderTest, AnObjectCreatedThenChangedIsSentWithItsFinalValue)
{
    {
        ScopedTransaction transaction ("Add", *document);
        auto* item = makeItem ("new", 1);
        document->items.append (item);
        item->value.set (7);
    }
    auto* creation = child<CreateObjectMirroredTransaction> (history, 0);
    ASSERT_NE (creation, nullptr);
    ASSERT_NE (creation->getState(), nullptr);
    EXPECT_EQ (creation->getState()->getVariableStateByName ("value")->getInteger(), 7);
}

TEST_F (TransactionBuilderTest, AnObjectCreatedAndDeletedInOneTransactionHasACreateAndADestroyEntry)
{
    {
        ScopedTransaction transaction ("Flash", *document);
        document->items.append (makeItem ("brief"));
        document->items.remove ((size_t) 0);
    }
    auto* composite = lastComposite (history);
    ASSERT_NE (composite, nullptr);
    int creations = 0, destructions = 0;
    for (auto* entry : composite->getTransactions())
    {
        creations += dynamic_cast<CreateObjectMirroredTransaction*> (entry) != nullptr ? 1 : 0;
        destructions += dynamic_cast<DestroyObjectMirroredTransaction*> (entry) != nullptr ? 1 : 0;
    }
    EXPECT_EQ (creations, 1);
    EXPECT_EQ (destructions, 1);
    EXPECT_NE (dynamic_cast<DestroyObjectMirroredTransaction*> (composite->getTransactions().getLast()), nullptr);
}

TEST_F (TransactionBuilderTest, DestructionsGoToTheEndOfTheComposite)
{
    document->items.append (makeItem ("old"), false);
    {
        ScopedTransaction transaction ("Replace", *document);
        document->items.remove ((size_t) 0);
        document->title.set ("after");
    }
    EXPECT_EQ (describeLastTransaction().upToFirstOccurrenceOf (" ", false, false), "Update");
    EXPECT_NE (child<DestroyObjectMirroredTransaction> (history, lastComposite (history)->getTransactions().size() - 1), nullptr);
}

TEST_F (TransactionBuilderTest, AnInternalVariableIsNotRecordedUnlessStored)
{
    {
        ScopedTransaction transaction ("Hidden", *document);
        document->hidden.set (3);
    }
    EXPECT_EQ (history.getNumTransactions(), 0u);
}

TEST_F (TransactionBuilderTest, AWeakPointerThatBecomesNullIsNotRecordedUnlessStored)
{
    auto* item = makeItem ("target");
    document->featured.set (item, false);
    document->link.set (item, false);
    {
        ScopedTransaction transaction ("Unlink", document->items);
        document->link.reset();
    }
    EXPECT_EQ (history.getNumTransactions(), 0u);
}

TEST_F (TransactionBuilderTest, WithoutEnabledTransactionsScopesDoNothingAndEditsStillHappen)
{
    space().disableTransactions();
    {
        ScopedTransaction transaction ("Off", *document);
        EXPECT_EQ (transaction.getBuilder(), nullptr);
        document->count.set (9);
    }
    EXPECT_EQ (document->count.get(), 9);
    EXPECT_EQ (history.getNumTransactions(), 0u);
    EXPECT_EQ (space().startTransaction ("Off", *document), nullptr);
}

TEST_F (TransactionBuilderTest, AnObjectWithoutSpaceMakesAScopeThatDoesNothing)
{
    Integer loose;
    ScopedTransaction transaction ("Loose", loose);
    EXPECT_EQ (transaction.getBuilder(), nullptr);
    loose.set (3);
}

TEST_F (TransactionBuilderTest, WithoutHistoryTheTransactionIsSentAndDropped)
{
    service.history = nullptr;
    {
        ScopedTransaction transaction ("Unkept", *document);
        document->count.set (2);
    }
    EXPECT_EQ (history.getNumTransactions(), 0u);
    EXPECT_EQ (receiver.describe(), "MirroringMessage");
}

TEST_F (TransactionBuilderTest, TheEnvelopIsSentInTheNameOfTheSenderTarget)
{
    {
        ScopedTransaction transaction ("Named", *document);
        document->count.set (2);
    }
    ASSERT_EQ (receiver.envelops.size(), 1u);
    auto* sender = receiver.envelops[0]->getSenderIdentifier();
    ASSERT_NE (sender, nullptr);
    EXPECT_TRUE (sender->equals (Integer (1)));
}

TEST_F (TransactionBuilderTest, AHistoryGetsTheMakersTargets)
{
    {
        ScopedTransaction transaction ("Targets", *document);
        document->count.set (2);
    }
    EXPECT_EQ (history.getReceiverMessageTarget(), &receiver);
    EXPECT_EQ (history.getSenderPeer(), editor->getIncomingMessageTarget());
}

TEST_F (TransactionBuilderTest, ANestedScopeBecomesAChildOfTheOuterOne)
{
    {
        ScopedTransaction outer ("Outer", *document);
        document->count.set (1);
        {
            ScopedTransaction inner ("Inner", *document);
            document->title.set ("x");
        }
        document->level.set (0.5);
    }
    ASSERT_EQ (history.getNumTransactions(), 1u);
    auto* composite = lastComposite (history);
    ASSERT_EQ (composite->getTransactions().size(), 3u);
    EXPECT_EQ (composite->getTransactions()[1]->toString(), "Inner");
    EXPECT_EQ (receiver.envelops.size(), 1u);
}

TEST_F (TransactionBuilderTest, AChangePendingInTheOuterScopeIsRecordedBeforeANestedScopeChangesItAgain)
{
    history.clear ("Start");
    {
        ScopedTransaction outer ("Outer", *document);
        document->title.set ("a");
        {
            ScopedTransaction inner ("Inner", *document);
            document->title.set ("b");
        }
    }
    EXPECT_EQ (describeLastTransaction(), "Update String \"a\"|Inner");
    history.undo();
    EXPECT_EQ (document->title.get(), "");
}

TEST_F (TransactionBuilderTest, AnItemAddedOutsideAndRemovedInsideANestedScopeIsGoneAfterUndo)
{
    history.clear ("Start");
    const auto before = documentState();
    {
        ScopedTransaction outer ("Outer", *document);
        document->items.append (makeItem ("new"));
        {
            ScopedTransaction inner ("Inner", *document);
            document->items.remove ((size_t) 0);
        }
    }
    history.undo();
    EXPECT_EQ (document->items.size(), 0u);
    EXPECT_TRUE (State::equals (documentState(), before));
}

TEST_F (TransactionBuilderTest, AVolatileScopeInsideANormalOneBecomesAChildNamedVolatile)
{
    {
        ScopedTransaction outer ("Outer", *document);
        {
            ScopedVolatileTransaction inner (*document);
            EXPECT_TRUE (space().isInsideNonVolatileTransaction());
            document->count.set (3);
        }
    }
    ASSERT_EQ (history.getNumTransactions(), 1u);
    EXPECT_EQ (describeLastTransaction(), "Volatile");
}

TEST_F (TransactionBuilderTest, ANormalScopeInsideAVolatileOneBehavesAsVolatile)
{
    {
        ScopedVolatileTransaction outer (*document);
        {
            ScopedTransaction inner ("Inner", *document);
            EXPECT_TRUE (space().isInsideVolatileTransaction());
            document->count.set (3);
        }
    }
    EXPECT_EQ (history.getNumTransactions(), 0u);
    // The inner volatile builder sends its change, and the outer one, which heard it too, again.
    EXPECT_EQ (receiver.describe(), "MirroringMessage|MirroringMessage");
}

TEST_F (TransactionBuilderTest, AVolatileScopeSendsEachChangedObjectOnceWhenItCloses)
{
    {
        ScopedVolatileTransaction transaction (*document);
        document->count.set (1);
        document->count.set (2);
        document->title.set ("t");
        EXPECT_TRUE (receiver.envelops.empty());
    }
    EXPECT_EQ (history.getNumTransactions(), 0u);
    EXPECT_EQ (receiver.describe(), "MirroringMessage MirroringMessage");
}

TEST_F (TransactionBuilderTest, AVolatileScopeWithoutChangesSendsNothing)
{
    {
        ScopedVolatileTransaction transaction (*document);
    }
    EXPECT_TRUE (receiver.envelops.empty());
}

TEST_F (TransactionBuilderTest, AVolatileScopeForgetsObjectsDeletedBeforeItCloses)
{
    document->items.append (makeItem ("doomed"), false);
    {
        ScopedVolatileTransaction transaction (*document);
        document->items[0]->value.set (4);
        document->items.remove ((size_t) 0);
    }
    ASSERT_EQ (receiver.envelops.size(), 1u);
    EXPECT_EQ (receiver.envelops[0]->getNumMessages(), 1u);   // the vector alone
}

TEST_F (TransactionBuilderTest, AVolatileScopeChecksWhereItsChangesLie)
{
    document->items.append (makeItem ("a"), false);
    ScopedVolatileTransaction transaction (*document);
    document->items[0]->value.set (4);
    EXPECT_TRUE (transaction.checkThatAllChangedObjectsAreChildOf (*document->items[0]));
    document->count.set (1);
    EXPECT_FALSE (transaction.checkThatAllChangedObjectsAreChildOf (*document->items[0]));
    EXPECT_TRUE (transaction.checkThatAllChangedObjectsAreChildOf (*document));
    EXPECT_TRUE (ScopedVolatileTransaction ((ObjectSpace*) nullptr).checkThatAllChangedObjectsAreChildOf (*document));
}

TEST_F (TransactionBuilderTest, ANormalScopeInsideABypassWorksButRecordsNothingAndPushesNull)
{
    ScopedBypassTransaction bypass;
    {
        ScopedTransaction transaction ("Ignored", *document);
        ASSERT_NE (transaction.getBuilder(), nullptr);
        transaction.store (*document, true);
        transaction.flush();
        auto& stack = space().getTransactionMaker()->getTransactionBuilders();
        ASSERT_EQ (stack.size(), 2u);
        EXPECT_EQ (stack[0], nullptr);
        EXPECT_EQ (stack[1], nullptr);
        document->count.set (5);
    }
    EXPECT_EQ (space().getTransactionMaker()->getTransactionBuilders().size(), 1u);
    EXPECT_EQ (history.getNumTransactions(), 0u);
    EXPECT_TRUE (receiver.envelops.empty());
}

TEST_F (TransactionBuilderTest, ABypassAloneCountsAsNonVolatile)
{
    space().startBypassTransaction();
    EXPECT_TRUE (space().isInsideNonVolatileTransaction());
    EXPECT_FALSE (space().isInsideVolatileTransaction());
    space().finishBypassTransaction();
    EXPECT_FALSE (space().isInsideNonVolatileTransaction());
}

TEST_F (TransactionBuilderTest, ScopedBypassTransactionsNestThroughTheService)
{
    {
        ScopedBypassTransaction outer;
        EXPECT_TRUE (service.isInsideBypassTransaction());
        {
            ScopedBypassTransaction inner;
            EXPECT_EQ (space().getTransactionMaker()->getTransactionBuilders().size(), 1u);
        }
        EXPECT_TRUE (service.isInsideBypassTransaction());
    }
    EXPECT_FALSE (service.isInsideBypassTransaction());
    EXPECT_TRUE (space().getTransactionMaker()->getTransactionBuilders().empty());
}

TEST_F (TransactionBuilderTest, AnEmptyScopePostsNothingAndAddsNothing)
{
    {
        ScopedTransaction transaction ("Nothing", *document);
    }
    EXPECT_EQ (history.getNumTransactions(), 0u);
    EXPECT_TRUE (receiver.envelops.empty());
}

TEST_F (TransactionBuilderTest, AddObjectCurrentValueSendsTheValueAndUndoKeepsIt)
{
    document->count.set (6, false);
    {
        ScopedTransaction transaction ("Resend", *document);
        transaction.addObjectCurrentValue (document->count);
    }
    auto* update = child<UpdateObjectMirroredTransaction> (history, 0);
    ASSERT_NE (update, nullptr);
    EXPECT_EQ (update->getState(), update->getUndoState());
}

TEST_F (TransactionBuilderTest, AddObjectWithUndoValueRecordsTheGivenOlderValue)
{
    document->count.set (8, false);
    {
        ScopedTransaction transaction ("Dragged", *document);
        transaction.addObjectWithUndoValue (document->count, Integer (3));
    }
    auto* update = child<UpdateObjectMirroredTransaction> (history, 0);
    ASSERT_NE (update, nullptr);
    EXPECT_EQ (update->getState()->getInteger(), 8);
    EXPECT_EQ (update->getUndoState()->getInteger(), 3);
}

TEST_F (TransactionBuilderTest, StoreValueForTransactionGoesToTheFirstNormalBuilder)
{
    document->items.append (makeItem ("a", 1), false);
    ScopedTransaction transaction ("Stored", *document->items[0]);
    space().storeValueForTransaction (document->count, false, false);
    auto* builder = dynamic_cast<CreateTransactionBuilderImplementation*> (transaction.getBuilder());
    ASSERT_NE (builder, nullptr);
    EXPECT_NE (builder->getUndoValue (document->count), nullptr);
}

TEST_F (TransactionBuilderTest, ADeepStoreGivesEveryOwnedObjectItsUndoValueInShallowForm)
{
    document->items.append (makeItem ("a", 1), false);
    ScopedTransaction transaction ("Deep", *document, true);
    auto* builder = dynamic_cast<CreateTransactionBuilderImplementation*> (transaction.getBuilder());
    ASSERT_NE (builder, nullptr);
    auto* item = document->items[0];
    ASSERT_NE (builder->getUndoValue (item->value), nullptr);
    EXPECT_EQ (builder->getUndoValue (item->value)->getInteger(), 1);
    auto vectorState = builder->getUndoValue (document->items);
    ASSERT_NE (vectorState, nullptr);
    EXPECT_EQ (vectorState->getVariableStateRef (0).getType(), StateType::weakPointerType);
    EXPECT_EQ (vectorState->getVariableStateRef (0).getUniqueIdentifierValue(), item->getUniqueIdentifier());
}

TEST_F (TransactionBuilderTest, AChangedOwnedPointerHasItsTargetsIdentityAsUndoValue)
{
    auto* first = makeItem ("first");
    document->featured.set (first, false);
    const auto firstIdentifier = first->getUniqueIdentifier();
    {
        ScopedTransaction transaction ("Swap", *document, true);
        document->featured.set (makeItem ("second"));
    }
    UpdateObjectMirroredTransaction* update = nullptr;
    for (auto* entry : lastComposite (history)->getTransactions())
        if (auto* found = dynamic_cast<UpdateObjectMirroredTransaction*> (entry))
            update = found;
    ASSERT_NE (update, nullptr);
    EXPECT_EQ (update->getUndoState()->getUniqueIdentifierValue(), firstIdentifier);
}

TEST_F (TransactionBuilderTest, AnUnchangedContextKeepsTheSnapshotOfThePreviousScope)
{
    std::shared_ptr<State> first, second;
    {
        ScopedTransaction transaction ("First", *document);
        first = dynamic_cast<CreateTransactionBuilderImplementation*> (transaction.getBuilder())->getUndoValue (*document);
        document->items.append (makeItem ("a"));
    }
    {
        ScopedTransaction transaction ("Second", *document);
        second = dynamic_cast<CreateTransactionBuilderImplementation*> (transaction.getBuilder())->getUndoValue (*document);
    }
    {
        ScopedTransaction transaction ("Third", *document);
        EXPECT_EQ (dynamic_cast<CreateTransactionBuilderImplementation*> (transaction.getBuilder())->getUndoValue (*document), second);
    }
    ASSERT_NE (first, nullptr);
    ASSERT_NE (second, nullptr);
    EXPECT_NE (second, first);
    EXPECT_EQ (first->getVariableStateByName ("items")->getNumVariables(), 0u);
    EXPECT_EQ (second->getVariableStateByName ("items")->getNumVariables(), 1u);
}

TEST_F (TransactionBuilderTest, AContextChangedWithoutNotificationIsStoredAsItIsNow)
{
    {
        ScopedTransaction transaction ("First", *document);
        document->count.set (1);
    }
    document->title.set ("Quiet", false);
    {
        ScopedTransaction transaction ("Second", *document);
        document->title.set ("Loud");
    }
    auto* update = child<UpdateObjectMirroredTransaction> (history, 0);
    ASSERT_NE (update, nullptr);
    EXPECT_EQ (update->getState()->getString(), "Loud");
    EXPECT_EQ (update->getUndoState()->getString(), "Quiet");
    history.undo();
    EXPECT_EQ (document->title.get(), "Quiet");
}

// The third scope compares the list with what the second found in it: an element swapped for
// another without notification, the count unchanged, is seen all the same.
TEST_F (TransactionBuilderTest, AListOfTheContextChangedWithoutNotificationIsStoredAsItIsNow)
{
    document->items.append (makeItem ("a"));
    document->items.append (makeItem ("b"));
    for (const char* description : { "First", "Second" })
    {
        ScopedTransaction transaction (description, *document);
        document->count.set (document->count.get() + 1);
    }
    auto* quiet = makeItem ("quiet");
    document->items.set ({ document->items.get (0), quiet }, false);
    {
        ScopedTransaction transaction ("Third", *document);
        document->items.removeLast();
    }
    ASSERT_EQ (document->items.size(), 1u);
    history.undo();
    ASSERT_EQ (document->items.size(), 2u);
    EXPECT_EQ (document->items.get (1), quiet);
    EXPECT_EQ (document->items.get (1)->name.get(), "quiet");
}

//==============================================================================
// Texts
using TransactionTextTest = TransactionTest;

TEST_F (TransactionTextTest, CompositeAndDummyTransactionsAreNamedByTheirDescription)
{
    EXPECT_EQ (CompositeTransaction().toString(), "Composite Transaction");
    EXPECT_EQ (CompositeTransaction ("Move").toString(), "Move");
    EXPECT_EQ (DummyTransaction ("Start").toString(), "Start");
    EXPECT_EQ (DummyTransaction().toString(), "");
}

TEST_F (TransactionTextTest, MirroredTransactionsDescribeTheirStates)
{
    EXPECT_EQ (CreateObjectMirroredTransaction().toString(), "Create Object");
    auto* item = makeItem ("n", 2);
    {
        ScopedTransaction transaction ("Edit", *document);
        document->count.set (12);
        document->items.append (item);
    }
    const auto identifier = item->getUniqueIdentifier().to64BitsHexadecimalString();
    EXPECT_EQ (describeLastTransaction(), "Update Integer 12|Create Item {name = \"n\", value = 2, amount = 0.} " + identifier
                                              + "|Update OwnedVector(Item) {-> " + identifier + "}");
    {
        ScopedTransaction transaction ("Delete", *document);
        document->items.remove ((size_t) 0);
    }
    EXPECT_EQ (describeLastTransaction(), "Update OwnedVector(Item) void|Delete Item {name = \"n\", value = 2, amount = 0.}");
}

// Its state is read when the transaction is performed, and by then the object is gone; the
// list that held it for a while ends as it began, so it records nothing.
TEST_F (TransactionTextTest, AnObjectCreatedAndDeletedInOneTransactionIsCreatedWithoutAState)
{
    {
        ScopedTransaction transaction ("Edit", *document);
        document->count.set (12);
        document->items.append (makeItem ("n", 2));
        document->items.remove ((size_t) 0);
    }
    EXPECT_EQ (describeLastTransaction(), "Update Integer 12|Create Object|Delete Item {name = \"n\", value = 2, amount = 0.}");
}

} // namespace tov::test
