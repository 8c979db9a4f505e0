#include "PointerTestSupport.h"
#include "Support/ScopedErrorCapture.h"
#include <Tov/Core/StateObjectExporter.h>

using namespace tov;
using namespace tov::test;

namespace
{
class WeakPointerTest : public PointerTest
{
protected:
    Node* root = makeNode ("root");
    Node* target = makeNode ("target", 7);
    NamedSpaces::Space& space = makeSpace ("scene", root);

    void SetUp() override { root->child.set (target); }
};

/** Records what a weak pointer's callbacks meet while they run. */
class GetInsideChanged : public View
{
public:
    GetInsideChanged (ObjectWeakPointer& pointer) : pointer (pointer) { attachObject (&pointer); }
    void changedCallback (Object*, Object*) override { seen = pointer.get(); ++calls; }
    ObjectWeakPointer& pointer;
    Object* seen = reinterpret_cast<Object*> (1);
    int calls = 0;
};
} // namespace

TEST_F (WeakPointerTest, PointsAtItsTargetWithoutOwningIt)
{
    root->link.set (target);
    EXPECT_EQ (root->link.get(), target);
    EXPECT_EQ (target->getReferenceCount(), 1u);
    EXPECT_TRUE (target->hasWeakPointersToThis());
    std::vector<ObjectWeakPointer*> pointers;
    target->getWeakPointersToThis (pointers);
    EXPECT_EQ (pointers, (std::vector<ObjectWeakPointer*> { &root->link }));
}

TEST_F (WeakPointerTest, ANativePointerGetsItsAddressOnDemand)
{
    root->link.set (target);
    EXPECT_TRUE (root->link.getIfAlreadyCached() == target);
    EXPECT_FALSE (root->link.isNativePointer());
    EXPECT_EQ (root->link.getAddress().toString(),
               "scene " + target->getUniqueIdentifier().to64BitsHexadecimalString());
    EXPECT_EQ (root->link.toString(), root->link.getAddress().toString());
}

TEST_F (WeakPointerTest, AfterItsTargetIsDeletedItReadsNullAndKeepsTheAddress)
{
    root->link.set (target);
    const auto address = root->link.getAddress();
    root->child.reset();
    EXPECT_EQ (root->link.getIfAlreadyCached(), nullptr);
    EXPECT_FALSE (root->link.isNull());
    EXPECT_EQ (root->link.getAddress(), address);
    juce::String reason;
    EXPECT_EQ (root->link.get (&reason), nullptr);
    EXPECT_EQ (reason, "Could not find object " + address.getRootUniqueIdentifier().to64BitsHexadecimalString()
                       + " when resolving address " + address.toString());
}

TEST_F (WeakPointerTest, ReconnectsWhenAnObjectComesBackUnderItsAddress)
{
    root->link.setAddressOf (target);
    ASSERT_EQ (root->link.get(), target);
    const auto identifier = target->getUniqueIdentifier();
    root->child.reset();
    Node* again = makeNode ("again");
    again->setUniqueIdentifier (identifier);
    root->child.set (again);
    EXPECT_EQ (root->link.get(), again);
}

TEST_F (WeakPointerTest, GetInsideChangedReturnsTheCacheWithoutResolving)
{
    VariableAddress address;
    ASSERT_TRUE (address.setObject (target, nullptr));
    root->link.set (address, false);
    ASSERT_EQ (root->link.getIfAlreadyCached(), nullptr);

    GetInsideChanged view (root->link);
    root->link.changed();
    EXPECT_EQ (view.calls, 1);
    EXPECT_EQ (view.seen, nullptr);
    EXPECT_EQ (root->link.get(), target);
}

TEST_F (WeakPointerTest, ResolvesLazilyFromAnAddress)
{
    VariableAddress address;
    ASSERT_TRUE (address.setObject (&target->value, nullptr));
    EXPECT_EQ (address.toString(), "scene " + target->getUniqueIdentifier().to64BitsHexadecimalString() + ".value");
    ObjectWeakPointer pointer;
    pointer.set (address, false);
    EXPECT_EQ (pointer.getIfAlreadyCached(), nullptr);
    // A pointer outside any space finds no provider: it resolves once placed under the space.
    EXPECT_EQ (pointer.get(), nullptr);
    root->link.set (VariableAddress (target), false);
    EXPECT_EQ (root->link.get(), target);
}

TEST_F (WeakPointerTest, ATargetOfTheWrongClassResetsThePointerWithAWarning)
{
    ensurePointerTestLibrary();
    auto* stranger = static_cast<Stranger*> (Stranger::staticClass.createObject());
    spaces.add ("other").setRootObject (stranger, true);
    root->link.set (VariableAddress (stranger), false);
    ASSERT_FALSE (root->link.getAddress().isNull());

    const ScopedErrorCapture capture (service.context);

    EXPECT_EQ (root->link.get(), nullptr);
    EXPECT_TRUE (root->link.getAddress().isNull());
    EXPECT_EQ (capture.warnings, (std::vector<juce::String> {
        "Warning: wrong type in weak pointer, expected Node, found Stranger => reseting pointer scene -> root -> Link" }));
}

