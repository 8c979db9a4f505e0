#include "Support/RecordingSpaceView.h"
#include "Support/TestValues.h"
#include <Tov/Core/ObjectSpace.h>
#include <gtest/gtest.h>

using namespace tov;
using namespace tov::test;

namespace
{
/** Records every notification as "name: object <- changedObject". */
class RecordingView : public View
{
public:
    RecordingView (juce::String name, std::vector<juce::String>& log) : name (std::move (name)), log (log) {}

    void changedCallback (Object* object, Object* changedObject) override
    {
        log.push_back (name + ": " + describeObject (object) + " <- " + describeObject (changedObject));
        if (onChanged)
            onChanged();
    }
    void deletedCallback (Object* object) override       { log.push_back (name + ": deleted"); }
    void deinitializedCallback (Object* object) override { log.push_back (name + ": deinitialized"); }

    std::function<void()> onChanged;

private:
    juce::String name;
    std::vector<juce::String>& log;
};

/** An object that owns a heap-allocated child, as owned pointers do. */
class Holder : public Object
{
public:
    TOV_DECLARE_CLASS (Holder, Object)

    TestInteger counter;
    Shape* child = nullptr;
    std::vector<juce::String> callbacks;
    bool countChanges = true;

    ~Holder() override
    {
        if (child != nullptr)
            child->deleteThis();
    }

    void adopt (Shape* newChild)
    {
        child = newChild;
        child->setParent (this);
    }

    void variableChangedCallback (Object* variable, Object* changedObject) override
    {
        callbacks.push_back (describeObject (variable) + " <- " + describeObject (changedObject));
    }

    bool shouldIncrementNumChanges (Object*, Object*) override { return countChanges; }
};

TOV_BEGIN_CLASS (Holder)
    TOV_VARIABLE (counter)
TOV_END_CLASS()

/** Gives the holder a new Shape child, sets the child's width while views on both record, and
    returns what they saw. */
std::vector<juce::String> changeAdoptedChild (Holder& holder)
{
    holder.adopt (static_cast<Shape*> (Shape::staticClass.createObject (nullptr)));
    std::vector<juce::String> log;
    RecordingView onHolder ("holder", log), onChild ("child", log);
    onHolder.attachObject (&holder);
    onChild.attachObject (holder.child);
    holder.child->width.set (3);
    return log;
}
}

TEST (ObjectChangedTest, CountsEvenWhileBeingDestroyed)
{
    TestInteger value;
    value.setFlag (Object::beingDestroyedFlag);
    value.changed();
    EXPECT_EQ (value.getNumChanges(), 1u);
    EXPECT_FALSE (value.isInsideChanged());
}

TEST (ObjectChangedTest, EmbeddedChangeClimbsAndCountsEveryLevel)
{
    auto shape = createOwned<RoundedRectangle>();
    std::vector<juce::String> log;
    RecordingView onShape ("shape", log), onWidth ("width", log);
    onShape.attachObject (shape.get());
    onWidth.attachObject (&shape->width);

    shape->width.set (12);

    EXPECT_EQ (shape->width.getNumChanges(), 1u);
    EXPECT_EQ (shape->getNumChanges(), 1u);
    EXPECT_EQ (log, (std::vector<juce::String> { "width: width <- width", "shape: RoundedRectangle <- width" }));
}

TEST (ObjectChangedTest, ViewsSeeChangesOfTheObjectItself)
{
    auto shape = createOwned<Shape>();
    std::vector<juce::String> log;
    RecordingView view ("view", log);
    view.attachObject (shape.get());
    shape->changed();
    EXPECT_EQ (log, (std::vector<juce::String> { "view: Shape <- Shape" }));
    EXPECT_EQ (shape->getNumChanges(), 1u);
}

TEST (ObjectChangedTest, OwnedChildStopsAtTheBoundaryWithoutPropagation)
{
    auto holder = createOwned<Holder>();
    EXPECT_EQ (changeAdoptedChild (*holder), (std::vector<juce::String> { "child: Shape <- width" }));
    EXPECT_TRUE (holder->callbacks.empty());
    EXPECT_EQ (holder->child->getNumChanges(), 1u);
    EXPECT_EQ (holder->getNumChanges(), 0u);
}

TEST (ObjectChangedTest, OwnedChildReachesViewsAboveWithPropagation)
{
    auto holder = createOwned<Holder>();
    holder->setPropagateChildrenChanges (true);
    EXPECT_EQ (changeAdoptedChild (*holder), (std::vector<juce::String> { "child: Shape <- width", "holder: Holder <- width" }));
    EXPECT_EQ (holder->callbacks, (std::vector<juce::String> { "Shape <- width" }));
    // Counters above a dynamic boundary do not move.
    EXPECT_EQ (holder->child->getNumChanges(), 1u);
    EXPECT_EQ (holder->getNumChanges(), 0u);
}

