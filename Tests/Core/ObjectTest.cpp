#include "Support/RecordingSpaceView.h"
#include "Support/ScopedErrorCapture.h"
#include "Support/TestValues.h"
#include <Tov/Core/ObjectSpace.h>
#include <Tov/Standard/ExecutionContext.h>
#include <gtest/gtest.h>

using namespace tov;
using namespace tov::test;


TEST (ObjectTest, ConstructedObjectIsStaticallyAllocated)
{
    TestInteger value;
    EXPECT_TRUE (value.hasStaticAllocationFlag());
    EXPECT_EQ (value.getReferenceCount(), 0xa0a0a0a0u);
    EXPECT_EQ (value.getFlags(), 0u);
    EXPECT_EQ (value.getClassWithoutLookUp(), nullptr);
}

TEST (ObjectTest, IncrementOnStaticObjectGivesOne)
{
    TestInteger value;
    value.incrementReferenceCounter();
    EXPECT_EQ (value.getReferenceCount(), 1u);
    EXPECT_TRUE (value.isReferenceCounted());
    value.setStaticAllocationFlag();
}

TEST (ObjectTest, DecrementWithoutDeleteLeavesObjectAliveAtZero)
{
    Owned<TestInteger> value (create<TestInteger>());
    EXPECT_EQ (value->getReferenceCount(), 0u);
    value->incrementReferenceCounter();
    value->decrementReferenceCounter (false);
    EXPECT_EQ (value->getReferenceCount(), 0u);
    EXPECT_FALSE (Object::hasBeenDeleted (value.get()));
}

TEST (ObjectTest, DecrementOnStaticObjectDoesNothing)
{
    TestInteger value;
    value.decrementReferenceCounter (true);
    EXPECT_EQ (value.getReferenceCount(), 0xa0a0a0a0u);
}

TEST (ObjectTest, RemoveStaticAllocationFlagOnlyRemovesTheSentinel)
{
    TestInteger value;
    value.removeStaticAllocationFlag();
    EXPECT_EQ (value.getReferenceCount(), 0u);
    value.incrementReferenceCounter();
    value.incrementReferenceCounter();
    value.removeStaticAllocationFlag();
    EXPECT_EQ (value.getReferenceCount(), 2u);
    value.setStaticAllocationFlag();
}

TEST (ObjectTest, HasBeenDeletedOfNull)
{
    EXPECT_TRUE (Object::hasBeenDeleted (nullptr));
}

TEST (ObjectTest, DestructorWritesTheDeletedIdentifier)
{
    alignas (TestInteger) unsigned char memory[sizeof (TestInteger)];
    auto* value = new (memory) TestInteger();
    EXPECT_FALSE (Object::hasBeenDeleted (value));
    value->~TestInteger();
    EXPECT_TRUE (Object::hasBeenDeleted (value));
}

TEST (ObjectTest, Flags)
{
    Empty object;
    object.setMarkedFlag (true);
    EXPECT_TRUE (object.hasMarkedFlag());
    EXPECT_EQ (object.getFlags(), 0xF000u);
    object.removeFlag (0x1000);
    EXPECT_FALSE (object.hasMarkedFlag());
    object.removeMarkedFlag();
    EXPECT_EQ (object.getFlags(), 0u);

    object.setFlag (Object::classDefaultObjectFlag);
    EXPECT_TRUE (object.isApplyingVariableConstraints());
    object.removeFlag (Object::classDefaultObjectFlag);
    EXPECT_FALSE (object.isApplyingVariableConstraints());
    object.startApplyingVariableConstraints();
    EXPECT_TRUE (object.isApplyingVariableConstraints());
    object.finishApplyingVariableConstraints();

    object.setPropagateChildrenChanges (true);
    EXPECT_EQ (object.getFlags(), 0x8u);
    object.setFlag (0x8, false);
    EXPECT_FALSE (object.doPropagateChildrenChanges());
}

