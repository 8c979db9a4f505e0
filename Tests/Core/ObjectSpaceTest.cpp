#include "Support/DestructionCounting.h"
#include "Support/RecordingSpaceView.h"
#include "Support/ScopedErrorCapture.h"
#include "Support/TestValues.h"
#include <Tov/Core/ClassRegistry.h>
#include <Tov/Core/ObjectSpace.h>
#include <Tov/Standard/Service.h>
#include "Support/TestService.h"
#include "Support/LogTestSupport.h"
#include <gtest/gtest.h>
#include <algorithm>

using namespace tov;
using namespace tov::test;

namespace
{
/** A new object of T initialised in the space under that identifier (null: the space picks one). */
template <class T>
Owned<T> addToSpace (ObjectSpace& space, uint64_t identifier = 0)
{
    Owned<T> object (create<T>());
    object->setUniqueIdentifier (UniqueIdentifier (identifier));
    object->callInitializeObject (&space, nullptr, nullptr);
    return object;
}

std::vector<ObjectSpace::ObjectDescription> sorted (std::vector<ObjectSpace::ObjectDescription> descriptions)
{
    std::sort (descriptions.begin(), descriptions.end(),
               [] (const auto& a, const auto& b) { return std::get<0> (a) < std::get<0> (b); });
    return descriptions;
}

using CountedShape = DestructionCounting<Shape>;

/** A space whose getObject also knows one object outside its table. */
class SpaceWithExtraObject : public ObjectSpace
{
public:
    Object* extra = nullptr;
    Object* getObject (UniqueIdentifier identifier) const override
    {
        return identifier == UniqueIdentifier (0x99) ? extra : ObjectSpace::getObject (identifier);
    }
};
} // namespace

//==============================================================================
TEST (ObjectSpaceTest, NewSpaceIsEmpty)
{
    ObjectSpace space ("Scene");
    EXPECT_EQ (space.getName(), "Scene");
    EXPECT_EQ (space.getFriendlyName(), "Scene");
    EXPECT_EQ (space.getNumObjects(), 0u);
    EXPECT_EQ (space.getRootObject(), nullptr);
    EXPECT_TRUE (space.getObjectSpaceViews().empty());
    EXPECT_FALSE (space.areTransactionsEnabled());
    EXPECT_EQ (space.getMirrorer(), nullptr);
    EXPECT_EQ (ObjectSpace().getName(), "");
}

TEST (ObjectSpaceTest, IsANameableObjectOfTheCoreLibrary)
{
    EXPECT_EQ (getClass ("ObjectSpace"), &ObjectSpace::staticClass);
    EXPECT_TRUE (ObjectSpace::staticClass.inheritsFrom (getClass ("NameableObject")));
    ObjectSpace space;
    EXPECT_EQ (space.getClass(), &ObjectSpace::staticClass);
    EXPECT_EQ (space.getVariableByName ("name"), &space.name);
}

TEST (ObjectSpaceTest, NullIdentifierGetsARandomOneInTheCallersField)
{
    ObjectSpace space;
    Owned<Shape> shape (create<Shape>());
    UniqueIdentifier identifier;
    space.addObject (shape.get(), identifier);
    EXPECT_TRUE (identifier.isNotNull());
    EXPECT_EQ (space.getObject (identifier), shape.get());
    space.removeObject (identifier);
}

TEST (ObjectSpaceTest, InitialisationGivesTheObjectItsRandomIdentifier)
{
    ObjectSpace space;
    auto shape = addToSpace<Shape> (space);
    EXPECT_TRUE (shape->getUniqueIdentifier().isNotNull());
    EXPECT_EQ (space.getObject (shape->getUniqueIdentifier()), shape.get());
    EXPECT_EQ (space.getNumObjects(), 1u);
}

