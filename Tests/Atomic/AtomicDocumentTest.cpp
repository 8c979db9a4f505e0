#include "AtomicTestClasses.h"

using namespace tov;
using namespace tov::test;

namespace
{
constexpr double pi = juce::MathConstants<double>::pi;
const juce::String uuidText = "0f8fad5b-d9cb-469f-a165-70867728950e";

/** Gives every member but velocity, thickness, nothing and action a value other than its default. */
void fill (AtomicDocument& document)
{
    document.enabled.set (false);
    document.count.set (42);
    document.index.set (4);
    document.voices.set (8);
    document.note.set (64);
    document.program.set (511);
    document.pitchBend.set (16383);
    document.cacheSize.set (1536);
    document.selection.setValueAndBound (2, 5);
    document.usedMemory.setValueAndBound (512, 1024);
    document.ratio.set (0.25);
    document.weight.set (72.5);
    document.gain.set (1.5);
    document.opacity.set (0.5);
    document.balance.set (-0.25);
    document.rotation.set (2 * pi + pi / 2);
    document.pan.set (-pi / 2);
    document.hue.set (pi);
    document.aperture.set (pi / 4);
    document.altitude.set (1234.5);
    document.distance.set (12.0);
    document.focalLength.set (85.0);
    document.offset.set (-3.0);
    document.width.set (640.0);
    document.lineWidth.set (2.0);
    document.start.set (90.0);
    document.latency.set (12.5);
    document.delay.set (-4.0);
    document.lumens.set (800.0);
    document.lux.set (300.0);
    document.peak.set (1000.0);
    document.rate.set (48000.0);
    document.volume.set (0.5);
    document.timeout.set (93600.0);
    document.title.set ("Concert");
    document.mode.set ("b");
    document.notes.set ("line one\nline two");
    document.script.set ("return 1;");
    document.layout.setSourceCode ("<layout/>");
    document.caption.set ("Main");
    document.interpolation.set (Interpolation::cubicSpline);
    document.permissions.set (Permissions::read | Permissions::write);
    document.identifier.set (juce::Uuid (uuidText));
    document.kind.set (&Decibel::staticClass);
    document.owner.name.set ("Alice");
}

/** Each member's name and its text, as toString gives it after fill. */
const std::vector<std::pair<const char*, const char*>> filledTexts =
{
    { "enabled", "false" }, { "count", "42" }, { "index", "5" }, { "voices", "8" }, { "note", "64" },
    { "velocity", "0" }, { "program", "511" }, { "pitchBend", "16383" }, { "cacheSize", "1.5 KB" },
    { "selection", "2 / 5" }, { "usedMemory", "512 / 1024" }, { "ratio", "0.25" }, { "weight", "72.5" },
    { "gain", "150.000" }, { "opacity", "50.000" }, { "balance", "-25.000" }, { "rotation", "1 turn and 90 deg" },
    { "pan", "-90" }, { "hue", "180" }, { "aperture", "45" }, { "altitude", "1234.5" }, { "thickness", "0" },
    { "distance", "12" }, { "focalLength", "85" }, { "offset", "-3" }, { "width", "640" }, { "lineWidth", "2" },
    { "start", "0:01:30:00" }, { "latency", "12.5" }, { "delay", "-4" }, { "lumens", "800" }, { "lux", "300" },
    { "peak", "1000" }, { "rate", "48000" }, { "volume", "-6.02" }, { "timeout", "1 day 2 hrs" },
    { "title", "Concert" }, { "mode", "b" }, { "notes", "line one\nline two" }, { "script", "return 1;" },
    { "layout", "<layout/>" }, { "caption", "Main" }, { "interpolation", "cubicSpline" }, { "permissions", "write | read" },
    { "nothing", "void" }, { "reset", "0" }, { "identifier", "0f8fad5b-d9cb-469f-a165-70867728950e" }, { "kind", "Decibel" },
    { "action", "Triggerable(0)" }, { "owner", "NameableObject(Alice)" },
};

juce::StringArray getVariableNames (const State& state)
{
    juce::StringArray names;
    for (size_t i = 0; i < state.getNumVariables(); ++i)
        names.add (state.getVariableName (i));
    return names;
}
}

class AtomicDocumentTest : public AtomicTestClassesFixture {};