TEST (ObjectTest, EqualsItselfEvenWhenVariablesWouldNot)
{
    Owned<Rectangle> rectangle (create<Rectangle>());
    Owned<Rectangle> other (create<Rectangle>());
    EXPECT_TRUE (rectangle->equals (*rectangle));
    EXPECT_FALSE (rectangle->equals (*other)); // the Incomparable member never equals another
}

TEST (ObjectTest, EqualsComparesClassesThenVariables)
{
    Owned<Shape> a (create<Shape>()), b (create<Shape>());
    Owned<Rectangle> rectangle (create<Rectangle>());
    EXPECT_TRUE (a->equals (*b));
    b->width.set (11);
    EXPECT_FALSE (a->equals (*b));
    EXPECT_FALSE (a->equals (*rectangle));
}

TEST (ObjectTest, EqualsIgnoringReadOnly)
{
    Owned<Rectangle> a (create<Rectangle>()), b (create<Rectangle>());
    EXPECT_TRUE (a->equalsIgnoringReadOnly (*b, false));
    b->height.set (99);
    EXPECT_FALSE (a->equalsIgnoringReadOnly (*b, false));
}

TEST (ObjectTest, ToStringOfClassWithoutVariables)
{
    Empty empty;
    EXPECT_EQ (empty.toString(), "Empty()");
}

TEST (ObjectTest, ToStringCutsLongVariablesAndCountsTheRest)
{
    Owned<RoundedRectangle> shape (create<RoundedRectangle>());
    EXPECT_EQ (shape->toString(), "RoundedRectangle(untitled, 10, 5, Incomparable(), 0)");
    shape->title.set ("a rather long title of a shape");
    EXPECT_EQ (shape->toString(), "RoundedRectangle(a rather l..., 10, 5, Incomparable(), 0)");
    shape->width.set (1234567890123456);
    EXPECT_EQ (shape->toString(), "RoundedRectangle(a rather l..., 1234567890123456, 5... (2 other variables)");
}

TEST (ObjectTest, ObjectPathOfRootIsEmpty)
{
    Empty root;
    std::vector<uint64_t> path;
    root.getObjectPath (path);
    EXPECT_TRUE (path.empty());
    EXPECT_FALSE (Object::compareObjectPaths ({}, {}));
}

TEST (ObjectTest, ObjectPathHoldsVariableIndices)
{
    Owned<RoundedRectangle> shape (create<RoundedRectangle>());
    std::vector<uint64_t> path;
    shape->cornerRadius.getObjectPath (path);
    EXPECT_EQ (path, (std::vector<uint64_t> { 4 }));
}

TEST (ObjectTest, PrefixPathSortsFirst)
{
    EXPECT_TRUE (Object::compareObjectPaths ({ 1, 2 }, { 1, 2, 0 }));
    EXPECT_FALSE (Object::compareObjectPaths ({ 1, 2, 0 }, { 1, 2 }));
    EXPECT_TRUE (Object::compareObjectPaths ({ 1, 2 }, { 3 }));
    EXPECT_TRUE (Object::compareObjectPaths ({ 1 }, { 0xffffffffffffffffull }));
}

TEST (ObjectTest, IsChildOf)
{
    Owned<Shape> shape (create<Shape>());
    EXPECT_FALSE (shape->isChildOf (shape.get(), true));
    EXPECT_TRUE (shape->isChildOf (shape.get(), false));
    EXPECT_TRUE (shape->width.isChildOf (shape.get(), true));
    EXPECT_FALSE (shape->isChildOf (&shape->width, true));
}

TEST (ObjectTest, CommonAncestor)
{
    Owned<Shape> shape (create<Shape>());
    EXPECT_EQ (shape->width.getCommonAncestor (&shape->title), shape.get());
    EXPECT_EQ (shape->width.getCommonAncestor (shape.get()), shape.get());
    EXPECT_EQ (shape->getCommonAncestor (&shape->width), shape.get());
    Empty other;
    EXPECT_EQ (shape->getCommonAncestor (&other), nullptr);
}

