#include "Message/Transaction/SelectionTransactionTestSupport.h"
#include "Support/TestValues.h"
#include <Tov/Core/ConverterClassGenerators.h>
#include <Tov/Message/Transaction/SelectionTemporalTransaction.h>

using namespace tov;
using namespace tov::test;

namespace
{
/** A knob whose turns count ten each when they become a number. */
class Dial : public Object
{
public:
    TOV_DECLARE_CLASS (Dial, Object)

    Integer turns;
};

using DialToInteger = Converter<Dial, Integer>;
class DialToIntegerConverter : public DialToInteger
{
public:
    TOV_DECLARE_CLASS (DialToIntegerConverter, DialToInteger)

    bool convert (ExecutionContext&, const Object& source, Object& target, int64_t) const override
    {
        static_cast<Integer&> (target).set (static_cast<const Dial&> (source).turns.get() * 10, true);
        return true;
    }
};

TOV_BEGIN_CLASS (Dial)
    TOV_VARIABLE (turns)
TOV_END_CLASS()

TOV_BEGIN_CLASS (DialToIntegerConverter)
TOV_END_CLASS()

class SelectionAccessorTest : public SelectionEditTest
{
protected:
    void SetUp() override
    {
        SelectionEditTest::SetUp();
        auto* root = Library::getRootLibrary();
        if (root->getLibraryByName ("SelectionAccessorTests") != nullptr)
            return;
        auto* library = new NamedLibrary ("SelectionAccessorTests", {});
        library->addClass<Dial>();
        library->addClass<DialToIntegerConverter>();
        root->addLibrary (library);
    }

    std::vector<Object*> targetsOf (Object& target) const
    {
        std::vector<Object*> targets;
        accessor.getMultiTargets (target, targets);
        return targets;
    }
};
} // namespace

TEST_F (SelectionAccessorTest, TheTargetsAreTheSameVariableInEveryMember)
{
    std::vector<Object*> targets;
    EXPECT_TRUE (accessor.getTargetsFromSelectionAndTarget (item (1)->value, targets));
    EXPECT_EQ (targets, valueVariables());
    EXPECT_EQ (targetsOf (item (2)->value), valueVariables());
}

TEST_F (SelectionAccessorTest, AMemberItselfIsATargetForEachMember)
{
    EXPECT_EQ (targetsOf (*item (0)), (std::vector<Object*> { item (0), item (1), item (2) }));
}

TEST_F (SelectionAccessorTest, OutsideTheMembersWithOneMemberOrWithoutASelectionTheTargetStandsAlone)
{
    std::vector<Object*> targets;
    EXPECT_FALSE (accessor.getTargetsFromSelectionAndTarget (document->count, targets));
    EXPECT_TRUE (targets.empty());
    EXPECT_EQ (targetsOf (document->count), std::vector<Object*> { &document->count });

    selection.setSingleton (item (0));
    EXPECT_EQ (targetsOf (item (0)->value), std::vector<Object*> { &item (0)->value });

    accessor.setSelection (nullptr);
    EXPECT_FALSE (accessor.getTargetsFromSelectionAndTarget (item (0)->value, targets));
    EXPECT_EQ (accessor.getSelection(), nullptr);
}

TEST_F (SelectionAccessorTest, MembersWithoutAnEditableVariableOfThatPathAreLeftOut)
{
    ReadOnlyParent locked;
    Owned<Item> lockedItem (create<Item> (&locked));
    selection.insert (lockedItem.get());
    selection.insert (document);
    EXPECT_EQ (targetsOf (item (0)->value), valueVariables());
}

TEST_F (SelectionAccessorTest, AMemberThatDiedIsNoTarget)
{
    document->items.remove ((size_t) 1, false);
    EXPECT_EQ (targetsOf (item (0)->value), valueVariables());
    EXPECT_EQ (valueVariables().size(), 2u);
}

