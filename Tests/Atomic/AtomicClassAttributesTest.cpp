#include "AtomicTestSupport.h"
#include <Tov/Core/Library.h>

using namespace tov;
using namespace tov::test;

namespace
{
struct AttributeExpectation
{
    const char* name;
    /** The attribute's State as toShortString prints it; null for an absent attribute. */
    const char* text;
};

struct ClassExpectation
{
    const char* className;
    const char* friendlyName;
    const char* unit;
    std::vector<AttributeExpectation> attributes;
};

const char* const numberCharacters = "\"()+-*/0123456789.e\"";
const char* const percentagePresets = "{minus100 = -1., minus50 = -0.5, 0 = 0., 50 = 0.5, 100 = 1.}";
const char* const anglePresets = "{0degree = 0., 90degrees = 1.570796326795, 180degrees = 3.14159265359, 1turn = 6.28318530718, "
                                 "2turns = 12.566370614359, 5turns = 31.415926535898, 10turns = 62.831853071796}";

// Every class of the library in the order of the library, with what it declares and what it
// inherits. Bounds of integer classes are integers, those of real classes reals.
const std::vector<ClassExpectation> expectations =
{
    { "Void", "Void", "", {} },
    { "Trigger", "Trigger", "", { { "learnable", "true" } } },
    { "Triggerable", "Triggerable", "", {} },
    { "Boolean", "On/off option", "", {} },
    { "Uuid", "Universal Unique Identifier", "", {} },
    { "Enumeration", "Enumeration", "", { { "bitFlags", nullptr } } },
    { "Number", "Number", "", { { "learnable", "true" }, { "minimum", nullptr }, { "maximum", nullptr } } },
    { "Integer", "Number", "", { { "allowedCharacters", numberCharacters }, { "learnable", "true" } } },
    { "PositiveInteger", "Positive Number", "", { { "minimum", "0" }, { "maximum", nullptr } } },
    { "PositiveInteger7Bits", "Number (0 - 127)", "", { { "minimum", "0" }, { "maximum", "127" } } },
    { "PositiveInteger8Bits", "Number (0 - 255)", "", { { "minimum", "0" }, { "maximum", "255" } } },
    { "PositiveInteger9Bits", "Number (0 - 511)", "", { { "minimum", "0" }, { "maximum", "511" } } },
    { "PositiveInteger14Bits", "Number (0 - 16383)", "", { { "minimum", "0" }, { "maximum", "16383" } } },
    { "StrictlyPositiveInteger", "Positive Number (> 0)", "", { { "minimum", "1" }, { "maximum", nullptr } } },
    { "BoundedPositiveInteger", "Bounded", "", { { "interpolationKey", "PositiveInteger" }, { "minimum", "0" } } },
    { "MemorySize", "Memory Size", "", { { "minimum", "0" }, { "maximum", nullptr } } },
    { "BoundedMemorySize", "Bounded", "", { { "interpolationKey", "MemorySize" }, { "minimum", "0" } } },
    { "Real", "Floating point number", "", { { "presets", "{0 = 0.}" }, { "diff", "Real" }, { "allowedCharacters", numberCharacters },
                                             { "minimum", nullptr }, { "maximum", nullptr }, { "learnable", "true" } } },
    { "PositiveReal", "Positive floating point number", "", { { "minimum", "0." }, { "allowedCharacters", numberCharacters } } },
    { "UnboundedPercentage", "Unbounded Percentage", "%", { { "minimum", "0." }, { "maximum", "1." }, { "presets", percentagePresets } } },
    { "Percentage", "Percentage", "%", { { "minimum", "0." }, { "maximum", "1." }, { "diff", "SignedPercentage" },
                                         { "presets", "{0 = 0., 25 = 0.25, 50 = 0.5, 75 = 0.75, 100 = 1.}" } } },
    { "SignedPercentage", "Percentage (-100% - 100%)", "%", { { "minimum", "-1." }, { "maximum", "1." }, { "presets", percentagePresets } } },
    { "Angle", "Angle", "deg", { { "defaultLargeValue", "6.28318530718" }, { "diff", "Angle" }, { "presets", anglePresets },
                                 { "minimum", nullptr }, { "maximum", nullptr } } },
    { "SignedAngle", "Angle (-180 - 180 deg)", "deg", { { "minimum", "-3.14159265359" }, { "maximum", "3.14159265359" }, { "diff", "SingleTurnAngle" } } },
    { "SingleTurnAngle", "Angle (0 - 360 deg)", "deg", { { "minimum", "0." }, { "maximum", "6.28318530718" }, { "diff", "SignedAngle" } } },
    { "PositiveAngle", "Angle (0 - 180 deg)", "deg", { { "minimum", "0." }, { "maximum", "3.14159265359" }, { "diff", "Angle" } } },
    { "Meters", "Meters", "m", { { "minimum", nullptr }, { "diff", "Real" } } },
    { "Millimeters", "Millimeters", "mm", { { "minimum", nullptr } } },
    { "PositiveMeters", "Meters", "m", { { "minimum", "0." }, { "diff", "Meters" } } },
    { "PositiveMillimeters", "Positive", "mm", { { "minimum", "0." }, { "diff", "Millimeters" } } },
    { "Pixels", "Pixels (positive or negative)", "px", { { "minimum", nullptr } } },
    { "PositivePixels", "Pixels", "px", { { "minimum", "0." } } },
    { "StrictlyPositivePixels", "Strictly", "px", { { "minimum", "1." } } },
    { "Seconds", "Seconds", "s", { { "minimum", "0." }, { "allowedCharacters", "\"0123456789:.+\"" } } },
    { "Milliseconds", "Milliseconds", "ms", { { "minimum", "0." } } },
    { "SignedMilliseconds", "Milliseconds (signed)", "ms", { { "minimum", nullptr } } },
    { "LuminousPower", "Luminous Power", "lm", { { "minimum", "0." } } },
    { "Illuminance", "Illuminance", "lx", { { "minimum", "1." } } },
    { "Brightness", "Brightness", "nit", { { "minimum", "0." } } },
    { "Frequency", "Frequency", "Hz", { { "minimum", "0." } } },
    { "Decibel", "Decibel", "dB", { { "minimum", "0." }, { "presets", "{identity = 1., mute = 0.}" } } },
    { "RelativeTime", "Relative Time", "", { { "allowedCharacters", "\"years months weeks days hours minutes seconds milliseconds ()+-*/0123456789.e\"" },
                                              { "minimum", nullptr } } },
    { "String", "Text", "", {} },
    { "ConfigurableString", "Configurable", "", {} },
    { "StringWithChoices", "Multiple-choices option", "", {} },
    { "MultiLineString", "Multi-line Text", "", { { "heightWhenUsedInParameterRow", "100" } } },
    { "SourceCode", "Source Code", "", { { "heightWhenUsedInParameterRow", "100" }, { "displayInParameters", "false" } } },
    { "XmlElement", "Xml Element", "", { { "displayInParameters", "false" } } },
    { "NameableObject", "Nameable", "", {} },
    { "FriendlyNameString", "Friendly Name", "", {} },
    { "ClassObject", "Class", "", {} },
    { "AsyncTrigger", "Async Trigger", "", {} },
};

juce::String describeAttribute (const Class& declaredClass, const char* name)
{
    const auto state = declaredClass.getAttribute (name);
    return state != nullptr ? state->toShortString() : juce::String ("<absent>");
}
}