TEST (ObjectTest, FindAncestorOfClass)
{
    Owned<RoundedRectangle> shape (create<RoundedRectangle>());
    EXPECT_EQ (shape->width.findAncestorOfClass (&Shape::staticClass), shape.get());
    EXPECT_EQ (shape->width.findAncestorOfClass (&Shape::staticClass, 0), nullptr);
    EXPECT_EQ (shape->width.findAncestorOfClass (&Empty::staticClass), nullptr);
}

TEST (ObjectTest, VariablesByIndexAndName)
{
    Owned<RoundedRectangle> shape (create<RoundedRectangle>());
    ASSERT_EQ (shape->getNumVariables(), 5u);
    EXPECT_EQ (shape->getVariable (0), &shape->title);
    EXPECT_EQ (shape->getVariable (1), &shape->width);
    EXPECT_EQ (shape->getVariable (2), &shape->height);
    EXPECT_EQ (shape->getVariable (3), &shape->marker);
    EXPECT_EQ (shape->getVariable (4), &shape->cornerRadius);
    EXPECT_EQ (shape->findVariable ("height"), 2);
    EXPECT_EQ (shape->findVariable ("depth"), -1);
    EXPECT_EQ (shape->findVariable (&shape->cornerRadius), 4);
    EXPECT_EQ (shape->findVariable (shape.get()), -1);
    EXPECT_EQ (shape->getVariableByName ("cornerRadius"), &shape->cornerRadius);
    EXPECT_EQ (shape->getVariableByName ("nothing"), nullptr);
    EXPECT_EQ (shape->getVariableByNameAndClass ("title", &TestText::staticClass), &shape->title);
    EXPECT_EQ (shape->getVariableByNameAndClass ("title", &TestInteger::staticClass), nullptr);
    EXPECT_EQ (shape->getVariableByClass (&TestInteger::staticClass), &shape->width);
}

TEST (ObjectTest, ContextVariableWalksUp)
{
    Owned<RoundedRectangle> shape (create<RoundedRectangle>());
    EXPECT_EQ (shape->width.getContextVariableByName ("height"), &shape->height);
    EXPECT_EQ (shape->width.getContextVariableByNameAndClass ("title", &TestInteger::staticClass), nullptr);
    EXPECT_EQ (shape->width.getContextVariableByNameAndClass ("title", &TestText::staticClass), &shape->title);
}

TEST (ObjectTest, ContextVariableStopsAtTopOfDefaultObjectTree)
{
    auto* defaults = static_cast<Shape*> (Shape::staticClass.getDefaultObject());
    EXPECT_EQ (defaults->width.getContextVariableByName ("title"), &defaults->title);
    EXPECT_EQ (defaults->getContextVariableByName ("nothing"), nullptr);
    EXPECT_EQ (defaults->getSignature(), nullptr);
}

TEST (ObjectTest, SignatureComesFromTheParent)
{
    Owned<Rectangle> shape (create<Rectangle>());
    ASSERT_NE (shape->height.getSignature(), nullptr);
    EXPECT_EQ (shape->height.getSignature()->getName(), "height");
    EXPECT_EQ (shape->getSignature(), nullptr);
}