TEST_F (SelectionAccessorTest, ADescribedValueGoesToEveryMemberInOneUndoStep)
{
    accessor.setTargetValue (item (1)->value, Integer (7), "Set value", nullptr);
    EXPECT_EQ (values(), "7,7,7");
    ASSERT_EQ (history.getNumTransactions(), 2u);
    EXPECT_EQ (history.getTransactionDescription (1), "Set value in item0, item1 and item2");
    history.undo();
    EXPECT_EQ (values(), "1,2,3");
    history.redo();
    EXPECT_EQ (values(), "7,7,7");
}

TEST_F (SelectionAccessorTest, WithOneTargetTheDescriptionStaysAsItIs)
{
    selection.setSingleton (item (0));
    accessor.setValue (item (0)->value, Integer (4), "Set value");
    EXPECT_EQ (values(), "4,2,3");
    ASSERT_EQ (history.getNumTransactions(), 2u);
    EXPECT_EQ (history.getTransactionDescription (1), "Set value");
}

TEST_F (SelectionAccessorTest, WithoutADescriptionTheValueIsSentWithoutAnUndoStep)
{
    accessor.setTargetValue (item (0)->value, Integer (5), "", nullptr);
    EXPECT_EQ (values(), "5,5,5");
    EXPECT_EQ (history.getNumTransactions(), 1u);
    EXPECT_EQ (receiver.describe(), "MirroringMessage MirroringMessage MirroringMessage");
}

TEST_F (SelectionAccessorTest, AReadOnlyTargetChangesNothingInAnyMember)
{
    ReadOnlyParent locked;
    Owned<Item> lockedItem (create<Item> (&locked));
    lockedItem->value.set (8, false);
    selection.insert (lockedItem.get());
    accessor.setTargetValue (lockedItem->value, Integer (9), "Set value", nullptr);
    EXPECT_EQ (values(), "1,2,3");
    EXPECT_EQ (lockedItem->value.get(), 8);
    EXPECT_EQ (history.getNumTransactions(), 1u);
}

TEST_F (SelectionAccessorTest, AValueOfAnotherClassGoesThroughTheConverterThatIsRegistered)
{
    Dial dial;
    dial.turns.set (4, false);
    ASSERT_TRUE (dial.isConvertibleTo (&Integer::staticClass));
    accessor.setTargetValue (item (2)->value, dial, "Turn", nullptr);
    EXPECT_EQ (values(), "40,40,40");
    history.undo();
    EXPECT_EQ (values(), "1,2,3");
}

TEST_F (SelectionAccessorTest, ItsTemporalTransactionCoversTheTargetsOfTheChange)
{
    std::unique_ptr<TemporalTransaction> made (accessor.createTemporalTransaction (item (2)->value));
    auto* transaction = dynamic_cast<SelectionTemporalTransaction*> (made.get());
    ASSERT_NE (transaction, nullptr);
    EXPECT_EQ (transaction->getTargets(), valueVariables());

    accessor.setSelection (nullptr);
    made.reset (accessor.createTemporalTransaction (item (2)->value));
    transaction = dynamic_cast<SelectionTemporalTransaction*> (made.get());
    ASSERT_NE (transaction, nullptr);
    EXPECT_EQ (transaction->getTargets(), std::vector<Object*> { &item (2)->value });
}

TEST_F (SelectionAccessorTest, TheSelectionAndTheReferenceSpaceAreHeldWeakly)
{
    accessor.setReferenceSpace (&space());
    EXPECT_EQ (accessor.getReferenceSpace(), &space());
    {
        ObjectSelection shortLived;
        accessor.setSelection (&shortLived);
        EXPECT_EQ (accessor.getSelection(), &shortLived);
    }
    EXPECT_EQ (accessor.getSelection(), nullptr);
    EXPECT_EQ (targetsOf (item (0)->value), std::vector<Object*> { &item (0)->value });
}