TEST (ObjectSpaceTest, RandomIdentifiersOutsideAnyServiceComeFromTheThreadsGenerator)
{
    ObjectSpace space;
    Service::getCallingThreadRandomGenerator().setSeed ((int64_t) 42);
    auto first = addToSpace<Shape> (space);
    auto second = addToSpace<Shape> (space);
    // Two 32-bit samples of the 48-bit generator per identifier, the first one high.
    EXPECT_EQ (first->getUniqueIdentifier().getInt64(), 0x00f692ddb39e2befull);
    EXPECT_EQ (second->getUniqueIdentifier().getInt64(), 0xebb7581287da010cull);
}

// The space looks at the draws to come to fetch their slots: it never takes one.
TEST (ObjectSpaceTest, ObjectsEnteringInARowTakeTheGeneratorsDrawsInTurn)
{
    ObjectSpace space;
    Service::getCallingThreadRandomGenerator().setSeed ((int64_t) 42);
    RandomGenerator expected (42);
    std::vector<Owned<Shape>> shapes;
    for (int i = 0; i < 20; ++i)
    {
        shapes.push_back (addToSpace<Shape> (space));
        EXPECT_EQ (shapes.back()->getUniqueIdentifier().getInt64(), (uint64_t) expected.sampleInt64()) << i;
    }
    EXPECT_EQ (Service::getCallingThreadRandomGenerator().getState(), expected.getState());
    EXPECT_EQ (space.getNumObjects(), 20u);
}

TEST (ObjectSpaceTest, RandomIdentifiersComeFromTheGeneratorOfTheServiceAboveTheSpace)
{
    TestProgram::ensureTestLibraryTree();
    TestService service;
    ObjectSpace space;
    space.setParent (&service);
    service.getRandomGenerator().setSeed ((int64_t) 42);
    Service::getCallingThreadRandomGenerator().setSeed ((int64_t) 7);
    auto first = addToSpace<Shape> (space);
    EXPECT_EQ (first->getUniqueIdentifier().getInt64(), 0x00f692ddb39e2befull);
    EXPECT_NE (service.getRandomGenerator().getState(), 42);
    EXPECT_EQ (Service::getCallingThreadRandomGenerator().getState(), 7);
    space.setParent (nullptr);
}

TEST (ObjectSpaceTest, RandomCollisionOverwritesWithoutAWord)
{
    ObjectSpace space;
    ScopedErrorCapture capture;
    auto holder = addToSpace<Shape> (space, 0x00f692ddb39e2befull);
    Service::getCallingThreadRandomGenerator().setSeed ((int64_t) 42);
    auto newcomer = addToSpace<Empty> (space);
    EXPECT_EQ (newcomer->getUniqueIdentifier(), holder->getUniqueIdentifier());
    EXPECT_EQ (space.getObject (holder->getUniqueIdentifier()), newcomer.get());
    EXPECT_EQ (space.getNumObjects(), 1u);
    EXPECT_TRUE (capture.errors.empty());
}

TEST (ObjectSpaceTest, GivenIdentifierIsKept)
{
    ObjectSpace space;
    auto shape = addToSpace<Shape> (space, 0x1234);
    EXPECT_EQ (shape->getUniqueIdentifier(), UniqueIdentifier (0x1234));
    EXPECT_EQ (space.getObject (UniqueIdentifier (0x1234)), shape.get());
    EXPECT_TRUE (space.hasObject (UniqueIdentifier (0x1234)));
    EXPECT_FALSE (space.hasObject (UniqueIdentifier (0x1235)));
}

TEST (ObjectSpaceTest, ConflictMovesTheNewcomerUpByOneAndNamesBoth)
{
    ObjectSpace space;
    ScopedErrorCapture capture;
    auto holder = addToSpace<Shape> (space, 0x10);
    auto newcomer = addToSpace<Empty> (space, 0x10);
    EXPECT_EQ (newcomer->getUniqueIdentifier(), UniqueIdentifier (0x11));
    EXPECT_EQ (holder->getUniqueIdentifier(), UniqueIdentifier (0x10));
    EXPECT_EQ (space.getObject (UniqueIdentifier (0x10)), holder.get());
    EXPECT_EQ (space.getObject (UniqueIdentifier (0x11)), newcomer.get());
    EXPECT_EQ (capture.errors, (std::vector<juce::String> { "!!!!!!!!! UID Conflict !!!!!!!!!Geometric Shape vs. Empty both have UID @10" }));
}

