#include "DynamicVariableTestSupport.h"
#include "Container/SelectionTestSupport.h"
#include <Tov/Core/ClassRegistry.h>
#include <Tov/Core/ObjectImporter.h>
#include <Tov/Core/StateObjectExporter.h>
#include <Tov/Standard/Color.h>

using namespace tov;
using namespace tov::test;

namespace
{
class DynamicVariableTest : public DynamicVariableTestBase
{
protected:
    /** A variable appended to the sheet's parameters. */
    DynamicVariable& addParameter (const juce::String& name, const Object& value, const Object* defaultValue = nullptr,
                                   const StateMap& attributes = {})
    {
        auto* variable = makeVariable (name, value, defaultValue, attributes);
        sheet->parameters.append (variable);
        return *variable;
    }

    /** Loads the state into a new variable of the class, reporting into the log. */
    Owned<DynamicVariable> load (const juce::String& className, const std::shared_ptr<State>& state)
    {
        Owned<DynamicVariable> variable (static_cast<DynamicVariable*> (variableClass (className)->createObject()));
        loaded = variable->loadFromState (service.context, state);
        return variable;
    }

    bool loaded = false;
};

/** Re-declarations of a sheet's parameters. */
class DynamicVariableDeclaratorTest : public DynamicVariableTest
{
protected:
    DynamicVariable* declare (const juce::String& name, const Object& value, const StateMap& attributes = {})
    {
        UpdateDynamicVariableDeclarator declarator (sheet->parameters);
        auto* variable = declarator.variable (name, &value, nullptr, attributes);
        declarator.update (sheet->parameters);
        return variable;
    }
};
} // namespace

TEST_F (DynamicVariableTest, TheGeneratedClassHoldsAValueOfItsParameter)
{
    auto* realVariable = variableClass ("Real");
    ASSERT_NE (realVariable, nullptr);
    EXPECT_EQ (realVariable->getName(), "DynamicVariable(Real)");
    EXPECT_EQ (realVariable->getFriendlyName(), "Custom Parameter");
    EXPECT_EQ (realVariable->findMemberVariableSignature ("value")->getValueClass(), &Real::staticClass);

    auto& variable = addParameter ("Speed", Real (0.5));
    EXPECT_EQ (variable.getValueClass(), &Real::staticClass);
    EXPECT_EQ (variable.getValue()->getClass(), &Real::staticClass);
    EXPECT_EQ (variable.getDynamicVariableSignature().getVariableClass(), &Real::staticClass);
    EXPECT_EQ (variable.getValue()->getParent(), &variable);
}

TEST_F (DynamicVariableTest, CreateCopiesAValueOfItsClassAndTakesNameDefaultAndAttributes)
{
    Real half (0.5), one (1.0);
    auto& variable = addParameter ("Speed", half, &one, attribute ("unit", new State ("m/s")));

    EXPECT_EQ (variable.getFriendlyName(), "Speed");
    EXPECT_EQ (static_cast<Real*> (variable.getValue())->get(), 0.5);
    ASSERT_NE (variable.getDefaultValueObject(), nullptr);
    EXPECT_EQ (static_cast<Real*> (variable.getDefaultValueObject())->get(), 1.0);
    ASSERT_NE (variable.getDynamicVariableSignature().getAttribute ("unit"), nullptr);
    EXPECT_EQ (variable.getDynamicVariableSignature().getAttribute ("unit")->getString(), "m/s");
}

TEST_F (DynamicVariableTest, AValueOfAnotherClassComesAcrossThroughItsConverterOnly)
{
    // Integer has no converter to Real: the value stays at the class's default.
    Integer three (3);
    Owned<DynamicVariable> converted (DynamicVariable::create (variableClass ("Real"), "Speed", &three, nullptr, {}));
    EXPECT_EQ (static_cast<Real*> (converted->getValue())->get(), 0.0);
    Owned<DynamicVariable> text (DynamicVariable::create (variableClass ("String"), "Name", &three, nullptr, {}));
    EXPECT_EQ (static_cast<String*> (text->getValue())->get(), "");
}

