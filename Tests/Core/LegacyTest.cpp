#include "LegacyTestClasses.h"
#include <Tov/Core/ClassExpression.h>
#include <Tov/Core/ClassExpressionTranslation.h>
#include <Tov/Core/CompatibilityTable.h>
#include <Tov/Core/ObjectImporter.h>
#include <gtest/gtest.h>

using namespace tov;
using namespace tov::test;

namespace
{
class LegacyTranslationTest : public ::testing::Test
{
protected:
    void SetUp() override { ensureLegacyTestLibrary(); }

    static const ClassExpression* expression (const char* text)  { return createClassExpressionFromString (text, nullptr); }

    /** The text of the translation of an expression given as text, with no node. */
    static juce::String translate (const char* text)
    {
        auto* translated = translateClassExpression (expression (text), nullptr);
        return translated != nullptr ? translated->toString() : juce::String ("<null>");
    }

    static std::shared_ptr<State> parseState (const juce::String& text)
    {
        return State::createFromStateString (ExecutionContext::get(), text, "test");
    }
};
}

TEST_F (LegacyTranslationTest, BothManipulationToolsBecomeOne)
{
    EXPECT_EQ (translate ("Manipulation2DTool"), "ManipulationTool");
    EXPECT_EQ (translate ("Manipulation3DTool"), "ManipulationTool");
    EXPECT_EQ (translateClassExpression (expression ("Manipulation3DTool"), nullptr), ManipulationTool::staticClass.getExpression());
}

TEST_F (LegacyTranslationTest, Placement2DBecomesPlacement2d)
{
    EXPECT_EQ (translate ("Placement2D"), "Placement2d");
    EXPECT_EQ (translate ("Position2D"), "Canvas2dPosition");
}

TEST_F (LegacyTranslationTest, TableEntryWithoutAClassStaysAndIsUnknownAtLookup)
{
    // No class answers to "QuadroSyncTimeProvider" in this process.
    EXPECT_EQ (CompatibilityTable::findNewName ("GPUFrameCountTimeProvider"), "QuadroSyncTimeProvider");
    EXPECT_EQ (translate ("GPUFrameCountTimeProvider"), "GPUFrameCountTimeProvider");
    auto state = parseState ("'GPUFrameCountTimeProvider {}");
    juce::String error;
    EXPECT_EQ (state->getCompatibilityClass (&error), nullptr);
    EXPECT_EQ (error, "Could not find class \"GPUFrameCountTimeProvider\"");
}

TEST_F (LegacyTranslationTest, ClassValueOfGenerationVertexMaskAddsNoVariable)
{
    State value (expression ("GenerationVertexMask"));
    EXPECT_EQ (value.getClassValue (true), &GroupSelectorGeometryMask::staticClass);
    EXPECT_EQ (value.getType(), StateType::classExpressionType);
    EXPECT_EQ (value.getClassValue (false), nullptr);
}

TEST_F (LegacyTranslationTest, GenerationVertexMaskNodeGainsAnIdentifierVariable)
{
    auto state = parseState ("'GenerationVertexMask {}");
    EXPECT_EQ (State::getCompatibilityClassExpression (*state)->toString(), "GroupSelectorGeometryMask");
    ASSERT_EQ (state->getNumVariables(), (size_t) 1);
    EXPECT_EQ (state->getVariableName (0), "id");
    EXPECT_EQ (state->getVariableStateRef (0).getInteger(), 1);

    auto withId = parseState ("'GenerationVertexMask {id = 4}");
    EXPECT_EQ (withId->getCompatibilityClass(), &GroupSelectorGeometryMask::staticClass);
    EXPECT_EQ (withId->toShortString(), "{id = 4}");
}

TEST_F (LegacyTranslationTest, SuffixesAreReplaced)
{
    EXPECT_EQ (translate ("TorusMeshGenerator"), "TorusNodeGenerator");
    EXPECT_EQ (translate ("SvgSplineGenerator"), "SvgNodeGenerator");
    EXPECT_EQ (translate ("StageVisualizationView"), "StageViewport");
}

TEST_F (LegacyTranslationTest, ExactRenames)
{
    EXPECT_EQ (translate ("CompositeLayerGenerator"), "Compo");
    EXPECT_EQ (translate ("Identity2DPlacement"), "Fit2dPlacement");
    EXPECT_EQ (translate ("EllipseMask"), "RadialMask");
    EXPECT_EQ (translate ("MotionBlurLayerModifier"), "FeedbackTextureModifier");
    EXPECT_EQ (translate ("IsfEnumeration"), "CustomEnumeration");
    EXPECT_EQ (translate ("IsfEnumerationDynamicVariable"), "CustomEnumerationDynamicVariable");
}

TEST_F (LegacyTranslationTest, TemplateArgumentIsTranslatedFirst)
{
    EXPECT_EQ (translate ("OwnedPointer(Placement2D)"), "OwnedPointer(Placement2d)");
    EXPECT_EQ (translate ("OwnedVector(Manipulation3DTool)"), "OwnedVector(ManipulationTool)");
}

TEST_F (LegacyTranslationTest, ProjectItemsBecomeSharedElements)
{
    EXPECT_EQ (translate ("ElementProjectItem"), "SharedElement(Element)");
    EXPECT_EQ (translate ("CompoProjectItem"), "SharedElement(Compo)");
    EXPECT_EQ (translate ("SetupProjectItem"), "SharedElement(Setup)");
    EXPECT_EQ (translate ("ContentProjectItem(Scene)"), "SharedElement(Scene)");
    EXPECT_EQ (translate ("ElementBankItem(Setup)"), "SharedElement(Setup)");
}