TEST (ObjectChangedTest, ShouldIncrementFalseStopsCountingButNotCallbacks)
{
    auto holder = createOwned<Holder>();
    holder->countChanges = false;
    holder->counter.set (4);
    EXPECT_EQ (holder->counter.getNumChanges(), 1u);
    EXPECT_EQ (holder->getNumChanges(), 0u);
    EXPECT_EQ (holder->callbacks, (std::vector<juce::String> { "counter <- counter" }));
}

TEST (ObjectChangedTest, VariableChangedCallbackSeesEveryLevel)
{
    auto holder = createOwned<Holder>();
    holder->counter.changed();
    EXPECT_EQ (holder->callbacks, (std::vector<juce::String> { "counter <- counter" }));
    EXPECT_EQ (holder->getNumChanges(), 1u);
}

TEST (ObjectChangedTest, SpaceIsToldBeforeViews)
{
    std::vector<juce::String> log;
    ObjectSpace space;
    addRecordingView (space, log, "space: ");
    auto shape = createOwned<Shape>();
    shape->callInitializeObject (&space, nullptr, nullptr);
    RecordingView view ("view", log);
    view.attachObject (shape.get());

    shape->width.set (1);
    EXPECT_EQ (log, (std::vector<juce::String> { "space: changed width", "view: Shape <- width" }));
    shape->callDeinitializeObject();
}

TEST (ObjectChangedTest, InsideChangedFlagHeldDuringCallbacks)
{
    auto shape = createOwned<Shape>();
    std::vector<juce::String> log;
    RecordingView view ("view", log);
    view.attachObject (shape.get());
    bool wasInside = false;
    view.onChanged = [&] { wasInside = shape->width.isInsideChanged(); };
    shape->width.set (8);
    EXPECT_TRUE (wasInside);
    EXPECT_FALSE (shape->width.isInsideChanged());
}

namespace
{
/** Destroys the changed object from inside its parent's callback. */
class Destroyer : public Object
{
public:
    TOV_DECLARE_CLASS (Destroyer, Object)
    TestInteger victim;
    int calls = 0;
    void variableChangedCallback (Object* variable, Object*) override
    {
        ++calls;
        variable->setFlag (Object::beingDestroyedFlag);
    }
};
TOV_BEGIN_CLASS (Destroyer)
    TOV_VARIABLE (victim)
TOV_END_CLASS()
}

TEST (ObjectChangedTest, CallbackThatDestroysTheObjectEndsTheClimb)
{
    auto owner = createOwned<Destroyer>();
    std::vector<juce::String> log;
    RecordingView view ("view", log);
    view.attachObject (owner.get());
    owner->victim.changed();
    EXPECT_EQ (owner->calls, 1);
    EXPECT_TRUE (log.empty());
    EXPECT_FALSE (owner->victim.isInsideChanged());
    owner->victim.removeFlag (Object::beingDestroyedFlag);
}

TEST (ObjectChangedTest, ClimbStopsBelowAParentBeingDestroyed)
{
    auto shape = createOwned<Shape>();
    shape->setFlag (Object::beingDestroyedFlag);
    shape->width.set (2);
    EXPECT_EQ (shape->getNumChanges(), 0u);
    shape->removeFlag (Object::beingDestroyedFlag);
}

//==============================================================================
TEST (ViewTest, AttachIsIdempotentAndNotifiesOnRequest)
{
    Empty object;
    std::vector<juce::String> log;
    RecordingView view ("view", log);
    view.attachObject (&object, true);
    view.attachObject (&object, true);
    EXPECT_EQ (object.getNumViews(), 1u);
    EXPECT_EQ (log.size(), 1u);
    EXPECT_TRUE (view.isAttachedTo (&object));
    view.detachObject (&object);
    EXPECT_EQ (object.getNumViews(), 0u);
    EXPECT_TRUE (view.getAttachedObjects().empty());
}

namespace
{
/** An object with the views first, second and third attached in that order, for the tests in
    which the second view detaches a view while a change walks them. */
struct ThreeViews
{
    ThreeViews()
    {
        for (auto* view : { &first, &second, &third })
            view->attachObject (&object);
    }

    /** Changes the object once, the second view detaching that view when the change reaches it;
        returns the log. */
    std::vector<juce::String> changeWhileSecondDetaches (RecordingView& detached)
    {
        second.onChanged = [this, &detached] { detached.detachObject (&object); };
        object.changed();
        return log;
    }