TEST_F (AtomicDocumentTest, DeclaredDefaultsReachNewDocuments)
{
    auto document = createOwned<AtomicDocument>();
    EXPECT_TRUE (document->enabled.get());
    EXPECT_EQ (document->count.get(), 3);
    EXPECT_EQ (document->note.get(), 60);
    EXPECT_EQ (document->opacity.get(), 1.0);
    EXPECT_EQ (document->rate.get(), 440.0);
    EXPECT_EQ (document->title.get(), "untitled");
    EXPECT_EQ (document->interpolation.get(), Interpolation::linear);
    EXPECT_EQ (document->index.toString(), "1");
    EXPECT_TRUE (document->identifier.get().isNull());
    EXPECT_EQ (document->kind.get(), nullptr);
}

TEST_F (AtomicDocumentTest, ADocumentAtItsDefaultsSavesNothing)
{
    auto document = createOwned<AtomicDocument>();
    auto state = document->makeState (true);
    EXPECT_EQ (state->getType(), StateType::voidType);
    EXPECT_EQ (state->toShortString(), "void");
}

TEST_F (AtomicDocumentTest, OnlyChangedMembersAreSaved)
{
    auto document = createOwned<AtomicDocument>();
    fill (*document);
    auto state = document->makeState (true);

    juce::StringArray expected;
    for (auto& [name, text] : filledTexts)
        if (juce::String (name) != "velocity" && juce::String (name) != "thickness"
            && juce::String (name) != "nothing" && juce::String (name) != "action" && juce::String (name) != "reset")
            expected.add (name);
    EXPECT_EQ (getVariableNames (*state).joinIntoString (" "), expected.joinIntoString (" "));
}

TEST_F (AtomicDocumentTest, SavedValuesHaveTheirStateForms)
{
    auto document = createOwned<AtomicDocument>();
    fill (*document);
    auto state = document->makeState (true);
    auto text = [&state] (const char* name) { return state->getVariableStateByName (name)->toShortString(); };
    EXPECT_EQ (text ("enabled"), "false");
    EXPECT_EQ (text ("count"), "42");
    EXPECT_EQ (text ("selection"), "{value = 2, bound = 5}");
    EXPECT_EQ (text ("ratio"), "0.25");
    EXPECT_EQ (text ("start"), "90.");
    EXPECT_EQ (text ("title"), "\"Concert\"");
    EXPECT_EQ (text ("mode"), "\"b\"");
    EXPECT_EQ (text ("interpolation"), "\"cubicSpline\"");
    EXPECT_EQ (text ("permissions"), "3");
    EXPECT_EQ (text ("identifier"), uuidText.quoted());
    EXPECT_EQ (text ("kind"), "Decibel");
    EXPECT_EQ (text ("owner"), "{name = \"Alice\"}");
}

TEST_F (AtomicDocumentTest, APrunedStateLoadsBackEqual)
{
    auto document = createOwned<AtomicDocument>();
    fill (*document);
    auto loaded = createOwned<AtomicDocument>();
    const auto outcome = loadFromState (*loaded, document->makeState (true));
    EXPECT_TRUE (outcome.result);
    EXPECT_EQ (outcome.messages, "");
    EXPECT_TRUE (loaded->equals (*document));
    for (size_t i = 0; i < document->getNumVariables(); ++i)
        EXPECT_TRUE (loaded->getVariable (i)->equals (*document->getVariable (i))) << document->getVariableSignature (i)->getName();
}

TEST_F (AtomicDocumentTest, EachValuePrintsThroughToString)
{
    auto document = createOwned<AtomicDocument>();
    fill (*document);
    ASSERT_EQ (document->getNumVariables(), filledTexts.size());
    for (size_t i = 0; i < filledTexts.size(); ++i)
    {
        EXPECT_EQ (document->getVariableSignature (i)->getName(), filledTexts[i].first);
        EXPECT_EQ (document->getVariable (i)->toString(), filledTexts[i].second) << filledTexts[i].first;
    }
}

TEST_F (AtomicDocumentTest, TriggerCountsAreNotCarriedByPrunedStates)
{
    auto document = createOwned<AtomicDocument>();
    document->reset.trig();
    document->action.trigger.trig();
    EXPECT_EQ (document->makeState (true)->getType(), StateType::voidType);
    auto full = document->makeState (false);
    EXPECT_EQ (full->getVariableStateByName ("reset")->toShortString(), "1");
    EXPECT_EQ (full->getVariableStateByName ("action")->toShortString(), "{trigger = 1}");
}
