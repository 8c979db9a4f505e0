#include "Atomic/AtomicTestSupport.h"
#include <Tov/Standard/ActivationState.h>
#include <Tov/Standard/AttributedString.h>
#include <Tov/Standard/ColorShift.h>
#include <Tov/Standard/ColorWithAlpha.h>
#include <Tov/Standard/EventCounter.h>
#include <Tov/Standard/FrameSidesLink.h>
#include <Tov/Standard/GammaCorrection.h>
#include <Tov/Standard/Justification.h>
#include <Tov/Standard/Orientation.h>
#include <Tov/Standard/PixelRectangle.h>
#include <Tov/Standard/Rational.h>
#include <Tov/Standard/Seed.h>
#include <Tov/Standard/Time.h>
#include <map>

using namespace tov;
using namespace tov::test;

namespace
{
/** The values of the sample document, each made from its state by the class it names. */
class SampleValues
{
public:
    SampleValues()
    {
        ToStringExecutionContext context (messages);
        const auto file = juce::File (TOV_EXAMPLE_DOCUMENTS_PATH).getChildFile ("values.txt");
        if (auto state = State::createFromStateFile (context, file))
            for (size_t i = 0; i < state->getNumVariables(); ++i)
                values[state->getVariableName (i)] = Owned<Object> (Object::createFromState (context, state->getVariableState (i)));
    }

    template <class T>
    const T& get (const juce::String& name) const
    {
        auto found = values.find (name);
        auto* value = found != values.end() ? dynamic_cast<const T*> (found->second.get()) : nullptr;
        if (value != nullptr)
            return *value;
        ADD_FAILURE() << "no value " << name;
        static const T none;
        return none;
    }

    juce::String messages;
    std::map<juce::String, Owned<Object>> values;
};
} // namespace

TEST (StandardValuesDocumentTest, EveryValueLoadsWithoutAWord)
{
    SampleValues sample;
    EXPECT_EQ (sample.messages, "");
    EXPECT_EQ (sample.values.size(), 17u);
    for (const auto& [name, value] : sample.values)
        EXPECT_NE (value, nullptr) << name;
}

TEST (StandardValuesDocumentTest, ValuesAreThoseWritten)
{
    SampleValues sample;
    EXPECT_EQ (sample.get<AttributedString> ("title").getNumAttributes(), 2u);
    EXPECT_EQ (sample.get<Time> ("createdAt").toString(), "2026/03/07 20:30:00");
    EXPECT_EQ (sample.get<Rational> ("frameRate").toString(), "989/33");
    EXPECT_EQ (sample.get<Rational> ("pixelAspect").toString(), "1/1");
    EXPECT_EQ (sample.get<Seed> ("noiseSeed").get(), 1234);
    EXPECT_EQ (sample.get<EventCounter> ("droppedFrames").getCountSinceReset(), 8);
    EXPECT_EQ (sample.get<Color> ("background").toString(), "0D0D1A");
    EXPECT_EQ (sample.get<ColorWithAlpha> ("highlight").getAlpha(), 0.75);
    EXPECT_EQ (sample.get<ColorShift> ("grading").getMultiplier(), 1.2);
    EXPECT_EQ (sample.get<GammaCorrection> ("gamma").getGreen(), 2.4);
    EXPECT_EQ (sample.get<PixelPoint> ("cursor").getY(), 540);
    EXPECT_EQ (sample.get<PixelSize> ("output").getWidth(), 1920);
    EXPECT_EQ (sample.get<PixelRectangle> ("viewport").getBottom(), 720);
    EXPECT_EQ (sample.get<Justification> ("captionJustification").toString(), "bottom | horizontallyCentred");
    EXPECT_EQ (sample.get<FrameSidesLink> ("bordersLink").get(), FrameSidesLink::horizontal);
    EXPECT_EQ (sample.get<Orientation> ("layout").get(), Orientation::vertical);
    EXPECT_EQ (sample.get<ActivationState> ("playback").get(), ActivationState::active);
}
