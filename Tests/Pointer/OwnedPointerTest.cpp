#include "PointerTestSupport.h"
#include "Support/DeletionWatcher.h"
#include "Support/RecordingExecutionContext.h"
#include <Tov/Core/StateObjectExporter.h>

using namespace tov;
using namespace tov::test;

namespace
{
class OwnedPointerTest : public PointerTest {};

Owned<Node> makeOwnedNode (const juce::String& name, int64_t value = 0)
{
    ensurePointerTestLibrary();
    auto node = createOwned<Node>();
    node->name.set (name, false);
    node->value.set (value, false);
    return node;
}
} // namespace

TEST_F (OwnedPointerTest, HoldsAndCountsItsObjectAndIsItsParent)
{
    auto owner = makeOwnedNode ("owner");
    Node* child = makeNode ("child");
    owner->child.set (child);
    EXPECT_EQ (owner->child.get(), child);
    EXPECT_EQ (child->getParent(), &owner->child);
    EXPECT_EQ (child->getReferenceCount(), 1u);
    EXPECT_EQ (owner->child->name.get(), "child");
}

TEST_F (OwnedPointerTest, SettingTheSamePointerDoesNothing)
{
    auto owner = makeOwnedNode ("owner");
    Node* child = makeNode ("child");
    owner->child.set (child);
    ChangeCounter changes (owner->child);
    owner->child.set (child);
    EXPECT_EQ (changes.count, 0);
    EXPECT_EQ (child->getReferenceCount(), 1u);
}

TEST_F (OwnedPointerTest, ResetDeletesAStrictlyOwnedObject)
{
    auto owner = makeOwnedNode ("owner");
    Node* child = makeNode ("child");
    owner->child.set (child);
    DeletionWatcher watcher (*child);
    owner->child.reset();
    EXPECT_TRUE (watcher.deleted);
    EXPECT_EQ (owner->child.get(), nullptr);
}

TEST_F (OwnedPointerTest, ReleaseOfAnObjectWithACountOfZeroLeavesTheCountAtZero)
{
    auto owner = makeOwnedNode ("owner");
    Node* child = makeNode ("child");
    owner->child.set (child);
    child->decrementReferenceCounter (false);
    ASSERT_EQ (child->getReferenceCount(), 0u);

    ChangeCounter changes (owner->child);
    EXPECT_EQ (owner->child.release(), child);
    EXPECT_EQ (child->getReferenceCount(), 0u);
    EXPECT_EQ (child->getParent(), nullptr);
    EXPECT_EQ (owner->child.get(), nullptr);
    EXPECT_EQ (changes.count, 1);
    child->deleteThis();
}

TEST_F (OwnedPointerTest, ReleaseGivesUpOneCountWithoutDeleting)
{
    auto owner = makeOwnedNode ("owner");
    Node* child = makeNode ("child");
    owner->child.set (child);
    EXPECT_EQ (owner->child.release(), child);
    EXPECT_FALSE (Object::hasBeenDeleted (child));
    EXPECT_EQ (child->getReferenceCount(), 0u);
    EXPECT_EQ (owner->child.release(), nullptr);
    child->deleteThis();
}

TEST_F (OwnedPointerTest, ASharedObjectSurvivesOneResetWithoutItsParent)
{
    auto first = makeOwnedNode ("first");
    auto second = makeOwnedNode ("second");
    Node* shared = makeNode ("shared");
    first->child.set (shared);
    second->child.set (shared);
    EXPECT_EQ (shared->getParent(), &second->child);
    EXPECT_EQ (shared->getReferenceCount(), 2u);
    EXPECT_FALSE (ObjectOwnedPointer::isStrictlyOwnedBy (shared, &second->child));

    second->child.reset();
    EXPECT_FALSE (Object::hasBeenDeleted (shared));
    EXPECT_EQ (shared->getParent(), nullptr);
    EXPECT_EQ (shared->getReferenceCount(), 1u);
    EXPECT_EQ (first->child.get(), shared);
}

