#include "LegacyTestClasses.h"
#include <gtest/gtest.h>

using namespace tov;
using namespace tov::test;

// Documents written by hand: one as an old version saved it, with the class and variable names
// of that time, and the same one as it is saved today.
namespace
{
class LegacyFixtureTest : public ::testing::Test
{
protected:
    void SetUp() override { ensureLegacyTestLibrary(); }

    static juce::File fixture (const char* name)  { return juce::File (TOV_LEGACY_FIXTURES).getChildFile (name); }

    Owned<Object> load (const char* name)
    {
        auto state = State::createFromStateFile (context, fixture (name));
        EXPECT_NE (state, nullptr);
        return Owned<Object> (state != nullptr ? Object::createFromState (context, state) : nullptr);
    }

    /** The document as made in code today. */
    static Owned<LegacyDocument> makeToday()
    {
        auto document = createOwned<LegacyDocument>();
        auto* position = create<Canvas2dPosition>();
        position->x.set (1.5);
        position->y.set (-2.0);
        document->position.set (position);
        auto* placement = create<Placement2d>();
        placement->scale.set (3.0);
        document->placement.set (placement);
        for (auto* mode : { "move", "orbit" })
        {
            auto* tool = create<ManipulationTool>();
            tool->mode.set (mode);
            document->tools.append (tool);
        }
        auto* mask = create<GroupSelectorGeometryMask>();
        mask->id.set (1);
        document->mask.set (mask);
        document->version.set ("player", {}, 4, 0, 0, "c0ffee");
        document->address.set ("render-3", 9000);
        document->shift.set (-0.5, 0.0, 0.0, 1.0);
        return document;
    }

    tov::testing::RecordingExecutionContext context;
};
}

TEST_F (LegacyFixtureTest, OldDocumentLoadsIntoTodaysClasses)
{
    auto old = load ("OldDocument.txt");
    ASSERT_NE (old, nullptr);
    auto& document = static_cast<LegacyDocument&> (*old);
    EXPECT_EQ (document.position->getClass(), &Canvas2dPosition::staticClass);
    EXPECT_EQ (document.placement->getClass(), &Placement2d::staticClass);
    ASSERT_EQ (document.tools.size(), (size_t) 2);
    EXPECT_EQ (document.tools[1]->getClass(), &ManipulationTool::staticClass);
    ASSERT_EQ (document.mask->getClass(), &GroupSelectorGeometryMask::staticClass);
    EXPECT_EQ (static_cast<GroupSelectorGeometryMask&> (*document.mask).id.get(), 1);
    EXPECT_EQ (document.version.getCommitHash().get(), "c0ffee");
    EXPECT_TRUE (context.errors.empty()) << (context.errors.empty() ? juce::String() : context.errors.front());
}

TEST_F (LegacyFixtureTest, OldDocumentEqualsTheSameDocumentSavedToday)
{
    auto old = load ("OldDocument.txt");
    auto today = load ("TodayDocument.txt");
    ASSERT_NE (old, nullptr);
    ASSERT_NE (today, nullptr);
    // Owned pointers compare by address: the documents compare by what they save.
    EXPECT_EQ (old->makeState (false, true)->saveToString(), today->makeState (false, true)->saveToString());
    EXPECT_EQ (old->makeState (true, true)->saveToString(), today->makeState (true, true)->saveToString());
    EXPECT_TRUE (context.errors.empty());
}

TEST_F (LegacyFixtureTest, TodaysFixtureIsWhatTodaySaves)
{
    auto today = load ("TodayDocument.txt");
    ASSERT_NE (today, nullptr);
    EXPECT_EQ (today->makeState (false, true)->saveToString(), makeToday()->makeState (false, true)->saveToString());
    EXPECT_EQ (today->makeState (true, true)->saveToString(), makeToday()->makeState (true, true)->saveToString());
}