TEST (ObjectSpaceTest, ConflictMovesOnWhileTheNextValueIsTakenToo)
{
    ObjectSpace space;
    ScopedErrorCapture capture;
    auto first = addToSpace<Shape> (space, 0x10);
    auto second = addToSpace<Empty> (space, 0x11);
    auto newcomer = addToSpace<Rectangle> (space, 0x10);
    EXPECT_EQ (newcomer->getUniqueIdentifier(), UniqueIdentifier (0x12));
    EXPECT_EQ (capture.errors, (std::vector<juce::String> {
        "!!!!!!!!! UID Conflict !!!!!!!!!Geometric Shape vs. Rectangle both have UID @10",
        "!!!!!!!!! UID Conflict !!!!!!!!!Empty vs. Rectangle both have UID @11" }));
    EXPECT_EQ (space.getNumObjects(), 3u);
}

TEST (ObjectSpaceTest, RootIdentifierMakesTheObjectTheRoot)
{
    ObjectSpace space;
    auto shape = addToSpace<Shape> (space, 1);
    EXPECT_EQ (space.getRootObject(), shape.get());
    EXPECT_EQ (shape->getReferenceCount(), 1u);
    // The root pointer gives its reference up with the root.
    space.deleteRootObject();
    shape.release();
}

TEST (ObjectSpaceTest, TakenRootIdentifierMovesTheNewcomerWhichStillBecomesTheRoot)
{
    ObjectSpace space;
    ScopedErrorCapture capture;
    auto* holder = create<Empty>();
    holder->incrementReferenceCounter(); // the test's own, so that the holder outlives being replaced as root
    holder->setUniqueIdentifier (UniqueIdentifier::getRootIdentifier());
    holder->callInitializeObject (&space, nullptr, nullptr);
    EXPECT_EQ (space.getRootObject(), holder);

    auto* root = create<Shape>();
    space.setRootObject (root, true);
    EXPECT_EQ (root->getUniqueIdentifier(), UniqueIdentifier (2));
    EXPECT_EQ (space.getRootObject(), root);
    EXPECT_EQ (space.getObject (UniqueIdentifier (1)), holder);
    EXPECT_EQ (space.getObject (UniqueIdentifier (2)), root);
    EXPECT_EQ (holder->getReferenceCount(), 1u);
    EXPECT_EQ (capture.errors, (std::vector<juce::String> { "!!!!!!!!! UID Conflict !!!!!!!!!Empty vs. Geometric Shape both have UID @1" }));
    holder->decrementReferenceCounter (true);
}

TEST (ObjectSpaceTest, RemoveObjectWithAnUnknownIdentifierChangesNothing)
{
    ObjectSpace space;
    auto shape = addToSpace<Shape> (space, 0x20);
    space.removeObject (UniqueIdentifier (0x21));
    space.removeObject (UniqueIdentifier());
    EXPECT_EQ (space.getNumObjects(), 1u);
    EXPECT_EQ (space.getObject (UniqueIdentifier (0x20)), shape.get());
}

TEST (ObjectSpaceTest, RemoveObjectLeavesTheRootPointer)
{
    ObjectSpace space;
    auto* root = create<Shape>();
    space.setRootObject (root, true);
    space.removeObject (UniqueIdentifier::getRootIdentifier());
    EXPECT_EQ (space.getNumObjects(), 0u);
    EXPECT_EQ (space.getRootObject(), root);
}

TEST (ObjectSpaceTest, DeinitialisationTakesTheObjectOut)
{
    ObjectSpace space;
    auto shape = addToSpace<Shape> (space, 0x30);
    shape->callDeinitializeObject();
    EXPECT_EQ (space.getNumObjects(), 0u);
    EXPECT_EQ (shape->getSpace(), nullptr);
    EXPECT_TRUE (shape->getUniqueIdentifier().isNull());
    EXPECT_EQ (shape->width.getSpace(), nullptr);
}