TEST_F (OwnedPointerTest, ASharedObjectIsNotDeinitialisedThroughAnOwnerThatDoesNotOwnItAlone)
{
    Node* root = makeNode ("root");
    auto& space = makeSpace ("scene", root);
    Node* shared = makeNode ("shared");
    root->child.set (shared);
    ASSERT_TRUE (shared->isObjectInitialized());

    auto other = makeOwnedNode ("other");
    other->sibling.set (shared);
    other->sibling.callDeinitializeObject();
    EXPECT_TRUE (shared->isObjectInitialized());

    root->child.reset();
    EXPECT_TRUE (ObjectOwnedPointer::isStrictlyOwnedBy (shared, &other->sibling) || shared->getParent() == nullptr);
    EXPECT_EQ (space.getRootObject(), root);
}

TEST_F (OwnedPointerTest, AnObjectSetIntoAnInitialisedPointerIsInitialisedInItsSpace)
{
    Node* root = makeNode ("root");
    auto& space = makeSpace ("scene", root);
    Node* child = makeNode ("child");
    root->child.set (child);
    EXPECT_TRUE (child->isObjectInitialized());
    EXPECT_EQ (child->getSpace(), &space);
    EXPECT_EQ (space.getObject (child->getUniqueIdentifier()), child);
}

TEST_F (OwnedPointerTest, CopyBetweenPointersOfOneObjectClassKeepsTheTargetsObject)
{
    auto source = makeOwnedNode ("source");
    auto target = makeOwnedNode ("target");
    source->child.set (makeNode ("a", 1));
    Node* kept = makeNode ("b", 2);
    target->child.set (kept);

    source->child.copyTo (target->child);
    EXPECT_EQ (target->child.get(), kept);
    EXPECT_EQ (kept->name.get(), "a");
    EXPECT_EQ (kept->value.get(), 1);
}

TEST_F (OwnedPointerTest, CopyIntoAnEmptyPointerGivesItAClone)
{
    auto source = makeOwnedNode ("source");
    auto target = makeOwnedNode ("target");
    source->child.set (makeNode ("a", 1));
    source->child.copyTo (target->child);
    ASSERT_NE (target->child.get(), nullptr);
    EXPECT_NE (target->child.get(), source->child.get());
    EXPECT_EQ (target->child->name.get(), "a");
    EXPECT_EQ (target->child->getParent(), &target->child);
}

TEST_F (OwnedPointerTest, PointersToEqualButDistinctObjectsAreNotEqual)
{
    auto a = makeOwnedNode ("a");
    auto b = makeOwnedNode ("b");
    a->child.set (makeNode ("same", 5));
    b->child.set (makeNode ("same", 5));
    EXPECT_FALSE (a->child.equals (b->child));
    IsReadonlyPredicate nothingIgnored (false);
    EXPECT_TRUE (a->child.equalsIgnoringVariables (b->child, nothingIgnored));

    b->child->value.set (6);
    EXPECT_FALSE (a->child.equalsIgnoringVariables (b->child, nothingIgnored));
    a->child.reset();
    b->child.reset();
    EXPECT_TRUE (a->child.equals (b->child));
}

TEST_F (OwnedPointerTest, ItsClassNamesTheTargetClass)
{
    auto owner = makeOwnedNode ("owner");
    EXPECT_EQ (owner->child.getClass()->getName(), "OwnedPointer(Node)");
    EXPECT_EQ (owner->child.getTargetClass(), &Node::staticClass);
    EXPECT_EQ (owner->child.getClass()->getFriendlyName(), "Child Node");
    ObjectOwnedPointer plain;
    EXPECT_EQ (plain.getTargetClass(), &Object::staticClass);
    plain.setTargetClass (&Node::staticClass);
    EXPECT_EQ (plain.getClass(), owner->child.getClass());
}

TEST_F (OwnedPointerTest, ToStringShowsThePointedObjectInAngleBrackets)
{
    auto owner = makeOwnedNode ("owner");
    EXPECT_EQ (owner->child.toString(), "<>");
    owner->child.set (makeNode ("leaf", 3));
    EXPECT_EQ (owner->child.toString(), "<Node(leaf, 3, <>, <>, nil)>");
}

TEST_F (OwnedPointerTest, SavesThePointedObjectAndLoadsItBack)
{
    auto owner = makeOwnedNode ("owner");
    owner->child.set (makeNode ("leaf", 3));
    auto state = owner->makeState();
    EXPECT_EQ (state->saveToString(), "{name = \"owner\", child = => {name = \"leaf\", value = 3}}\n");

    auto copy = makeOwnedNode ("");
    ToStringExecutionContext context;
    ASSERT_TRUE (copy->loadFromState (context, state));
    ASSERT_NE (copy->child.get(), nullptr);
    EXPECT_EQ (copy->child->name.get(), "leaf");
    EXPECT_EQ (copy->child->value.get(), 3);
}