TEST (ObjectTest, CreatedObjectHasDefaults)
{
    Owned<RoundedRectangle> shape (create<RoundedRectangle>());
    EXPECT_EQ (shape->title.get(), "untitled");
    EXPECT_EQ (shape->width.get(), 10);
    EXPECT_EQ (shape->height.get(), 5);
    EXPECT_EQ (shape->cornerRadius.get(), 0);
    EXPECT_EQ (shape->getReferenceCount(), 0u);
    EXPECT_FALSE (shape->isObjectInitialized());
    EXPECT_EQ (shape->getSpace(), nullptr);
    EXPECT_EQ (shape->getNumChanges(), 0u);
    EXPECT_EQ (shape->width.getParent(), shape.get());
    EXPECT_TRUE (shape->width.hasStaticAllocationFlag());
    EXPECT_TRUE (shape->cornerRadius.doPropagateChildrenChanges());
    EXPECT_FALSE (shape->width.doPropagateChildrenChanges());
    EXPECT_EQ (shape->getClass(), &RoundedRectangle::staticClass);
    EXPECT_EQ (shape->width.getClass(), &TestInteger::staticClass);
}

TEST (ObjectTest, DefaultValueOfAVariable)
{
    Owned<Rectangle> shape (create<Rectangle>());
    auto* defaults = static_cast<Rectangle*> (Rectangle::staticClass.getDefaultObject());
    EXPECT_EQ (shape->height.getDefaultValue(), &defaults->height);
    EXPECT_EQ (shape->getDefaultValue(), defaults);
    EXPECT_EQ (defaults->getDefaultValue(), defaults);
    EXPECT_EQ (defaults->width.getDefaultValue(), &defaults->width);
}

TEST (ObjectTest, CopyToAndClone)
{
    Owned<Shape> shape (create<Shape>());
    shape->width.set (42);
    shape->title.set ("copy me");
    Owned<Shape> copy (static_cast<Shape*> (shape->clone()));
    EXPECT_EQ (copy->width.get(), 42);
    EXPECT_EQ (copy->title.get(), "copy me");
    EXPECT_TRUE (copy->equals (*shape));
    EXPECT_FALSE (copy->isApplyingVariableConstraints());
}

TEST (ObjectTest, CopyConstructorCopiesClassAndVariables)
{
    Owned<Shape> shape (create<Shape>());
    shape->width.set (7);
    Shape copy (*shape);
    EXPECT_EQ (copy.getClassWithoutLookUp(), &Shape::staticClass);
    EXPECT_EQ (copy.width.get(), 7);
    EXPECT_TRUE (copy.hasStaticAllocationFlag());
    EXPECT_TRUE (copy.getUniqueIdentifier().isNull());
}

TEST (ObjectTest, ClassNameWithoutClassComesFromTheType)
{
    TestInteger value;
    EXPECT_EQ (value.getClassWithoutLookUp(), nullptr);
    EXPECT_EQ (value.getClassName(), "TestInteger");
    EXPECT_EQ (value.getClass(), &TestInteger::staticClass);
    EXPECT_EQ (value.getClassName(), "TestInteger");
}

TEST (ObjectTest, SetClassKeepsTheMoreDerivedClass)
{
    Empty object;
    object.setClass (&RoundedRectangle::staticClass);
    object.setClass (&Shape::staticClass);
    EXPECT_EQ (object.getClassWithoutLookUp(), &RoundedRectangle::staticClass);
    object.setClass (nullptr);
    EXPECT_EQ (object.getClassWithoutLookUp(), nullptr);
}

TEST (ObjectTest, ReadOnlyAndEditable)
{
    Owned<Rectangle> shape (create<Rectangle>());
    EXPECT_TRUE (shape->marker.isReadOnly());
    EXPECT_FALSE (shape->marker.isEditable());
    EXPECT_FALSE (shape->height.isReadOnly());
    EXPECT_TRUE (shape->height.isEditable());
    EXPECT_FALSE (shape->isReadOnly());
}

TEST (ObjectTest, VisibilityComesFromTheSignature)
{
    Owned<Rectangle> shape (create<Rectangle>());
    EXPECT_FALSE (shape->height.isVisible());
    EXPECT_TRUE (shape->width.isVisible());
    EXPECT_TRUE (shape->isVisible());
}