TEST_F (LegacyTranslationTest, SizesTakeTheirArgumentOrReal)
{
    EXPECT_EQ (translate ("Size2(Percentage)"), "Size2d(Percentage)");
    EXPECT_EQ (translate ("Size3(Meters)"), "Size3d(Meters)");
    EXPECT_EQ (translate ("Size2({a = 1})"), "Size2d(Real)");
}

TEST_F (LegacyTranslationTest, ToolsBecomeParametersWithHsvColors)
{
    EXPECT_EQ (translate ("VariableTool(Real)"), "Parameter(Real)");
    EXPECT_EQ (translate ("ParameterTool(Color)"), "Parameter(HsvColor)");
    EXPECT_EQ (translate ("VariableTool(ColorWithAlpha)"), "Parameter(HsvColor)");
    EXPECT_EQ (translate ("ParameterTool({a = 1})"), "Parameter(Percentage)");
}

TEST_F (LegacyTranslationTest, VariableToolReadsTheClassOfItsValue)
{
    auto state = parseState ("'VariableTool {value = => 'Placement2d {}}");
    EXPECT_EQ (State::getCompatibilityClassExpression (*state)->toString(), "Parameter(Placement2d)");
    auto color = parseState ("'VariableTool {value = => 'Color {}}");
    EXPECT_EQ (State::getCompatibilityClassExpression (*color)->toString(), "Parameter(HsvColor)");
    // Without a value that resolves the rule does not match, and the name stays.
    auto unresolved = parseState ("'VariableTool {value = 3}");
    EXPECT_EQ (State::getCompatibilityClassExpression (*unresolved)->toString(), "VariableTool");
}

TEST_F (LegacyTranslationTest, FunctionRuleActionsBecomeLinkModifiers)
{
    EXPECT_EQ (translate ("FunctionRuleAction({input = Seconds, output = Real})"), "FunctionLinkModifier({input = Seconds, output = Real})");
    // Two unnamed arguments, which the text of an expression shows in braces.
    EXPECT_EQ (translate ("FunctionRuleAction(Real)"), "FunctionLinkModifier({Percentage, Real})");
}

TEST_F (LegacyTranslationTest, ColorsBecomeHsvColors)
{
    EXPECT_EQ (translate ("Parameter(Color)"), "Parameter(HsvColor)");
    EXPECT_EQ (translate ("DynamicVariable(ColorWithAlpha)"), "DynamicVariable(HsvColor)");
    EXPECT_EQ (translate ("KeyframeFunction({input = Seconds, output = Color})"), "KeyframeFunction({input = Seconds, output = HsvColor})");
    EXPECT_EQ (translate ("ParameterTrack({input = Seconds, output = Color})"), "ParameterTrack({input = Seconds, output = HsvColor})");
}

TEST_F (LegacyTranslationTest, UnmatchedExpressionIsReturnedAsItIs)
{
    auto* same = expression ("Placement2d");
    EXPECT_EQ (translateClassExpression (same, nullptr), same);
    EXPECT_EQ (translateClassExpression (nullptr, nullptr), nullptr);
    EXPECT_EQ (translate ("NoSuchNameAnywhere"), "NoSuchNameAnywhere");
}

TEST_F (LegacyTranslationTest, SavedVersionPlaysNoPart)
{
    auto state = parseState ("'Placement2D #99 {scale = 2}");
    EXPECT_EQ (state->getVersionNumber(), (uint64_t) 99);
    EXPECT_EQ (state->getCompatibilityClass(), &Placement2d::staticClass);
}

TEST_F (LegacyTranslationTest, LookupIsCachedInTheNode)
{
    auto state = parseState ("'Placement2D {}");
    EXPECT_EQ (state->getClass(), nullptr);
    EXPECT_EQ (state->getCompatibilityClass(), &Placement2d::staticClass);
    auto copy = state->clone (UniqueIdentifier());
    EXPECT_EQ (copy->getCompatibilityClass(), &Placement2d::staticClass);
    state->setAtomicClassExpression ("ManipulationTool");
    EXPECT_EQ (state->getCompatibilityClass(), &ManipulationTool::staticClass);
}

TEST_F (LegacyTranslationTest, TableHoldsItsKeysSorted)
{
    const auto& table = CompatibilityTable::get();
    EXPECT_EQ (table.size(), (size_t) 744);
    EXPECT_EQ (table.begin()->first, "AVFrameToColor2DBufferVectorConvertor");
    EXPECT_EQ (table.rbegin()->first, "WoodLayerGenerator");
    EXPECT_EQ (CompatibilityTable::findNewName ("KelvoClient"), "ClientKelvoPeer");
    EXPECT_EQ (CompatibilityTable::findNewName ("DataServiceConfiguration"), "MediaConfiguration");
    EXPECT_EQ (CompatibilityTable::findNewName ("GPUTimeProvider"), "GpuTimeProvider");
    EXPECT_EQ (CompatibilityTable::findNewName ("Vector3"), "Vector3");
    EXPECT_EQ (CompatibilityTable::findNewName ("Placement2d"), "");
}

TEST_F (LegacyTranslationTest, CreateFromStateUsesTheTranslation)
{
    auto& context = ExecutionContext::get();
    Owned<Object> object (Object::createFromState (context, parseState ("'Manipulation2DTool {mode = \"pan\"}")));
    ASSERT_NE (object, nullptr);
    EXPECT_EQ (object->getClass(), &ManipulationTool::staticClass);
    EXPECT_EQ (static_cast<ManipulationTool&> (*object).mode.get(), "pan");
}