TEST_F (OwnedPointerTest, LoadingIntoASetPointerKeepsItsObject)
{
    auto owner = makeOwnedNode ("owner");
    Node* kept = makeNode ("old", 1);
    owner->child.set (kept);
    auto source = makeOwnedNode ("owner");
    source->child.set (makeNode ("new", 2));

    ToStringExecutionContext context;
    ASSERT_TRUE (owner->loadFromState (context, source->makeState()));
    EXPECT_EQ (owner->child.get(), kept);
    EXPECT_EQ (kept->name.get(), "new");
}

TEST_F (OwnedPointerTest, IsSetPredicateAcceptsOnlyPointersWithAnObject)
{
    auto owner = makeOwnedNode ("owner");
    OwnedPointerIsSet isSet;
    EXPECT_FALSE (isSet.doesAcceptObject (&owner->child));
    owner->child.set (makeNode ("leaf"));
    EXPECT_TRUE (isSet.doesAcceptObject (&owner->child));
    EXPECT_FALSE (isSet.doesAcceptObject (owner.get()));
}

TEST_F (OwnedPointerTest, ObjectPathsCountZeroThroughAnOwnedPointer)
{
    auto owner = makeOwnedNode ("owner");
    Node* child = makeNode ("child");
    owner->child.set (child);
    std::vector<uint64_t> path;
    child->value.getObjectPath (path);
    EXPECT_EQ (path, (std::vector<uint64_t> { 2, 0, 1 }));
}

TEST_F (OwnedPointerTest, RecursiveWalksFollowOwnedPointersOnlyWhenAsked)
{
    auto owner = makeOwnedNode ("owner");
    Node* child = makeNode ("child");
    owner->child.set (child);
    EqualsObjectPredicate notTheChild (child);
    struct Not : ObjectPredicate
    {
        ObjectPredicate& inner;
        explicit Not (ObjectPredicate& inner) : inner (inner) {}
        bool doesAcceptObject (Object* object) override { return ! inner.doesAcceptObject (object); }
    } everythingButTheChild (notTheChild);
    EXPECT_TRUE (owner->acceptVariablesRecursively (everythingButTheChild, false));
    EXPECT_FALSE (owner->acceptVariablesRecursively (everythingButTheChild, true));
}

TEST_F (OwnedPointerTest, AChildTakesItsPointersFriendlyName)
{
    auto owner = makeOwnedNode ("owner");
    Node* child = makeNode ("");
    owner->child.set (child);
    EXPECT_EQ (child->getAutomaticFriendlyName(), owner->child.getFriendlyName());
}

TEST (NativeHandleTest, ShowsNullForZeroAndHexadecimalOtherwise)
{
    NativeHandle handle;
    EXPECT_EQ (handle.toString(), "null");
    handle.set (0xbeef);
    EXPECT_EQ (handle.toString(), "Native Handle (beef)");
}

TEST (NativeHandleTest, SavesHexadecimalTextAndLoadsIt)
{
    NativeHandle handle (0x1234abcd);
    auto state = StateObjectExporter::make (handle, 0, false);
    EXPECT_EQ (state->saveToString(), "\"1234abcd\"\n");
    NativeHandle loaded;
    ToStringExecutionContext context;
    ASSERT_TRUE (loaded.loadFromState (context, state));
    EXPECT_EQ (loaded.get(), 0x1234abcdu);
}

TEST (NativeHandleTest, CopyNotifies)
{
    NativeHandle source (7), target;
    ChangeCounter changes (target);
    source.copyTo (target);
    EXPECT_EQ (target.get(), 7u);
    EXPECT_EQ (changes.count, 1);
}

TEST_F (OwnedPointerTest, AStateThatPointsAtNothingLoadsAsAnEmptyPointer)
{
    auto holder = makeOwnedNode ("holder");
    holder->child.set (makeNode ("old"), false);
    auto state = std::make_shared<State>();
    state->setOwnedPointer (nullptr);
    tov::testing::RecordingExecutionContext context;
    EXPECT_TRUE (holder->child.loadFromState (context, state));
    EXPECT_EQ (holder->child.get(), nullptr);
    EXPECT_TRUE (context.errors.empty());
}