TEST_F (DynamicVariableTest, AClassThatMakesNoDynamicVariableCreatesNothing)
{
    EXPECT_EQ (DynamicVariable::create (&Integer::staticClass, "Speed", nullptr, nullptr, {}), nullptr);
    EXPECT_EQ (DynamicVariable::create (nullptr, "Speed", nullptr, nullptr, {}), nullptr);
}

TEST_F (DynamicVariableTest, TheIdentifierIsTheStringAttributeOrTheFriendlyName)
{
    EXPECT_EQ (DynamicVariable::getIdentifier ("Blur Radius", {}), "Blur Radius");
    EXPECT_EQ (DynamicVariable::getIdentifier ("Blur Radius", attribute ("identifier", new State ("blur"))), "blur");
    EXPECT_EQ (DynamicVariable::getIdentifier ("Blur Radius", attribute ("identifier", new State (3))), "Blur Radius");
    auto& variable = addParameter ("Blur Radius", Real (1.0), nullptr, attribute ("identifier", new State ("blur")));
    EXPECT_EQ (variable.getIdentifier(), "blur");
}

TEST_F (DynamicVariableTest, TheCachedSignatureDescribesTheValue)
{
    Real one (1.0);
    auto attributes = attribute ("unit", new State ("m/s"));
    attributes["readonly"] = std::make_shared<State> (true);
    auto& variable = addParameter ("Speed", Real (0.5), &one, attributes);

    auto& signature = variable.getCachedVariableSignature();
    EXPECT_EQ (signature.getName(), "value");
    EXPECT_EQ (signature.getValueClass(), &Real::staticClass);
    EXPECT_TRUE (signature.isReadOnly());
    EXPECT_EQ (signature.getStringAttribute ("unit"), "m/s");
    ASSERT_NE (signature.getAttributeRef ("default"), nullptr);
    EXPECT_EQ (signature.getAttributeRef ("default")->getReal(), 1.0);
    EXPECT_EQ (variable.getVariableSignature (variable.getValue()), &signature);
    EXPECT_FALSE (variable.getValue()->isEditable());
}

TEST_F (DynamicVariableTest, AChangeOfTheSignatureRebuildsTheCachedOne)
{
    auto& variable = addParameter ("Speed", Real (0.5), nullptr, attribute ("readonly", new State ("yes")));
    EXPECT_FALSE (variable.getCachedVariableSignature().isReadOnly());
    EXPECT_EQ (variable.getCachedVariableSignature().getAttributeRef ("default"), nullptr);

    variable.getDynamicVariableSignature().setAttributes (attribute ("readonly", new State (true)));
    EXPECT_TRUE (variable.getCachedVariableSignature().isReadOnly());

    Real one (1.0);
    variable.setDefaultValue (&one);
    EXPECT_NE (variable.getCachedVariableSignature().getAttributeRef ("default"), nullptr);
}

TEST_F (DynamicVariableTest, SetAttributesReplacesChangedStatesAndKeepsTheOthersWithOneChange)
{
    auto& signature = addParameter ("Speed", Real (0.5), nullptr, attribute ("unit", new State ("m/s"))).getDynamicVariableSignature();
    auto first = signature.getAttribute ("unit");
    const auto changesBefore = signature.attributes.getNumChanges();

    signature.setAttributes (attribute ("unit", new State ("m/s")));
    EXPECT_EQ (signature.attributes.getNumChanges(), changesBefore);
    EXPECT_EQ (signature.getAttribute ("unit"), first);

    auto attributes = attribute ("unit", new State ("km/h"));
    attributes["minimum"] = std::make_shared<State> (0);
    signature.setAttributes (attributes);
    EXPECT_EQ (signature.attributes.getNumChanges(), changesBefore + 1);
    EXPECT_EQ (signature.attributes.size(), 2u);
    EXPECT_EQ (signature.getAttribute ("unit")->getString(), "km/h");
}