TEST (AtomicClassAttributesTest, EveryClassHasItsFriendlyNameUnitAndAttributes)
{
    for (auto& expected : expectations)
    {
        SCOPED_TRACE (expected.className);
        Class* declaredClass = getClass (expected.className);
        ASSERT_NE (declaredClass, nullptr);
        EXPECT_EQ (declaredClass->getFriendlyName(), expected.friendlyName);
        EXPECT_EQ (declaredClass->getStringAttribute ("unit"), expected.unit);
        for (auto& attribute : expected.attributes)
            EXPECT_EQ (describeAttribute (*declaredClass, attribute.name), juce::String (attribute.text != nullptr ? attribute.text : "<absent>"))
                << attribute.name;
    }
}

TEST (AtomicClassAttributesTest, TheTableCoversTheLibrary)
{
    auto* atomic = Library::getRootLibrary()->getLibraryByPath ("Tov/Atomic");
    ASSERT_NE (atomic, nullptr);
    ASSERT_EQ (atomic->getNumClasses(), expectations.size());
    for (size_t i = 0; i < expectations.size(); ++i)
        EXPECT_EQ (atomic->getClass (i)->getName(), expectations[i].className);
}

TEST (AtomicClassAttributesTest, DiffAndInterpolationKeysDefaultToTheClass)
{
    EXPECT_EQ (Real::staticClass.getClassAttribute ("diff"), &Real::staticClass);
    EXPECT_EQ (Percentage::staticClass.getClassAttribute ("diff"), &SignedPercentage::staticClass);
    EXPECT_EQ (SignedAngle::staticClass.getClassAttribute ("diff"), &SingleTurnAngle::staticClass);
    EXPECT_EQ (SingleTurnAngle::staticClass.getClassAttribute ("diff"), &SignedAngle::staticClass);
    EXPECT_EQ (PositiveMeters::staticClass.getClassAttribute ("diff"), &Meters::staticClass);
    EXPECT_EQ (BoundedPositiveInteger::staticClass.getClassAttribute ("interpolationKey"), &PositiveInteger::staticClass);
    EXPECT_EQ (BoundedMemorySize::staticClass.getClassAttribute ("interpolationKey"), &MemorySize::staticClass);
    EXPECT_EQ (Integer::staticClass.getClassAttribute ("interpolationKey"), &Integer::staticClass);
    EXPECT_EQ (Integer::staticClass.getClassAttribute ("diff"), &Integer::staticClass);
}