TEST (ObjectTest, Animatable)
{
    Owned<Rectangle> shape (create<Rectangle>());
    EXPECT_TRUE (shape->width.isAnimatable());
    EXPECT_FALSE (shape->height.isAnimatable());   // not visible
    EXPECT_FALSE (shape->marker.isAnimatable());   // read-only
}

namespace
{
class SelfNamingObject : public Object
{
public:
    TOV_DECLARE_CLASS (SelfNamingObject, Object)
    juce::String getAutomaticFriendlyName() const override { return "Named after " + getFriendlyName(); }
};
TOV_BEGIN_CLASS (SelfNamingObject)
TOV_END_CLASS()
}

TEST (ObjectTest, ReentrantFriendlyName)
{
    SelfNamingObject object;
    EXPECT_EQ (object.getFriendlyName(), "Named after <Reentrant Name>");
    EXPECT_FALSE (object.hasFlag (0x80));
}

TEST (ObjectTest, FriendlyNames)
{
    Owned<Shape> shape (create<Shape>());
    EXPECT_EQ (shape->getFriendlyName(), "Geometric Shape");
    EXPECT_EQ (shape->width.getFriendlyName(), "Width");
    EXPECT_EQ (Shape::staticClass.getDefaultObject()->getFriendlyName(), "Geometric Shape Default Object");
}

TEST (ObjectTest, StaticObjectInASpaceSendsNoCreationEvent)
{
    std::vector<juce::String> events;
    ObjectSpace space;
    addRecordingView (space, events);
    Empty object;
    object.callInitializeObject (&space, &Empty::staticClass, nullptr);
    EXPECT_TRUE (events.empty());
    EXPECT_TRUE (object.isObjectInitialized());
    EXPECT_EQ (object.getSpace(), &space);
    EXPECT_EQ (space.getNumObjects(), 0u);
    object.callDeinitializeObject();
    EXPECT_EQ (events, (std::vector<juce::String> { "preDeleted Empty" }));
    EXPECT_EQ (object.getSpace(), nullptr);
    EXPECT_FALSE (object.isObjectInitialized());
}

TEST (ObjectTest, UnreferencedObjectAnnouncesItselfAtFirstReference)
{
    std::vector<juce::String> events;
    ObjectSpace space;
    addRecordingView (space, events);
    auto* object = create<Empty>();
    object->callInitializeObject (&space, nullptr, nullptr);
    EXPECT_TRUE (events.empty());
    EXPECT_EQ (space.getObject (object->getUniqueIdentifier()), object);
    object->incrementReferenceCounter();
    EXPECT_EQ (events, (std::vector<juce::String> { "created Empty" }));
    object->decrementReferenceCounter (true);
    EXPECT_EQ (events, (std::vector<juce::String> { "created Empty", "destroyed Empty", "preDeleted Empty" }));
    EXPECT_EQ (space.getNumObjects(), 0u);
}

TEST (ObjectTest, ReferencedObjectAnnouncesItselfOnInitialisation)
{
    std::vector<juce::String> events;
    ObjectSpace space;
    addRecordingView (space, events);
    Owned<Empty> object (create<Empty>());
    object->incrementReferenceCounter();
    object->callInitializeObject (&space, nullptr, nullptr);
    EXPECT_EQ (events, (std::vector<juce::String> { "created Empty" }));
    object->callDeinitializeObject();
}

TEST (ObjectTest, InitialisationReachesVariables)
{
    ObjectSpace space;
    Owned<Shape> shape (create<Shape>());
    shape->callInitializeObject (&space, nullptr, nullptr);
    EXPECT_TRUE (shape->width.isObjectInitialized());
    EXPECT_EQ (shape->width.getSpace(), &space);
    // Member variables are reached through their owner, not through the table.
    EXPECT_EQ (space.getNumObjects(), 1u);
    shape->callDeinitializeObject();
    EXPECT_FALSE (shape->width.isObjectInitialized());
}

