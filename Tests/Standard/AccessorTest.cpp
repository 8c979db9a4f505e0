#include "DynamicVariableTestSupport.h"
#include "Message/Transaction/TransactionTestSupport.h"
#include <Tov/Message/Transaction/DefaultTemporalTransaction.h>

using namespace tov;
using namespace tov::test;

namespace
{
/** The document's count, edited through the service's accessor, with a history. */
class AccessorTest : public TransactionTest
{
protected:
    bool classesAreThere = (ensureDynamicVariableTestLibrary(), true);
    Accessor& accessor = service.getDefaultAccessor();

    void SetUp() override
    {
        TransactionTest::SetUp();
        history.clear ("Start");
        document->count.set (10, false);
    }
};
} // namespace

TEST_F (AccessorTest, TheServicesDefaultAccessorServesCodeWithoutOne)
{
    EXPECT_EQ (Accessor::getAccessor (document->count), &accessor);
    EXPECT_EQ (Accessor::getAccessor (*document), &accessor);
}

TEST_F (AccessorTest, ATargetValueWithoutDescriptionMakesNoUndoStep)
{
    accessor.setTargetValue (document->count, Integer (5), {}, nullptr);
    EXPECT_EQ (document->count.get(), 5);
    EXPECT_EQ (history.getNumTransactions(), 1u);
}

TEST_F (AccessorTest, ATargetValueWithDescriptionIsOneUndoStep)
{
    accessor.setTargetValue (document->count, Integer (5), "Set count", nullptr);
    EXPECT_EQ (document->count.get(), 5);
    ASSERT_EQ (history.getNumTransactions(), 2u);

    history.undo();
    EXPECT_EQ (document->count.get(), 10);
}

TEST_F (AccessorTest, AReadOnlyTargetChangesNothing)
{
    Owned<Gauge> gauge (static_cast<Gauge*> (Gauge::staticClass.createObject()));
    gauge->level.set (3, false);
    ASSERT_FALSE (gauge->level.isEditable());

    accessor.setTargetValue (gauge->level, Integer (5), {}, nullptr);
    accessor.setTargetValue (gauge->level, Integer (6), "Set level", nullptr);

    EXPECT_EQ (gauge->level.get(), 3);
    EXPECT_EQ (gauge->level.getNumChanges(), 0u);
    EXPECT_EQ (history.getNumTransactions(), 1u);
}

TEST_F (AccessorTest, TheTargetAloneIsTheTargetOfAChange)
{
    std::vector<Object*> targets;
    accessor.getMultiTargets (document->count, targets);
    EXPECT_EQ (targets, std::vector<Object*> { &document->count });
    std::unique_ptr<TemporalTransaction> made (accessor.createTemporalTransaction (document->count));
    EXPECT_NE (dynamic_cast<DefaultTemporalTransaction*> (made.get()), nullptr);
}

TEST_F (AccessorTest, AKnobEditsItsTargetThroughItsAccessor)
{
    Owned<Knob> knob (static_cast<Knob*> (Knob::staticClass.createObject()));
    knob->setTarget (&document->count, true);
    knob->getAccessor()->setTargetValue (document->count, Integer (12), knob->makeSetTransactionDescription ("12"), nullptr);

    EXPECT_EQ (document->count.get(), 12);
    EXPECT_EQ (knob->numValueChanges, 2);
    EXPECT_EQ (history.getNumTransactions(), 2u);
}
