#include "Support/TestValues.h"
#include <Tov/Container/OwnedVector.h>
#include <Tov/Core/StateComparingObjectExporter.h>
#include <Tov/Core/StateObjectExporter.h>
#include <gtest/gtest.h>

using namespace tov;
using namespace tov::test;

namespace
{
/** Holds a heap shape, written through writeOwnedPointer. */
class ShapeHolder : public Object
{
public:
    TOV_DECLARE_CLASS (ShapeHolder, Object)

    Object* content = nullptr;
    ~ShapeHolder() override { if (content != nullptr) content->deleteThis(); }

    void save (ObjectExporter& exporter) const override
    {
        exporter.saveVariable ("content", content, &Shape::staticClass);
    }
};
TOV_BEGIN_CLASS (ShapeHolder)
TOV_END_CLASS()

/** Holds a list of shapes, longer than the comparer reads ahead. */
class Drawing : public Object
{
public:
    TOV_DECLARE_CLASS (Drawing, Object)

    OwnedVector<Rectangle> shapes;
};
TOV_BEGIN_CLASS (Drawing)
    TOV_VARIABLE (shapes)
TOV_END_CLASS()

constexpr size_t numShapesInDrawing = 40;

constexpr uint32_t shallow = exportTransientVariables | exportOwnedPointersAsIdentifiers;
constexpr uint32_t deep = exportTransientVariables;

Owned<Rectangle> makeRectangle()
{
    auto rectangle = createOwned<Rectangle>();
    rectangle->setUniqueIdentifier (UniqueIdentifier (0x1234));
    rectangle->title.set ("Door", false);
    rectangle->width.set (80, false);
    rectangle->height.set (200, false);
    return rectangle;
}

Owned<ShapeHolder> makeHolder()
{
    auto holder = createOwned<ShapeHolder>();
    auto* shape = create<Rectangle>();
    shape->setUniqueIdentifier (UniqueIdentifier (0x77));
    shape->width.set (3, false);
    holder->content = shape;
    return holder;
}

Owned<Drawing> makeDrawing()
{
    auto drawing = createOwned<Drawing>();
    for (size_t i = 0; i < numShapesInDrawing; ++i)
    {
        auto* shape = create<Rectangle>();
        shape->setUniqueIdentifier (UniqueIdentifier (0x100 + i));
        shape->width.set ((int64_t) i, false);
        drawing->shapes.append (shape, false);
    }
    return drawing;
}

bool matchesItsOwnState (const Object& object, uint32_t flags, bool writeClass)
{
    return StateComparingObjectExporter::matches (object, *StateObjectExporter::make (object, flags, writeClass), flags, writeClass);
}

/** The object's state with one change made to a copy of it. */
template <class Change>
std::shared_ptr<State> changedState (const Object& object, uint32_t flags, Change&& change)
{
    auto state = std::make_shared<State> (*StateObjectExporter::make (object, flags, true));
    change (*state);
    return state;
}
} // namespace

TEST (StateComparingObjectExporterTest, AnObjectMatchesTheStateItWrites)
{
    auto rectangle = makeRectangle();
    EXPECT_TRUE (matchesItsOwnState (*rectangle, shallow, true));
    EXPECT_TRUE (matchesItsOwnState (*rectangle, shallow, false));
    EXPECT_TRUE (matchesItsOwnState (*rectangle, exportWithoutIdentifiers, true));
    EXPECT_TRUE (matchesItsOwnState (rectangle->width, shallow, true));
    EXPECT_TRUE (matchesItsOwnState (*createOwned<Empty>(), shallow, true));
}

TEST (StateComparingObjectExporterTest, AChangedValueDoesNotMatch)
{
    auto rectangle = makeRectangle();
    const auto before = StateObjectExporter::make (*rectangle, shallow, true);
    rectangle->height.set (201, false);
    EXPECT_FALSE (StateComparingObjectExporter::matches (*rectangle, *before, shallow, true));
    rectangle->height.set (200, false);
    EXPECT_TRUE (StateComparingObjectExporter::matches (*rectangle, *before, shallow, true));
    rectangle->title.set ("Window", false);
    EXPECT_FALSE (StateComparingObjectExporter::matches (*rectangle, *before, shallow, true));
}