TEST_F (DynamicVariableTest, ADefaultOfTheSameClassIsCopiedOntoThePresentOne)
{
    Real one (1.0), two (2.0);
    auto& variable = addParameter ("Speed", Real (0.5), &one);
    auto* present = variable.getDefaultValueObject();

    variable.setDefaultValue (&two);
    EXPECT_EQ (variable.getDefaultValueObject(), present);
    EXPECT_EQ (static_cast<Real*> (present)->get(), 2.0);

    Integer three (3);
    variable.setDefaultValue (&three);
    ASSERT_NE (variable.getDefaultValueObject(), nullptr);
    EXPECT_EQ (variable.getDefaultValueObject()->getClass(), &Integer::staticClass);

    variable.setDefaultValue (nullptr);
    EXPECT_EQ (variable.getDefaultValueObject(), nullptr);
}

TEST_F (DynamicVariableTest, ACloneFromAValueHasIdentifiersOfItsOwn)
{
    Owned<Track> track (makeTrack ("Intro", 3));
    track->setUniqueIdentifier (UniqueIdentifier (0x1234));
    auto& variable = addParameter ("Lead", Real (0.5));

    Owned<Object> clone (variable.cloneFromValue (*track));
    ASSERT_NE (clone, nullptr);
    EXPECT_EQ (clone->getClass(), &Track::staticClass);
    EXPECT_NE (clone->getUniqueIdentifier(), track->getUniqueIdentifier());
    EXPECT_FALSE (clone->getUniqueIdentifier().isNull());
    EXPECT_EQ (static_cast<Track*> (clone.get())->gain.get(), 3);
}

TEST_F (DynamicVariableTest, TheValueCountsAgainstTheVariablesDefault)
{
    Real one (1.0);
    auto& variable = addParameter ("Speed", Real (0.5), &one);
    EXPECT_EQ (variable.getValue()->getDefaultValue(), variable.getDefaultValueObject());

    auto& plain = addParameter ("Plain", Real (0.5));
    EXPECT_EQ (plain.getValue()->getDefaultValue(), Real::staticClass.getDefaultObject());
}

TEST_F (DynamicVariableTest, TheValueAndTheVariableAreNamedAfterTheFriendlyName)
{
    auto& variable = addParameter ("Speed", Real (0.5));
    EXPECT_EQ (variable.getValue()->getFriendlyName(), "Speed");
    EXPECT_EQ (variable.getLabelVariable(), &variable.getDynamicVariableSignature().friendlyName);
    EXPECT_EQ (variable.Object::getFriendlyName(), "Speed");
}

//==============================================================================
TEST_F (DynamicVariableTest, WithoutATargetTheVariableNeitherReadsNorWrites)
{
    auto& variable = addParameter ("Count", Integer (2));
    variable.setTargetAndCopyValue (nullptr, true);
    static_cast<Integer*> (variable.getValue())->set (7);
    sheet->count.set (4);

    EXPECT_EQ (sheet->count.get(), 4);
    EXPECT_EQ (static_cast<Integer*> (variable.getValue())->get(), 7);
    EXPECT_TRUE (variable.getAttachedObjects().empty());
}

TEST_F (DynamicVariableTest, ABoundTargetTakesTheValueAndGivesItsOwn)
{
    auto& variable = addParameter ("Count", Integer (2));
    variable.setTargetAndCopyValue (&sheet->count, true);
    EXPECT_EQ (sheet->count.get(), 2);

    static_cast<Integer*> (variable.getValue())->set (7);
    EXPECT_EQ (sheet->count.get(), 7);

    sheet->count.set (9);
    EXPECT_EQ (static_cast<Integer*> (variable.getValue())->get(), 9);
}