TEST (ObjectSpaceTest, MemberVariablesNeverEnterTheTable)
{
    ObjectSpace space;
    auto shape = addToSpace<RoundedRectangle> (space, 0x40);
    EXPECT_EQ (shape->cornerRadius.getSpace(), &space);
    EXPECT_TRUE (shape->cornerRadius.getUniqueIdentifier().isNull());
    EXPECT_EQ (space.getNumObjects(), 1u);
}

TEST (ObjectSpaceTest, HasObjectAsksTheOverriddenGetObject)
{
    SpaceWithExtraObject space;
    Empty extra;
    space.extra = &extra;
    EXPECT_TRUE (space.hasObject (UniqueIdentifier (0x99)));
    EXPECT_EQ (space.getNumObjects(), 0u);
}

//==============================================================================
TEST (ObjectSpaceTest, DescriptionsWithoutFilterOfAnEmptySpaceLeaveOutEmpty)
{
    ObjectSpace space;
    std::vector<ObjectSpace::ObjectDescription> out { { UniqueIdentifier (5), nullptr, "old" }, { UniqueIdentifier (6), nullptr, "older" } };
    space.getObjectDescriptions (out, nullptr, false);
    EXPECT_TRUE (out.empty());
}

TEST (ObjectSpaceTest, DescriptionsWithoutFilterReplaceWhatOutHeld)
{
    ObjectSpace space;
    auto shape = addToSpace<Shape> (space, 0x50);
    auto empty = addToSpace<Empty> (space, 0x51);
    std::vector<ObjectSpace::ObjectDescription> out (5, { UniqueIdentifier (7), nullptr, "old" });
    space.getObjectDescriptions (out, nullptr, true);
    EXPECT_EQ (sorted (out), (std::vector<ObjectSpace::ObjectDescription> {
        { UniqueIdentifier (0x50), &Shape::staticClass, "Geometric Shape" },
        { UniqueIdentifier (0x51), &Empty::staticClass, "Empty" } }));
}

TEST (ObjectSpaceTest, DescriptionsWithFilterAppendInheritingClasses)
{
    ObjectSpace space;
    auto shape = addToSpace<Shape> (space, 0x60);
    auto rectangle = addToSpace<Rectangle> (space, 0x61);
    auto rounded = addToSpace<RoundedRectangle> (space, 0x62);
    auto empty = addToSpace<Empty> (space, 0x63);
    const ObjectSpace::ObjectDescription kept { UniqueIdentifier (1), nullptr, "kept" };
    std::vector<ObjectSpace::ObjectDescription> out { kept };
    space.getObjectDescriptions (out, &Rectangle::staticClass, false);
    ASSERT_EQ (out.size(), 3u);
    EXPECT_EQ (out.front(), kept);
    EXPECT_EQ (sorted ({ out[1], out[2] }), (std::vector<ObjectSpace::ObjectDescription> {
        { UniqueIdentifier (0x61), &Rectangle::staticClass, "Rectangle" },
        { UniqueIdentifier (0x62), &RoundedRectangle::staticClass, "Rounded" } }));
}

TEST (ObjectSpaceTest, DescriptionsWithExactFilterTakeThatClassOnly)
{
    ObjectSpace space;
    auto shape = addToSpace<Shape> (space, 0x70);
    auto rectangle = addToSpace<Rectangle> (space, 0x71);
    std::vector<ObjectSpace::ObjectDescription> out;
    space.getObjectDescriptions (out, &Shape::staticClass, true);
    EXPECT_EQ (out, (std::vector<ObjectSpace::ObjectDescription> { { UniqueIdentifier (0x70), &Shape::staticClass, "Geometric Shape" } }));
}

