#include "Support/RecordingSpaceView.h"
#include "Support/TestValues.h"
#include <Tov/Core/ObjectSpace.h>
#include <gtest/gtest.h>

using namespace tov;
using namespace tov::test;

namespace
{
/** Counts its own destruction into a log. */
class LoggingDestructionView : public RecordingSpaceView
{
public:
    LoggingDestructionView (ObjectSpace& space, std::vector<juce::String>& log, juce::String name)
        : RecordingSpaceView (space, log, name + ": "), log (log), name (std::move (name)) {}
    ~LoggingDestructionView() override { log.push_back (name + " deleted"); }

private:
    std::vector<juce::String>& log;
    juce::String name;
};

/** A heap object initialised in the space and held once, as an owner would hold it. */
template <class T>
Owned<T> addHeld (ObjectSpace& space)
{
    Owned<T> object (create<T>());
    object->incrementReferenceCounter();
    object->callInitializeObject (&space, nullptr, nullptr);
    return object;
}
} // namespace

TEST (ObjectSpaceViewTest, KnowsItsSpaceUntilReset)
{
    ObjectSpace space;
    std::vector<juce::String> log;
    RecordingSpaceView view (space, log);
    EXPECT_EQ (view.getObjectSpace(), &space);
    view.resetObjectSpace();
    EXPECT_EQ (view.getObjectSpace(), nullptr);
}

TEST (ObjectSpaceViewTest, ViewsHearInTheOrderOfAdding)
{
    std::vector<juce::String> log;
    ObjectSpace space;
    addRecordingView (space, log, "first: ");
    addRecordingView (space, log, "second: ");
    auto shape = addHeld<Shape> (space);
    shape->width.set (3);
    EXPECT_EQ (log, (std::vector<juce::String> { "first: created Shape", "second: created Shape",
                                                  "first: changed width", "second: changed width" }));
}

TEST (ObjectSpaceViewTest, AViewAddedTwiceHearsTwice)
{
    std::vector<juce::String> log;
    ObjectSpace space;
    auto& view = addRecordingView (space, log);
    space.addView (&view);
    Empty object;
    space.sendObjectDestroyed (&object);
    EXPECT_EQ (log, (std::vector<juce::String> { "destroyed Empty", "destroyed Empty" }));
    space.removeView (&view);
}

TEST (ObjectSpaceViewTest, RemoveViewTakesTheFirstOccurrenceAndClearsItsSpace)
{
    std::vector<juce::String> log;
    ObjectSpace space;
    auto& a = addRecordingView (space, log, "a: ");
    auto& b = addRecordingView (space, log, "b: ");
    auto& c = addRecordingView (space, log, "c: ");
    space.addView (&a);
    space.removeView (&a);
    EXPECT_EQ (space.getObjectSpaceViews(), (std::vector<ObjectSpaceView*> { &b, &c, &a }));
    EXPECT_EQ (a.getObjectSpace(), nullptr);
    EXPECT_EQ (b.getObjectSpace(), &space);
}

TEST (ObjectSpaceViewTest, RemovingAnAbsentViewDoesNothing)
{
    std::vector<juce::String> log;
    ObjectSpace space, other;
    auto& kept = addRecordingView (space, log);
    RecordingSpaceView stranger (other, log);
    space.removeView (&stranger);
    EXPECT_EQ (space.getObjectSpaceViews(), (std::vector<ObjectSpaceView*> { &kept }));
    EXPECT_EQ (stranger.getObjectSpace(), &other);
}

TEST (ObjectSpaceViewTest, DeleteViewsDeletesInOrderAndEmptiesTheList)
{
    std::vector<juce::String> log;
    ObjectSpace space;
    space.addView (new LoggingDestructionView (space, log, "a"));
    space.addView (new LoggingDestructionView (space, log, "b"));
    space.deleteViews();
    EXPECT_EQ (log, (std::vector<juce::String> { "a deleted", "b deleted" }));
    EXPECT_TRUE (space.getObjectSpaceViews().empty());
}

TEST (ObjectSpaceViewTest, AViewAddedDuringCreationHearsOfTheSameObject)
{
    std::vector<juce::String> log;
    ObjectSpace space;
    auto& adder = addRecordingView (space, log, "adder: ");
    adder.onEvent = [&] (const juce::String& event, Object*)
    {
        if (event == "created" && space.getObjectSpaceViews().size() == 1)
            addRecordingView (space, log, "added: ");
    };
    auto shape = addHeld<Shape> (space);
    EXPECT_EQ (log, (std::vector<juce::String> { "adder: created Shape", "added: created Shape" }));
}