TEST (StateComparingObjectExporterTest, IdentifierClassAndVersionCount)
{
    auto rectangle = makeRectangle();
    auto otherIdentifier = changedState (*rectangle, shallow, [] (State& state) { state.setUniqueIdentifier (UniqueIdentifier (0x1235)); });
    auto noClass = changedState (*rectangle, shallow, [] (State& state) { state.setClassExpression (nullptr); });
    auto otherClass = changedState (*rectangle, shallow, [] (State& state) { state.setClass (&Shape::staticClass); });
    auto version = changedState (*rectangle, shallow, [] (State& state) { state.setVersionNumber (3); });
    EXPECT_FALSE (StateComparingObjectExporter::matches (*rectangle, *otherIdentifier, shallow, true));
    EXPECT_FALSE (StateComparingObjectExporter::matches (*rectangle, *noClass, shallow, true));
    EXPECT_FALSE (StateComparingObjectExporter::matches (*rectangle, *otherClass, shallow, true));
    EXPECT_FALSE (StateComparingObjectExporter::matches (*rectangle, *version, shallow, true));
    EXPECT_FALSE (StateComparingObjectExporter::matches (*rectangle, *StateObjectExporter::make (*rectangle, shallow, true), shallow, false));
}

TEST (StateComparingObjectExporterTest, AMissingOrExtraVariableDoesNotMatch)
{
    auto rectangle = makeRectangle();
    auto extra = changedState (*rectangle, shallow, [] (State& state) { state.addVariable ("depth", std::make_shared<State> (1)); });
    auto missing = changedState (*rectangle, shallow, [] (State& state) { state.removeVariable ("height"); });
    auto renamed = changedState (*rectangle, shallow, [] (State& state) { state.setVariableName (0, "caption"); });
    auto retyped = changedState (*rectangle, shallow, [] (State& state) { state.setVariableState (1, std::make_shared<State> (80.0)); });
    EXPECT_FALSE (StateComparingObjectExporter::matches (*rectangle, *extra, shallow, true));
    EXPECT_FALSE (StateComparingObjectExporter::matches (*rectangle, *missing, shallow, true));
    EXPECT_FALSE (StateComparingObjectExporter::matches (*rectangle, *renamed, shallow, true));
    EXPECT_FALSE (StateComparingObjectExporter::matches (*rectangle, *retyped, shallow, true));
}

TEST (StateComparingObjectExporterTest, OwnedObjectsCompareByIdentifierWhenShallowAndWholeWhenDeep)
{
    auto holder = makeHolder();
    EXPECT_TRUE (matchesItsOwnState (*holder, shallow, true));
    EXPECT_TRUE (matchesItsOwnState (*holder, deep, true));

    const auto shallowBefore = StateObjectExporter::make (*holder, shallow, true);
    const auto deepBefore = StateObjectExporter::make (*holder, deep, true);
    static_cast<Rectangle*> (holder->content)->width.set (4, false);
    EXPECT_TRUE (StateComparingObjectExporter::matches (*holder, *shallowBefore, shallow, true));
    EXPECT_FALSE (StateComparingObjectExporter::matches (*holder, *deepBefore, deep, true));

    holder->content->setUniqueIdentifier (UniqueIdentifier (0x78));
    EXPECT_FALSE (StateComparingObjectExporter::matches (*holder, *shallowBefore, shallow, true));
}

TEST (StateComparingObjectExporterTest, ANullOwnedObjectIsANullIdentifier)
{
    auto holder = createOwned<ShapeHolder>();
    EXPECT_TRUE (matchesItsOwnState (*holder, deep, true));
    const auto empty = StateObjectExporter::make (*holder, deep, true);
    holder->content = create<Rectangle>();
    EXPECT_FALSE (StateComparingObjectExporter::matches (*holder, *empty, deep, true));
}

TEST (StateComparingObjectExporterTest, AnExportWithoutDefaultsNeverMatches)
{
    auto rectangle = makeRectangle();
    EXPECT_FALSE (matchesItsOwnState (*rectangle, shallow | exportWithoutDefaults, true));
}

TEST (StateComparingObjectExporterTest, AListComparesEachElementsIdentifierWhenShallowAndEachElementWhenDeep)
{
    auto drawing = makeDrawing();
    EXPECT_TRUE (matchesItsOwnState (*drawing, shallow, true));
    EXPECT_TRUE (matchesItsOwnState (*drawing, deep, true));

    const auto shallowBefore = StateObjectExporter::make (*drawing, shallow, true);
    const auto deepBefore = StateObjectExporter::make (*drawing, deep, true);
    drawing->shapes.get (30)->width.set (-1, false);
    EXPECT_TRUE (StateComparingObjectExporter::matches (*drawing, *shallowBefore, shallow, true));
    EXPECT_FALSE (StateComparingObjectExporter::matches (*drawing, *deepBefore, deep, true));

    drawing->shapes.get (35)->setUniqueIdentifier (UniqueIdentifier (0x99));
    EXPECT_FALSE (StateComparingObjectExporter::matches (*drawing, *shallowBefore, shallow, true));
    drawing->shapes.get (35)->setUniqueIdentifier (UniqueIdentifier (0x100 + 35));
    EXPECT_TRUE (StateComparingObjectExporter::matches (*drawing, *shallowBefore, shallow, true));
}