TEST (ObjectTest, DestroyedMarksTheWholeTree)
{
    Owned<Shape> shape (create<Shape>());
    shape->callInitializeObject (nullptr, nullptr, nullptr);
    shape->destroyed();
    EXPECT_TRUE (shape->isBeingDestroyed());
    EXPECT_TRUE (shape->width.isBeingDestroyed());
    EXPECT_FALSE (shape->isObjectInitialized());
}

TEST (ObjectTest, LoadRejectsOtherStateTypes)
{
    juce::String log;
    ToStringExecutionContext context (log);
    Owned<Shape> shape (create<Shape>());
    EXPECT_FALSE (shape->loadFromState (context, std::make_shared<State> ((int64_t) 3)));
    EXPECT_EQ (log, "Error: ::load() Unexpected state type (in Shape)\n");
}

TEST (ObjectTest, LoadNamedVariablesAndWarnOnUnknownOnes)
{
    juce::String log;
    ToStringExecutionContext context (log);
    auto state = std::make_shared<State>();
    state->addVariable ("width", std::make_shared<State> ((int64_t) 33));
    state->addVariable ("colour", std::make_shared<State> ("red"));
    Owned<Shape> shape (create<Shape>());
    EXPECT_TRUE (shape->loadFromState (context, state));
    EXPECT_EQ (shape->width.get(), 33);
    EXPECT_EQ (log, "Warning: Unknown variable colour in Shape (in ObjectImporter::sendUnknownVariableWarning)\n");
}

TEST (ObjectTest, TooManyUnnamedVariablesKeepsTheFirstOnes)
{
    juce::String log;
    ToStringExecutionContext context (log);
    auto state = std::make_shared<State>();
    state->addVariable (std::make_shared<State> ("first"));
    state->addVariable (std::make_shared<State> ((int64_t) 2));
    state->addVariable (std::make_shared<State> ((int64_t) 3));
    Owned<Shape> shape (create<Shape>());
    EXPECT_FALSE (shape->loadFromState (context, state));
    EXPECT_EQ (shape->title.get(), "first");
    EXPECT_EQ (shape->width.get(), 2);
    EXPECT_EQ (log, "Error: Too many unnamed variables (in Shape::load())\n");
}

TEST (ObjectTest, MixingNamedAndUnnamedVariables)
{
    juce::String log;
    ToStringExecutionContext context (log);
    auto state = std::make_shared<State>();
    state->addVariable (std::make_shared<State> ("first"));
    state->addVariable ("width", std::make_shared<State> ((int64_t) 2));
    Owned<Shape> shape (create<Shape>());
    EXPECT_FALSE (shape->loadFromState (context, state));
    EXPECT_EQ (log, "Error: Mixing named and unnamed variables (in Shape::load())\n");
}

TEST (ObjectTest, ApplyingConstraintsOnParentsStopsAtHeapObject)
{
    Owned<Shape> shape (create<Shape>());
    std::vector<Object*> marked;
    shape->width.startApplyingVariableConstraintsOnParents (marked);
    EXPECT_EQ (marked, (std::vector<Object*> { &shape->width, shape.get() }));
    EXPECT_TRUE (shape->isApplyingVariableConstraints());
    Object::finishApplyingVariableConstraintsOnParents (marked);
    EXPECT_FALSE (shape->isApplyingVariableConstraints());
    EXPECT_FALSE (shape->width.isApplyingVariableConstraints());
}

TEST (ObjectTest, DeletingInsideChangedLogsTheErrorLine)
{
    ScopedErrorCapture capture;
    {
        Empty object;
        object.setUniqueIdentifier (UniqueIdentifier (0x2a));
        object.setFlag (Object::insideChangedFlag);
    }
    EXPECT_EQ (capture.errors, std::vector<juce::String> { "We are about to delete an object that is inside changed(). Imminent probable crash! "
                                                           "UID = 2a, space = <none>, flags = 6, referenceCounter = 2694881440, numChanges = 0" });
}