//==============================================================================
TEST (ObjectSpaceTest, RootByIdentifierTakesTheRootIdentifierAndTheSpaceAsParent)
{
    std::vector<juce::String> events;
    ObjectSpace space;
    addRecordingView (space, events);
    auto* root = create<Shape>();
    root->setUniqueIdentifier (UniqueIdentifier (0x80));
    space.setRootObject (root, true);
    EXPECT_EQ (space.getRootObject(), root);
    EXPECT_EQ (root->getUniqueIdentifier(), UniqueIdentifier::getRootIdentifier());
    EXPECT_EQ (root->getParent(), &space);
    EXPECT_EQ (root->getSpace(), &space);
    EXPECT_TRUE (root->isObjectInitialized());
    EXPECT_EQ (root->getReferenceCount(), 1u);
    EXPECT_EQ (space.getObject (UniqueIdentifier::getRootIdentifier()), root);
    EXPECT_EQ (events, (std::vector<juce::String> { "created Shape" }));
}

TEST (ObjectSpaceTest, RootWithoutIdentifierKeepsItsOwn)
{
    std::vector<juce::String> events;
    ObjectSpace space;
    addRecordingView (space, events);
    auto* root = create<Shape>();
    root->setUniqueIdentifier (UniqueIdentifier (0x81));
    space.setRootObject (root, false);
    EXPECT_EQ (space.getRootObject(), root);
    EXPECT_EQ (root->getUniqueIdentifier(), UniqueIdentifier (0x81));
    EXPECT_EQ (root->getParent(), &space);
    EXPECT_EQ (root->getReferenceCount(), 1u);
    EXPECT_EQ (events, (std::vector<juce::String> { "created Shape" }));
}

TEST (ObjectSpaceTest, NewRootReplacesAndDeletesTheOldOne)
{
    int destructions = 0;
    ObjectSpace space;
    space.setRootObject (new CountedShape (destructions), false);
    space.setRootObject (new CountedShape (destructions), false);
    EXPECT_EQ (destructions, 1);
    EXPECT_EQ (space.getNumObjects(), 1u);
}

TEST (ObjectSpaceTest, DeleteRootObjectDeletesTheRootAndEmptiesTheTableSilently)
{
    int destructions = 0;
    std::vector<juce::String> events;
    ObjectSpace space;
    addRecordingView (space, events);
    space.setRootObject (new CountedShape (destructions), true);
    auto stray = addToSpace<Empty> (space, 0x90);
    events.clear();

    space.deleteRootObject();
    EXPECT_EQ (destructions, 1);
    EXPECT_EQ (space.getRootObject(), nullptr);
    EXPECT_EQ (space.getNumObjects(), 0u);
    // The stray object was not told: only the end of the root and its variables was heard.
    EXPECT_EQ (events, (std::vector<juce::String> { "destroyed Shape", "preDeleted Shape", "preDeleted title", "preDeleted width" }));
    EXPECT_TRUE (stray->isObjectInitialized());
}

TEST (ObjectSpaceTest, DeleteRootObjectWithoutARootLeavesTheTable)
{
    ObjectSpace space;
    auto shape = addToSpace<Shape> (space, 0x91);
    space.deleteRootObject();
    EXPECT_EQ (space.getNumObjects(), 1u);
    EXPECT_EQ (space.getObject (UniqueIdentifier (0x91)), shape.get());
}

TEST (ObjectSpaceTest, DestructorDeletesTheRootBeforeTheViews)
{
    int destructions = 0;
    std::vector<juce::String> events;
    {
        ObjectSpace space;
        auto& view = addRecordingView (space, events);
        space.setRootObject (new CountedShape (destructions), true);
        view.onEvent = [&] (const juce::String&, Object* object)
        {
            if (! object->hasStaticAllocationFlag())
                events.push_back ("  deleted so far: " + juce::String (destructions));
        };
    }
    EXPECT_EQ (destructions, 1);
    EXPECT_EQ (events, (std::vector<juce::String> { "created Shape", "destroyed Shape", "  deleted so far: 0", "preDeleted Shape",
                                                     "  deleted so far: 0", "preDeleted title", "preDeleted width" }));
}