TEST_F (DynamicVariableTest, AChangeOfTheTargetWhileTheValueIsCopiedRaisesNoSecondCopy)
{
    auto& variable = addParameter ("Count", Integer (2));
    variable.setTargetAndCopyValue (&sheet->count, true);
    auto& value = *static_cast<Integer*> (variable.getValue());
    OwnChangeCounter targetChanges (sheet->count);
    OwnChangeCounter valueChanges (value);

    value.set (5);

    EXPECT_EQ (targetChanges.count, 1);
    EXPECT_EQ (valueChanges.count, 1);
    EXPECT_FALSE (variable.hasMarkedFlag());
}

TEST_F (DynamicVariableTest, AnotherTargetMovesTheAttachment)
{
    auto& variable = addParameter ("Count", Integer (2));
    Owned<Sheet> other (makeSheet());
    variable.setTargetAndCopyValue (&sheet->count, false);
    variable.setTargetAndCopyValue (&other->count, false);

    EXPECT_FALSE (variable.isAttachedTo (&sheet->count));
    EXPECT_TRUE (variable.isAttachedTo (&other->count));
    sheet->count.set (8);
    EXPECT_EQ (static_cast<Integer*> (variable.getValue())->get(), 2);
    variable.setTargetAndCopyValue (nullptr, false);
}

TEST_F (DynamicVariableTest, ATargetOfAnotherClassIsNotWritten)
{
    auto& variable = addParameter ("Count", Integer (2));
    variable.target.set (&sheet->name, true);
    variable.copyValueToTarget();
    EXPECT_EQ (sheet->name.get(), "");
}

//==============================================================================
TEST_F (DynamicVariableTest, SavingWithPruningWritesAValueAtItsDefault)
{
    Real half (0.5);
    auto& variable = addParameter ("Speed", half, &half);
    auto state = variable.makeState (true, false);
    ASSERT_NE (state->getVariableStateByNameRef ("value"), nullptr);
    EXPECT_EQ (state->getVariableStateByNameRef ("value")->toString(), "0.5");
}

TEST_F (DynamicVariableTest, SavingWithPruningLeavesANodeAtItsDefaultOut)
{
    ensurePointerTestLibrary();
    ASSERT_EQ (getClass ("Node"), &Node::staticClass);
    Node node;
    auto& variable = addParameter ("Child", node);
    auto state = variable.makeState (true, false);
    EXPECT_EQ (state->getVariableStateByNameRef ("value"), nullptr);
}

TEST_F (DynamicVariableTest, SaveAndLoadKeepNameValueDefaultAndAttributes)
{
    Real one (1.0);
    addParameter ("Speed", Real (0.5), &one, attribute ("identifier", new State ("speed")));
    addParameter ("Count", Integer (4));
    auto state = sheet->makeState (true, true);

    Owned<Sheet> copy (makeSheet());
    ASSERT_TRUE (copy->loadFromState (service.context, state));

    ASSERT_EQ (copy->parameters.size(), 2u);
    auto* speed = copy->parameters[0];
    EXPECT_EQ (speed->getClass(), variableClass ("Real"));
    EXPECT_EQ (speed->getFriendlyName(), "Speed");
    EXPECT_EQ (speed->getIdentifier(), "speed");
    EXPECT_EQ (static_cast<Real*> (speed->getValue())->get(), 0.5);
    ASSERT_NE (speed->getDefaultValueObject(), nullptr);
    EXPECT_EQ (static_cast<Real*> (speed->getDefaultValueObject())->get(), 1.0);
    EXPECT_EQ (static_cast<Integer*> (copy->parameters[1]->getValue())->get(), 4);
}