TEST (AtomicClassAttributesTest, AnglePresetsAreMultiplesOfPi)
{
    constexpr double pi = juce::MathConstants<double>::pi;
    auto presets = Angle::staticClass.getAttribute ("presets");
    ASSERT_NE (presets, nullptr);
    const std::vector<std::pair<const char*, double>> expected =
        { { "0degree", 0.0 }, { "90degrees", pi / 2 }, { "180degrees", pi }, { "1turn", 2 * pi },
          { "2turns", 4 * pi }, { "5turns", 10 * pi }, { "10turns", 20 * pi } };
    ASSERT_EQ (presets->getNumVariables(), expected.size());
    for (size_t i = 0; i < expected.size(); ++i)
    {
        EXPECT_EQ (presets->getVariableName (i), expected[i].first);
        ASSERT_EQ (presets->getVariableStateRef (i).getType(), StateType::realType);
        EXPECT_DOUBLE_EQ (presets->getVariableStateRef (i).getReal(), expected[i].second);
    }
}

TEST (AtomicClassAttributesTest, TheNumberLimitsFollowTheAttributes)
{
    constexpr double pi = juce::MathConstants<double>::pi;
    EXPECT_DOUBLE_EQ (SignedAngle().getMinimumValue(), -pi);
    EXPECT_DOUBLE_EQ (PositiveAngle().getMaximumValue(), pi);
    EXPECT_EQ (StrictlyPositivePixels().getMinimumValue(), 1.0);
    EXPECT_EQ (Illuminance().getMinimumValue(), 1.0);
    EXPECT_EQ (Milliseconds().getNumberUnit(), "ms");
    EXPECT_EQ (LuminousPower().getNumberUnit(), "lm");
    EXPECT_DOUBLE_EQ (Angle().getDefaultLargeValue(), 2 * pi);
}

TEST (AtomicClassAttributesTest, TheEnumerationGeneratorIsInTheLibrary)
{
    auto* atomic = Library::getRootLibrary()->getLibraryByPath ("Tov/Atomic");
    ASSERT_NE (atomic, nullptr);
    ASSERT_EQ (atomic->getNumClassGenerators(), 1u);
    EXPECT_EQ (atomic->getClassGenerator (0)->getName(), "Enumeration");
    EXPECT_NE (dynamic_cast<EnumerationClassGenerator*> (atomic->getClassGenerator (0)), nullptr);
}