TEST_F (WeakPointerTest, SetWithAnAddressOfTheCachedObjectOnlyStoresTheAddress)
{
    root->link.set (target);
    ChangeCounter changes (root->link);
    root->link.set (VariableAddress (target));
    EXPECT_EQ (changes.count, 0);
    EXPECT_EQ (root->link.getIfAlreadyCached(), target);
}

TEST_F (WeakPointerTest, SetAddressOfATargetWithoutAnAddressChangesNothing)
{
    root->link.set (target);
    Node* loose = makeNode ("loose");
    root->link.setAddressOf (loose);
    EXPECT_EQ (root->link.get(), target);
    loose->deleteThis();
}

TEST_F (WeakPointerTest, ResetEmptiesBothAddressAndObject)
{
    root->link.set (target);
    ChangeCounter changes (root->link);
    root->link.reset();
    EXPECT_TRUE (root->link.isNull());
    EXPECT_EQ (changes.count, 1);
    root->link.reset();
    EXPECT_EQ (changes.count, 1);
}

TEST_F (WeakPointerTest, EqualsComparesObjectsWhenBothAreResolvedAndAddressesOtherwise)
{
    ObjectWeakPointer a, b;
    EXPECT_TRUE (a.equals (b));
    a.set (target, false);
    b.set (target, false);
    EXPECT_TRUE (a.equals (b));
    b.reset (false);
    b.set (VariableAddress (target), false);
    EXPECT_EQ (b.getIfAlreadyCached(), nullptr);
    EXPECT_TRUE (a.equals (b));
}

TEST_F (WeakPointerTest, CopyToTakesObjectAndAddress)
{
    root->link.set (target);
    ObjectWeakPointer copy;
    root->link.copyTo (copy);
    EXPECT_EQ (copy.getIfAlreadyCached(), target);
    root->link.getAddress();
    root->link.copyTo (copy);
    EXPECT_EQ (copy.getAddress(), root->link.getAddress());
}

TEST_F (WeakPointerTest, SavesItsAddressAndLoadsItBack)
{
    root->link.set (target);
    auto state = StateObjectExporter::make (root->link, 0, false);
    const auto identifier = target->getUniqueIdentifier().to64BitsHexadecimalString();
    EXPECT_EQ (state->saveToString(), "{\"scene\", -> " + identifier + "}\n");

    root->sibling.set (makeNode ("loader"));
    ToStringExecutionContext context;
    ASSERT_TRUE (root->sibling->link.loadFromState (context, state));
    EXPECT_EQ (root->sibling->link.getIfAlreadyCached(), target);
}

TEST_F (WeakPointerTest, APointerWithoutAddressSavesNothingToAState)
{
    ObjectWeakPointer pointer;
    Node* loose = makeNode ("loose");
    pointer.set (loose, false);
    EXPECT_TRUE (pointer.isNativePointer());
    EXPECT_EQ (StateObjectExporter::make (pointer, 0, false)->getType(), StateType::voidType);
    pointer.reset (false);
    loose->deleteThis();
}

TEST_F (WeakPointerTest, ItsClassNamesTheTargetClass)
{
    EXPECT_EQ (root->link.getClass()->getName(), "WeakPointer(Node)");
    EXPECT_EQ (root->link.getTargetClass(), &Node::staticClass);
    EXPECT_EQ (root->link.getClass()->getFriendlyName(), "Node Selector");
}

TEST_F (WeakPointerTest, DetachingAllViewsOfTheTargetResetsThePointer)
{
    root->link.set (target);
    target->detachAllViews();
    EXPECT_TRUE (root->link.isNull());
}

//==============================================================================
// Owners, targets and spaces go in every order; the sanitizer build checks that nothing is
// read after it is freed and nothing leaks.
TEST_F (WeakPointerTest, APointerOutlivesTheSpaceOfItsTarget)
{
    ObjectWeakPointer outside;
    outside.set (target, false);
    outside.getAddress();
    spaces.remove ("scene");
    EXPECT_EQ (outside.getIfAlreadyCached(), nullptr);
    EXPECT_FALSE (outside.isNull());
}

TEST_F (WeakPointerTest, APointerDestroyedBeforeItsTargetLeavesTheTargetWithoutViews)
{
    {
        ObjectWeakPointer pointer;
        pointer.set (target, false);
        EXPECT_TRUE (target->hasWeakPointersToThis());
    }
    EXPECT_FALSE (target->hasWeakPointersToThis());
}

TEST_F (WeakPointerTest, PointersInsideATreeThatPointAtEachOtherDieWithIt)
{
    Node* other = makeNode ("other");
    target->sibling.set (other);
    target->link.set (other);
    other->link.set (target);
    root->link.set (other);
    root->child.reset();
    EXPECT_EQ (root->link.getIfAlreadyCached(), nullptr);
}

TEST (OwnedPointerLifetimeTest, SharedObjectsDieWithTheirLastOwnerInEitherOrder)
{
    ensurePointerTestLibrary();
    for (bool firstGoesFirst : { true, false })
    {
        auto first = createOwned<Node>();
        auto second = createOwned<Node>();
        Node* shared = create<Node>();
        first->child.set (shared);
        second->child.set (shared);
        (firstGoesFirst ? first : second).reset();
        EXPECT_EQ (shared->getReferenceCount(), 1u);
        (firstGoesFirst ? second : first).reset();
    }
}