TEST_F (DynamicVariableTest, ParametersAndGlslNameLoadAsAttributesAndIdentifier)
{
    DynamicVariableSignature old;
    auto attributes = attribute ("glslName", new State ("blurRadius"));
    attributes["unit"] = std::make_shared<State> ("px");
    old.setAttributes (attributes);
    auto state = std::make_shared<State>();
    state->addVariable ("friendlyName", std::make_shared<State> ("Blur Radius"));
    state->addVariable ("parameters", old.makeState (true, false)->getVariableStateByName ("attributes"));
    state->addVariable ("value", std::make_shared<State> (2.0));

    auto variable = load ("Real", state);

    EXPECT_TRUE (loaded);
    EXPECT_EQ (variable->getFriendlyName(), "Blur Radius");
    EXPECT_EQ (variable->getIdentifier(), "blurRadius");
    EXPECT_EQ (variable->getDynamicVariableSignature().getAttribute ("glslName"), nullptr);
    EXPECT_EQ (variable->getDynamicVariableSignature().attributes.size(), 2u);
    EXPECT_EQ (variable->getDynamicVariableSignature().getAttribute ("unit")->getString(), "px");
    EXPECT_EQ (static_cast<Real*> (variable->getValue())->get(), 2.0);
}

TEST_F (DynamicVariableTest, AColorValueStateLoadsAsHsvColor)
{
    auto state = std::make_shared<State>();
    state->addVariable ("friendlyName", std::make_shared<State> ("Tint"));
    state->addVariable ("value", Color (0.25, 0.5, 1.0).makeState (false, true));

    auto variable = load ("HsvColor", state);

    EXPECT_TRUE (loaded);
    auto* color = static_cast<HsvColor*> (variable->getValue());
    EXPECT_EQ (color->red.get(), 0.25);
    EXPECT_EQ (color->green.get(), 0.5);
    EXPECT_EQ (color->blue.get(), 1.0);
    EXPECT_EQ (state->getVariableStateByName ("value")->getClass(), &Color::staticClass);
}

TEST_F (DynamicVariableTest, AnOldBareRecordLoadsAsADynamicVariableOfItsValuesClass)
{
    auto value = std::make_shared<State>();
    value->setOwnedPointer (Integer (5).makeState (false, true));
    auto record = std::make_shared<State>();
    record->addVariable ("friendlyName", std::make_shared<State> ("Count"));
    record->addVariable ("value", value);
    auto element = std::make_shared<State>();
    element->setOwnedPointer (record);
    auto vector = std::make_shared<State>();
    vector->addVariable (element);
    auto state = std::make_shared<State>();
    state->addVariable ("parameters", vector);

    ASSERT_TRUE (sheet->loadFromState (service.context, state));

    ASSERT_EQ (sheet->parameters.size(), 1u);
    EXPECT_EQ (sheet->parameters[0]->getClass(), variableClass ("Integer")) << sheet->parameters[0]->getClassName();
    EXPECT_EQ (sheet->parameters[0]->getFriendlyName(), "Count");
    EXPECT_EQ (static_cast<Integer*> (sheet->parameters[0]->getValue())->get(), 5);
    EXPECT_EQ (record->getClassExpression(), nullptr);
}

//==============================================================================
TEST_F (DynamicVariableTest, VariablesAreFoundByFriendlyNameAndIdentifier)
{
    addParameter ("Speed", Real (0.5), nullptr, attribute ("identifier", new State ("velocity")));
    addParameter ("Blur Radius", Real (1.0));

    EXPECT_EQ (sheet->parameters.findDynamicVariableByFriendlyName ("Blur Radius"), 1);
    EXPECT_EQ (sheet->parameters.findDynamicVariableByFriendlyName ("Velocity"), -1);
    EXPECT_EQ (sheet->parameters.findDynamicVariableByIdentifier ("velocity"), 0);
    EXPECT_EQ (sheet->parameters.findDynamicVariableByIdentifier ("blurRadius"), 1);
    EXPECT_EQ (sheet->parameters.findDynamicVariableByIdentifier ("depth"), -1);
}

