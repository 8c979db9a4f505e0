#include "Atomic/AtomicTestSupport.h"
#include <Tov/Standard/ActivationState.h>
#include <Tov/Standard/FrameSidesLink.h>
#include <Tov/Standard/Justification.h>
#include <Tov/Standard/Orientation.h>
#include <juce_graphics/juce_graphics.h>

using namespace tov;
using namespace tov::test;

TEST (JustificationTest, FlagsAreJucesAndPrintJoined)
{
    Justification justification (Justification::horizontallyCentred | Justification::top);
    EXPECT_EQ (juce::Justification (justification.get()), juce::Justification::centredTop);
    EXPECT_EQ (justification.toString(), "top | horizontallyCentred");
}

TEST (JustificationTest, FlagsAreSavedAsTheirNumber)
{
    Justification justification (Justification::left | Justification::verticallyCentred), loaded;
    EXPECT_EQ (justification.makeState (false)->toShortString(), "33");
    EXPECT_TRUE (saveAndLoad (justification, loaded).result);
    EXPECT_EQ (loaded.get(), juce::Justification::centredLeft);
}

TEST (FrameSidesLinkTest, ElementsInOrder)
{
    FrameSidesLink link (FrameSidesLink::vertical);
    EXPECT_EQ (link.toString(), "vertical");
    EXPECT_EQ (link.getDescription(), "Top and bottom together");
    EXPECT_TRUE (loadFromText (link, "\"all\"").result);
    EXPECT_EQ (link.get(), FrameSidesLink::all);
}

TEST (ActivationStateTest, StatesAndTheirTexts)
{
    ActivationState state;
    EXPECT_EQ (state.toString(), "inactive");
    state.set (ActivationState::deactivating);
    EXPECT_EQ (state.makeState (false)->toShortString(), "\"deactivating\"");
}

TEST (OrientationTest, HorizontalOrVertical)
{
    Orientation orientation;
    EXPECT_EQ (orientation.toString(), "horizontal");
    EXPECT_TRUE (loadFromText (orientation, "\"vertical\"").result);
    EXPECT_EQ (orientation.get(), Orientation::vertical);
}