TEST (ObjectSpaceViewTest, AViewRemovedDuringABroadcastMakesTheNextOneBeSkipped)
{
    std::vector<juce::String> log;
    ObjectSpace space;
    auto& leaving = addRecordingView (space, log, "leaving: ");
    addRecordingView (space, log, "skipped: ");
    addRecordingView (space, log, "last: ");
    leaving.onEvent = [&] (const juce::String&, Object*) { space.removeView (&leaving); };
    Empty object;
    space.sendObjectPreDeleted (&object);
    EXPECT_EQ (log, (std::vector<juce::String> { "leaving: preDeleted Empty", "last: preDeleted Empty" }));
    delete &leaving;
}

TEST (ObjectSpaceViewTest, ChangesOfAnObjectNotYetInitialisedReachNoView)
{
    std::vector<juce::String> log;
    ObjectSpace space;
    addRecordingView (space, log);
    // As loading does: the object knows its space before it is initialised in it.
    auto shape = createOwned<Shape>();
    shape->setSpace (&space);
    shape->width.setSpace (&space);
    shape->changed();
    shape->width.set (7);
    space.sendObjectChanged (shape.get());
    EXPECT_TRUE (log.empty());
    shape->setSpace (nullptr);
    shape->width.setSpace (nullptr);
}

TEST (ObjectSpaceViewTest, TheOtherBroadcastsDoNotAskForInitialisation)
{
    std::vector<juce::String> log;
    ObjectSpace space;
    addRecordingView (space, log);
    Empty object;
    space.sendObjectCreated (&object);
    space.sendObjectDestroyed (&object);
    space.sendObjectPreDeleted (&object);
    EXPECT_EQ (log, (std::vector<juce::String> { "created Empty", "destroyed Empty", "preDeleted Empty" }));
}

TEST (ObjectSpaceViewTest, AnObjectsLifeInOrder)
{
    std::vector<juce::String> log;
    ObjectSpace space;
    auto& view = addRecordingView (space, log);
    auto* shape = create<Shape>();
    shape->incrementReferenceCounter();
    shape->setUniqueIdentifier (UniqueIdentifier (0x44));
    view.onEvent = [&] (const juce::String& event, Object* object)
    {
        if (object == shape)
            log.push_back (juce::String ("  in table ") + (space.hasObject (UniqueIdentifier (0x44)) ? "yes" : "no")
                           + ", initialised " + (shape->isObjectInitialized() ? "yes" : "no"));
    };
    shape->callInitializeObject (&space, nullptr, nullptr);
    shape->changed();
    shape->decrementReferenceCounter (true);
    EXPECT_EQ (log, (std::vector<juce::String> {
        "created Shape", "  in table yes, initialised yes",
        "changed Shape", "  in table yes, initialised yes",
        // Destroyed first, with the object whole; pre-deleted as it is deinitialised, before it leaves the table.
        "destroyed Shape", "  in table yes, initialised yes",
        "preDeleted Shape", "  in table yes, initialised no", "preDeleted title", "preDeleted width" }));
    EXPECT_EQ (space.getNumObjects(), 0u);
}

TEST (ObjectSpaceViewTest, AnObjectNobodyHoldsIsAnnouncedWithItsFirstHolder)
{
    std::vector<juce::String> log;
    ObjectSpace space;
    addRecordingView (space, log);
    auto shape = createOwned<Shape>();
    shape->callInitializeObject (&space, nullptr, nullptr);
    EXPECT_TRUE (log.empty());
    shape->incrementReferenceCounter();
    EXPECT_EQ (log, (std::vector<juce::String> { "created Shape" }));
}

TEST (ObjectSpaceViewTest, MemberVariablesChangeButAreNeitherCreatedNorDestroyed)
{
    std::vector<juce::String> log;
    ObjectSpace space;
    addRecordingView (space, log);
    auto rectangle = addHeld<Rectangle> (space);
    rectangle->height.set (2);
    rectangle.reset();
    EXPECT_EQ (log, (std::vector<juce::String> { "created Rectangle", "changed height", "destroyed Rectangle",
                                                  "preDeleted Rectangle", "preDeleted title", "preDeleted width",
                                                  "preDeleted height", "preDeleted marker" }));
}