TEST_F (DynamicVariableTest, WithoutAnElementClassThereAreNoElementPointers)
{
    ASSERT_FALSE (hasClass ("Element"));
    addParameter ("Count", Integer (2));
    sheet->parameters.updateElementPointers();
    EXPECT_EQ (sheet->parameters.getElementPointers().size(), 0u);
}

//==============================================================================
TEST_F (DynamicVariableDeclaratorTest, AVariableWithAnIdentifierKeepsItsValueAcrossARenaming)
{
    auto* first = declare ("Blur", Real (1.0), attribute ("identifier", new State ("blur")));
    static_cast<Real*> (first->getValue())->set (4.0);

    auto* second = declare ("Blur Radius", Real (1.0), attribute ("identifier", new State ("blur")));

    EXPECT_EQ (second, first);
    EXPECT_EQ (describeParameters(), "Blur Radius=4");
}

TEST_F (DynamicVariableDeclaratorTest, TwoDeclarationsOfOneIdentifierWithTwoValueClassesAreTwoVariables)
{
    UpdateDynamicVariableDeclarator declarator (sheet->parameters);
    auto* real = declarator.variable ("Level", Real::staticClass.getDefaultObject(), nullptr, {});
    Integer two (2);
    auto* integer = declarator.variable ("Level", &two, nullptr, {});
    declarator.update (sheet->parameters);

    EXPECT_NE (real, integer);
    EXPECT_EQ (sheet->parameters.size(), 2u);
    EXPECT_EQ (integer->getValueClass(), &Integer::staticClass);
    EXPECT_EQ (real->getValueClass(), &Real::staticClass);
}

TEST_F (DynamicVariableDeclaratorTest, AVariableThatIsNotDeclaredAgainIsDropped)
{
    declare ("Speed", Real (0.5));
    UpdateDynamicVariableDeclarator declarator (sheet->parameters);
    declarator.variable ("Count", &sheet->count, nullptr, {});
    declarator.update (sheet->parameters);
    EXPECT_EQ (describeParameters(), "Count=0");
}

TEST_F (DynamicVariableDeclaratorTest, APrependedVariableGoesFirst)
{
    UpdateDynamicVariableDeclarator declarator (sheet->parameters);
    Integer one (1), two (2);
    declarator.variable ("First", &one, nullptr, {});
    declarator.variable ("Second", &two, nullptr, attribute ("prepend", new State (true)));
    declarator.variable ("Third", &two, nullptr, attribute ("prepend", new State ("true")));
    declarator.update (sheet->parameters);
    EXPECT_EQ (describeParameters(), "Second=2, First=1, Third=2");
}

TEST_F (DynamicVariableDeclaratorTest, AVariableFoundByItsFriendlyNameTakesTheNewIdentifier)
{
    auto* first = declare ("Blur", Real (1.0));
    auto* second = declare ("Blur", Real (1.0), attribute ("identifier", new State ("blur")));
    EXPECT_EQ (second, first);
    EXPECT_EQ (second->getIdentifier(), "blur");
}

TEST_F (DynamicVariableDeclaratorTest, InvalidateVariablesAsksTheOwnerAgain)
{
    sheet->declare = [] (DynamicVariableDeclarator& declarator)
    {
        Real half (0.5);
        declarator.variable ("Speed", &half, &half, {});
    };
    sheet->parameters.invalidateVariables();
    ASSERT_EQ (sheet->parameters.size(), 1u);
    static_cast<Real*> (sheet->parameters[0]->getValue())->set (0.75);

    sheet->parameters.invalidateVariables();

    EXPECT_EQ (sheet->numDeclarations, 2);
    EXPECT_EQ (describeParameters(), "Speed=0.75");
}

TEST_F (DynamicVariableDeclaratorTest, TheRelatedVariableClassOfAValueIsItsDynamicVariable)
{
    auto classes = UpdateDynamicVariableDeclarator::findVariableClasses (Real (0.5));
    EXPECT_EQ (classes.first, variableClass ("Real"));
    EXPECT_EQ (classes.second, &Real::staticClass);
}