    /** The log of a change that reached each view once, in order. */
    static std::vector<juce::String> everyViewReached()
    {
        return { "first: Empty <- Empty", "second: Empty <- Empty", "third: Empty <- Empty" };
    }

    // The object comes first so that the views, destroyed before it, detach from a live object.
    Empty object;
    std::vector<juce::String> log;
    RecordingView first { "first", log }, second { "second", log }, third { "third", log };
};
}

TEST (ViewTest, ViewDetachingItselfDoesNotSkipTheNext)
{
    ThreeViews views;
    EXPECT_EQ (views.changeWhileSecondDetaches (views.second), ThreeViews::everyViewReached());
}

TEST (ViewTest, ViewDetachingAnEarlierViewDoesNotSkipTheNext)
{
    ThreeViews views;
    EXPECT_EQ (views.changeWhileSecondDetaches (views.first), ThreeViews::everyViewReached());
}

TEST (ViewTest, FirstViewDetachingItselfDoesNotSkipTheNext)
{
    Empty object;
    std::vector<juce::String> log;
    RecordingView first ("first", log), second ("second", log);
    first.attachObject (&object);
    second.attachObject (&object);
    first.onChanged = [&] { first.detachObject (&object); };

    object.changed();
    EXPECT_EQ (log, (std::vector<juce::String> { "first: Empty <- Empty", "second: Empty <- Empty" }));
    EXPECT_EQ (object.getNumViews(), 1u);
}

TEST (ViewTest, ViewAddedDuringAWalkIsReached)
{
    Empty object;
    std::vector<juce::String> log;
    RecordingView first ("first", log), late ("late", log);
    first.attachObject (&object);
    first.onChanged = [&] { late.attachObject (&object); };
    object.changed();
    EXPECT_EQ (log, (std::vector<juce::String> { "first: Empty <- Empty", "late: Empty <- Empty" }));
}

TEST (ViewTest, InsideCallbackIsSetDuringTheCallback)
{
    Empty object;
    std::vector<juce::String> log;
    RecordingView view ("view", log);
    view.attachObject (&object);
    bool inside = false;
    view.onChanged = [&] { inside = view.isInsideCallback(); };
    object.changed();
    EXPECT_TRUE (inside);
    EXPECT_FALSE (view.isInsideCallback());
}

TEST (ViewTest, DeletedObjectTellsAndDetachesItsViews)
{
    std::vector<juce::String> log;
    RecordingView view ("view", log);
    {
        Empty object;
        view.attachObject (&object);
    }
    EXPECT_EQ (log, (std::vector<juce::String> { "view: deleted" }));
    EXPECT_TRUE (view.getAttachedObjects().empty());
}

TEST (ViewTest, DeinitialisationTellsViews)
{
    Empty object;
    std::vector<juce::String> log;
    RecordingView view ("view", log);
    view.attachObject (&object);
    object.callInitializeObject (nullptr, nullptr, nullptr);
    object.callDeinitializeObject();
    EXPECT_EQ (log, (std::vector<juce::String> { "view: deinitialized" }));
}

TEST (ViewTest, DestroyedViewDetachesFromItsObjects)
{
    Empty a, b;
    {
        View view;
        view.attachObject (&a);
        view.attachObject (&b);
        EXPECT_EQ (a.getNumViews(), 1u);
    }
    EXPECT_EQ (a.getNumViews(), 0u);
    EXPECT_EQ (b.getNumViews(), 0u);
}

TEST (ViewTest, DetachAllObjectsExcept)
{
    Empty a, b;
    View view;
    view.attachObject (&a);
    view.attachObject (&b);
    view.detachAllObjectsExcept (&b);
    EXPECT_EQ (a.getNumViews(), 0u);
    EXPECT_EQ (b.getNumViews(), 1u);
    EXPECT_EQ (view.getAttachedObjects().size(), 1u);
    EXPECT_TRUE (view.isAttachedTo (&b));
}

TEST (ViewTest, MessageCallbackReachesAllViews)
{
    struct MessageView : public View
    {
        std::vector<void*> messages;
        void messageCallback (void* message) override { messages.push_back (message); }
    };
    Empty object;
    MessageView first, second;
    first.attachObject (&object);
    second.attachObject (&object);
    int message = 0;
    object.callMessageCallbackOnAllViews (&message);
    EXPECT_EQ (first.messages, (std::vector<void*> { &message }));
    EXPECT_EQ (second.messages, (std::vector<void*> { &message }));
}
