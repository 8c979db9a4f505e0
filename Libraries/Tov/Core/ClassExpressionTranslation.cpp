#include "ClassExpressionTranslation.h"
#include "Class.h"
#include "ClassExpression.h"
#include "ClassRegistry.h"
#include "CompatibilityTable.h"
#include "State.h"
#include "../Standard/ExecutionContext.h"
#include "../Standard/Service.h"
#include <array>

namespace tov
{

namespace
{

const ClassExpression* parse (const juce::String& text)
{
    return createClassExpressionFromString (text, nullptr);
}

const ClassExpression* templateOver (const juce::String& templateName, const ClassExpression* argument)
{
    return createTemplateClassExpression (templateName, std::make_shared<State> (argument));
}

// The class value a template is applied to, or null.
const ClassExpression* getClassArgument (const ClassExpression* expression)
{
    if (expression->getType() != ClassExpression::templateApplication)
        return nullptr;
    const State& arguments = expression->getClassGeneratorArguments();
    return arguments.getType() == StateType::classExpressionType ? arguments.getClassExpressionValue() : nullptr;
}

// Colours became hue, saturation and value.
const ClassExpression* withHsvColor (const ClassExpression* colorClass)
{
    const auto text = colorClass->toString();
    return text == "Color" || text == "ColorWithAlpha" ? createAtomicClassExpression ("HsvColor") : colorClass;
}

struct Rename
{
    const char* oldName;
    const char* newName;
};

// Exact renames whose target is an atomic class.
const Rename atomicRenames[] = {
    { "CompositeLayerGenerator", "Compo" },
    { "Identity2DPlacement", "Fit2dPlacement" },
    { "MappingControlProcessor", "Mapping" },
    { "ProjectionSurface", "Surface" },
    { "NormalBlurShape", "GaussianBlurShape" },
    { "EllipseMask", "RadialMask" },
    { "MultiSpritePointsNodeRenderer", "SpritePointsNodeRenderer" },
    { "GravityForceNodeInteractor", "GravityField" },
    { "FrictionForceNodeInteractor", "FrictionField" },
    { "AttractorForceNodeInteractor", "AttractorField" },
    { "TurbulenceNodeInteractor", "TurbulenceField" },
    { "LayerColorizeNodeModifier", "ColorizeLayerNodeModifier" },
    { "FunctionColorLayerModifier", "ColorFunctionLayerModifier" },
};

// Project items became shared elements of the class they held.
const Rename sharedElementRenames[] = {
    { "ElementProjectItem", "Element" },
    { "CompoProjectItem", "Compo" },
    { "SceneProjectItem", "Scene" },
    { "SetupProjectItem", "Setup" },
};

const Rename laterAtomicRenames[] = {
    { "IsfEnumerationElement", "CustomEnumerationElement" },
    { "IsfEnumeration", "CustomEnumeration" },
    { "IsfEnumerationDynamicVariable", "CustomEnumerationDynamicVariable" },
};

const Rename suffixRenames[] = {
    { "MeshGenerator", "NodeGenerator" },
    { "SplineGenerator", "NodeGenerator" },
    { "VisualizationView", "Viewport" },
};

const Rename colorRenames[] = {
    { "ParameterTrack({input = Seconds, output = Color})", "ParameterTrack({input = Seconds, output = HsvColor})" },
    { "KeyframeFunction({input = Percentage, output = Color})", "KeyframeFunction({input = Percentage, output = HsvColor})" },
    { "KeyframeFunction({input = Seconds, output = Color})", "KeyframeFunction({input = Seconds, output = HsvColor})" },
    { "Parameter(ColorWithAlpha)", "Parameter(HsvColor)" },
    { "Parameter(Color)", "Parameter(HsvColor)" },
    { "DynamicVariable(ColorWithAlpha)", "DynamicVariable(HsvColor)" },
    { "DynamicVariable(Color)", "DynamicVariable(HsvColor)" },
};

template <size_t n>
const Rename* findExact (const Rename (&renames)[n], const juce::String& text)
{
    for (auto& rename : renames)
        if (text == rename.oldName)
            return &rename;
    return nullptr;
}

const ClassExpression* translateFirstRules (const ClassExpression* expression, const juce::String& text)
{
    if (auto* rename = findExact (atomicRenames, text))
        return createAtomicClassExpression (rename->newName);
    for (auto& rename : suffixRenames)
        if (text.endsWith (rename.oldName))
            return parse (text.dropLastCharacters ((int) strlen (rename.oldName)) + rename.newName);
    if (auto* rename = findExact (sharedElementRenames, text))
        return templateOver ("SharedElement", createAtomicClassExpression (rename->newName));
    if (text.startsWith ("ContentProjectItem(") || text.startsWith ("ElementBankItem(") || text == "ContentProjectItem")
    {
        auto* inner = getClassArgument (expression);
        return templateOver ("SharedElement", inner != nullptr ? inner : createAtomicClassExpression ("Element"));
    }
    if (auto* rename = findExact (laterAtomicRenames, text))
        return createAtomicClassExpression (rename->newName);
    return nullptr;
}

// A variable tool held its value in an owned pointer: the parameter is of the held class.
const ClassExpression* translateVariableTool (const State* state)
{
    if (state == nullptr || state->getType() != StateType::variablesType)
        return nullptr;
    const State* value = state->getVariableStateByNameRef ("value");
    if (value == nullptr || value->getType() != StateType::ownedPointerType || value->getOwnedPointer() == nullptr)
        return nullptr;
    Class* heldClass = value->getOwnedPointer()->getClass();
    if (heldClass == nullptr)
        return nullptr;
    Class* color = getClass ("Color");
    if (color != nullptr && heldClass->inheritsFrom (color))
        return templateOver ("Parameter", createAtomicClassExpression ("HsvColor"));
    return templateOver ("Parameter", heldClass->getExpression());
}

// The two-variable argument is kept with fresh identifiers, as every copy of a state gets.
const ClassExpression* translateFunctionRuleAction (const ClassExpression* expression)
{
    if (expression->getType() == ClassExpression::templateApplication)
    {
        const State& arguments = expression->getClassGeneratorArguments();
        if (arguments.getType() == StateType::variablesType && arguments.getNumVariables() == 2)
        {
            UniqueIdentifier mask;
            mask.setFromInt64 ((uint64_t) Service::getCallingThreadRandomGenerator().sampleInt64());
            return createTemplateClassExpression ("FunctionLinkModifier", arguments.clone (mask));
        }
    }
    return parse ("FunctionLinkModifier(Percentage, Real)");
}

const ClassExpression* translateGenerationVertexMask (State* state)
{
    const bool holdsVariables = state != nullptr
        && (state->getType() == StateType::variablesType || state->getType() == StateType::voidType);
    if (holdsVariables && state->getVariableStateByNameRef ("id") == nullptr)
        if (auto id = State::createFromStateString (ExecutionContext::get(), "1", "GenerationVertexMask"))
            state->addVariable ("id", id);
    return createAtomicClassExpression ("GroupSelectorGeometryMask");
}

const ClassExpression* translateArgumentRules (const ClassExpression* expression, const juce::String& text, State* state)
{
    auto* argument = getClassArgument (expression);
    if (text.startsWith ("Size2("))
        return argument != nullptr ? templateOver ("Size2d", argument) : parse ("Size2d(Real)");
    if (text.startsWith ("Size3("))
        return argument != nullptr ? templateOver ("Size3d", argument) : parse ("Size3d(Real)");
    if (text == "VariableTool")
        if (auto* translated = translateVariableTool (state))
            return translated;
    if (text.startsWith ("VariableTool(") || text.startsWith ("ParameterTool("))
        return argument != nullptr ? templateOver ("Parameter", withHsvColor (argument)) : parse ("Parameter(Percentage)");
    if (text.startsWith ("FunctionRuleAction("))
        return translateFunctionRuleAction (expression);
    if (text == "GenerationVertexMask")
        return translateGenerationVertexMask (state);
    if (text == "MotionBlurLayerModifier")
        return createAtomicClassExpression ("FeedbackTextureModifier");
    if (auto* rename = findExact (colorRenames, text))
        return parse (rename->newName);
    return nullptr;
}

const ClassExpression* translateByTable (const ClassExpression* expression, const juce::String& text)
{
    const auto newName = CompatibilityTable::findNewName (text);
    if (newName.isEmpty())
        return expression;
    Class* newClass = getClass (newName);
    return newClass != nullptr ? newClass->getExpression() : expression;
}

const ClassExpression* translate (const ClassExpression* expression, State* state, const juce::String& text)
{
    if (auto* translated = translateFirstRules (expression, text))
        return translated;
    if (auto* translated = translateArgumentRules (expression, text, state))
        return translated;
    return translateByTable (expression, text);
}

// Whether the expression's translation is itself whatever the node: no rule matched its text
// and the table renames it to nothing or to itself. "VariableTool" is left out, as its rule
// reads the node.
bool translatesToItselfAlways (const ClassExpression* expression, const ClassExpression* translated, const juce::String& text)
{
    if (translated != expression || text == "VariableTool")
        return false;
    const auto newName = CompatibilityTable::findNewName (text);
    return newName.isEmpty() || newName == text;
}

// Today's classes are translated to themselves, and every node read in asks again: a thread
// remembers the expressions for which the answer was so, in a small direct-mapped table where a
// collision only costs the translation again. Expressions are interned for the life of the
// process and the rules and the table never change, so a pointer once here stays true.
const ClassExpression*& findTranslatedToItself (const ClassExpression* expression)
{
    thread_local std::array<const ClassExpression*, 64> expressions {};
    return expressions[(reinterpret_cast<uintptr_t> (expression) >> 4) % expressions.size()];
}

} // namespace

const ClassExpression* translateClassExpression (const ClassExpression* expression, State* state)
{
    if (expression == nullptr)
        return nullptr;
    auto& remembered = findTranslatedToItself (expression);
    if (remembered == expression)
        return expression;
    const auto* original = expression;
    if (auto* argument = getClassArgument (expression))
    {
        auto* translated = translateClassExpression (argument, nullptr);
        if (translated != argument)
            expression = templateOver (expression->getIdentifier(), translated);
    }
    const auto text = expression->toString();
    auto* translated = translate (expression, state, text);
    if (translatesToItselfAlways (original, translated, text))
        remembered = original;
    return translated;
}

} // namespace tov