TEST (StateComparingObjectExporterTest, AMemoKeepsTheIdentifiersOfAListAndStillSeesItsChanges)
{
    auto drawing = makeDrawing();
    const auto before = StateObjectExporter::make (*drawing, shallow, true);
    StateComparingObjectExporter::IdentifiersMemo memo;
    EXPECT_TRUE (StateComparingObjectExporter::matches (*drawing, *before, shallow, true, &memo));
    EXPECT_TRUE (StateComparingObjectExporter::matches (*drawing, *before, shallow, true, &memo));

    drawing->shapes.get (35)->setUniqueIdentifier (UniqueIdentifier (0x99));
    EXPECT_FALSE (StateComparingObjectExporter::matches (*drawing, *before, shallow, true, &memo));
    drawing->shapes.get (35)->setUniqueIdentifier (UniqueIdentifier (0x100 + 35));
    EXPECT_TRUE (StateComparingObjectExporter::matches (*drawing, *before, shallow, true, &memo));

    drawing->shapes.append (makeRectangle().release(), false);
    EXPECT_FALSE (StateComparingObjectExporter::matches (*drawing, *before, shallow, true, &memo));
    drawing->shapes.removeLast (false);
    drawing->shapes.removeLast (false);
    EXPECT_FALSE (StateComparingObjectExporter::matches (*drawing, *before, shallow, true, &memo));
}

// The memo knows the nodes of the state it was filled from, and no others.
TEST (StateComparingObjectExporterTest, AMemoAnswersOnlyForTheStateItWasFilledFrom)
{
    auto drawing = makeDrawing();
    auto other = makeDrawing();
    other->shapes.get (0)->setUniqueIdentifier (UniqueIdentifier (0x55));
    const auto drawingState = StateObjectExporter::make (*drawing, shallow, true);
    const auto otherState = StateObjectExporter::make (*other, shallow, true);
    StateComparingObjectExporter::IdentifiersMemo memo;
    EXPECT_TRUE (StateComparingObjectExporter::matches (*drawing, *drawingState, shallow, true, &memo));
    EXPECT_FALSE (StateComparingObjectExporter::matches (*other, *drawingState, shallow, true, &memo));
    EXPECT_TRUE (StateComparingObjectExporter::matches (*other, *otherState, shallow, true, &memo));
    EXPECT_FALSE (StateComparingObjectExporter::matches (*drawing, *otherState, shallow, true, &memo));
    memo.clear();
    EXPECT_TRUE (StateComparingObjectExporter::matches (*drawing, *drawingState, shallow, true, &memo));
}

TEST (StateComparingObjectExporterTest, AListWithAnElementMoreOrLessOrAnOddEntryDoesNotMatch)
{
    auto drawing = makeDrawing();
    auto shapes = [] (State& state) -> State& { return state.getVariableStateRef (0); };
    auto extra = changedState (*drawing, shallow, [&] (State& state) { shapes (state).addVariable (juce::String(), std::make_shared<State> (UniqueIdentifier (0x200))); });
    auto named = changedState (*drawing, shallow, [&] (State& state) { shapes (state).setVariableName (39, "last"); });
    auto withClass = changedState (*drawing, shallow, [&] (State& state) { shapes (state).getVariableStateRef (20).setClass (&Shape::staticClass); });
    auto withIdentifier = changedState (*drawing, shallow, [&] (State& state) { shapes (state).getVariableStateRef (2).setUniqueIdentifier (UniqueIdentifier (0x102)); });
    EXPECT_FALSE (StateComparingObjectExporter::matches (*drawing, *extra, shallow, true));
    EXPECT_FALSE (StateComparingObjectExporter::matches (*drawing, *named, shallow, true));
    EXPECT_FALSE (StateComparingObjectExporter::matches (*drawing, *withClass, shallow, true));
    EXPECT_FALSE (StateComparingObjectExporter::matches (*drawing, *withIdentifier, shallow, true));

    const auto before = StateObjectExporter::make (*drawing, shallow, true);
    drawing->shapes.removeLast (false);
    EXPECT_FALSE (StateComparingObjectExporter::matches (*drawing, *before, shallow, true));
}
