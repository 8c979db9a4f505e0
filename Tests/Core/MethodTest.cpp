#include "Message/RemoteCallTestSupport.h"
#include <Tov/Core/Class.h>
#include <Tov/Core/MemberSignature.h>
#include <Tov/Standard/Program.h>
#include <Tov/Standard/ProgramGetSoftwareVersionMethod.h>
#include <gtest/gtest.h>

using namespace tov;
using namespace tov::test;

namespace
{
class MethodTest : public RemoteCallTestBase
{
protected:
    Class& counterClass = Counter::getStaticClass();

    static juce::String attributeText (const MemberSignature& signature, const char* name)
    {
        auto state = signature.getAttribute (name);
        return state != nullptr ? state->toString() : juce::String ("<none>");
    }
};
} // namespace

TEST_F (MethodTest, EachMethodLineDeclaresItsNameResultClassAndAttributes)
{
    ASSERT_EQ (counterClass.getNumMethods(), 4u);
    EXPECT_EQ (counterClass.getBaseClassNumMethods(), 0u);
    const char* names[] = { "describe", "add", "refuse", "stayQuiet" };
    const char* results[] = { "String", "Integer", "SuccessStatus", "Void" };
    for (size_t i = 0; i < 4; ++i)
    {
        EXPECT_EQ (counterClass.getMethodSignature (i)->getName(), names[i]);
        EXPECT_EQ (counterClass.getMethodSignature (i)->getValueClass()->getName(), results[i]);
    }
    EXPECT_EQ (attributeText (*counterClass.findMethodSignature ("add"), "httpVerb"), "\"POST\"");
    EXPECT_EQ (attributeText (*counterClass.findMethodSignature ("refuse"), "httpVerb"), "<none>");
    EXPECT_EQ (counterClass.findMethod ("stayQuiet"), 3);
    // Variables and methods are separate tables: the variable is no method and the reverse.
    EXPECT_EQ (counterClass.getNumMemberVariables(), 1u);
    EXPECT_EQ (counterClass.findMethod ("value"), -1);
    EXPECT_EQ (counterClass.findMemberVariable ("add"), -1);
}

TEST_F (MethodTest, GetMethodClassGivesTheClassThatPerformsEachMethod)
{
    EXPECT_EQ (counterClass.getMethodClass (0), &DescribeCounterMethod::staticClass);
    EXPECT_EQ (counterClass.getMethodClass (1), &AddToCounterMethod::staticClass);
    EXPECT_EQ (counterClass.getMethodClass (2), &RefusingCounterMethod::staticClass);
    EXPECT_EQ (counterClass.getMethodClass (3), &SilentCounterMethod::staticClass);
    EXPECT_EQ (counterClass.getMethodClass (4), nullptr);
    EXPECT_EQ (Object::staticClass.getMethodClass (0), nullptr);
}

TEST_F (MethodTest, TheFirstMethodOfAClassCannotBeCreatedByName)
{
    EXPECT_EQ (counterClass.findMethod ("describe"), 0);
    EXPECT_EQ (counterClass.createMethod ("describe"), nullptr);
    // Through its class it can.
    Owned<Object> describe (counterClass.getMethodClass (0)->createObject (nullptr));
    ASSERT_NE (dynamic_cast<DescribeCounterMethod*> (describe.get()), nullptr);
}

TEST_F (MethodTest, CreateMethodMakesTheMethodOfItsClassWithTheParentGiven)
{
    Counter counter;
    Owned<Method> add (counterClass.createMethod ("add", &counter));
    ASSERT_NE (add, nullptr);
    EXPECT_EQ (add->getClass(), &AddToCounterMethod::staticClass);
    EXPECT_EQ (add->getParent(), &counter);
    EXPECT_FALSE (add->isObjectInitialized());
    EXPECT_EQ (static_cast<AddToCounterMethod&> (*add).amount.get(), 0);
}

TEST_F (MethodTest, AnUnknownNameCreatesNoMethod)
{
    EXPECT_EQ (counterClass.findMethod ("multiply"), -1);
    EXPECT_EQ (counterClass.createMethod ("multiply"), nullptr);
    EXPECT_EQ (Object::staticClass.createMethod ("add"), nullptr);
}

TEST_F (MethodTest, ADerivedClassListsTheInheritedMethodsFirst)
{
    auto& derived = ResettableCounter::getStaticClass();
    ASSERT_EQ (derived.getNumMethods(), 5u);
    EXPECT_EQ (derived.getBaseClassNumMethods(), 4u);
    EXPECT_EQ (derived.getMethodSignature (4)->getName(), "reset");
    EXPECT_EQ (derived.getMethodClass (1), &AddToCounterMethod::staticClass);
    EXPECT_EQ (derived.getMethodClass (4), &ResetCounterMethod::staticClass);
    // An inherited signature is a copy: it has the base's attributes, in an object of its own.
    EXPECT_NE (derived.getMethodSignature (1), counterClass.getMethodSignature (1));
    EXPECT_EQ (attributeText (*derived.getMethodSignature (1), "httpVerb"), "\"POST\"");

    Owned<Method> reset (derived.createMethod ("reset"));
    ASSERT_NE (reset, nullptr);
    ResettableCounter counter;
    counter.value.set (12, false);
    Owned<Object> status (reset->callOnThis (counter));
    EXPECT_EQ (counter.value.get(), 0);
    EXPECT_EQ (static_cast<SuccessStatus&> (*status).getMessage(), "reset");
}

TEST_F (MethodTest, AMethodAttributeSetInADerivedClassLeavesTheBaseAlone)
{
    auto& derived = ResettableCounter::getStaticClass();
    derived.setMethodAttribute ("add", "httpVerb", new State (juce::String ("PUT")));
    EXPECT_EQ (attributeText (*derived.findMethodSignature ("add"), "httpVerb"), "\"PUT\"");
    EXPECT_EQ (attributeText (*counterClass.findMethodSignature ("add"), "httpVerb"), "\"POST\"");
    // An unknown method or a null state is ignored.
    derived.setMethodAttribute ("multiply", "httpVerb", new State (juce::String ("PUT")));
    derived.setMethodAttribute ("add", "httpVerb", nullptr);
    EXPECT_EQ (attributeText (*derived.findMethodSignature ("add"), "httpVerb"), "\"PUT\"");
}

TEST_F (MethodTest, AMethodCarriesItsArgumentsThroughItsStateAndIsPerformedOnAnObject)
{
    AddToCounterMethod add (5);
    ExecutionContext context;
    Owned<Object> copy (Object::createFromState (context, add.makeState (false, true)));
    auto* rebuilt = dynamic_cast<AddToCounterMethod*> (copy.get());
    ASSERT_NE (rebuilt, nullptr);
    EXPECT_EQ (rebuilt->amount.get(), 5);

    Counter counter;
    counter.value.set (2, false);
    Owned<Object> result (rebuilt->callOnThis (counter));
    EXPECT_EQ (counter.value.get(), 7);
    EXPECT_EQ (result->toString(), "7");
}

TEST_F (MethodTest, ProgramDeclaresGetSoftwareVersionWithItsHttpAttributes)
{
    auto& programClass = Program::getStaticClass();
    ASSERT_EQ (programClass.getNumMethods(), 1u);
    auto& signature = *programClass.getMethodSignature (0);
    EXPECT_EQ (signature.getName(), "getSoftwareVersion");
    EXPECT_EQ (signature.getValueClass(), &SoftwareVersion::staticClass);
    EXPECT_EQ (attributeText (signature, "httpUri"), "\"/api/live/softwareVersion\"");
    EXPECT_EQ (attributeText (signature, "httpVerb"), "\"GET\"");
    EXPECT_EQ (programClass.getMethodClass (0), &ProgramGetSoftwareVersionMethod::staticClass);

    auto& methodClass = ProgramGetSoftwareVersionMethod::getStaticClass();
    EXPECT_EQ (methodClass.getStringAttribute ("httpUri"), "/api/live/softwareVersion");
    EXPECT_EQ (methodClass.getStringAttribute ("httpVerb"), "GET");
    EXPECT_TRUE (methodClass.inheritsFrom (&ProgramMethod::staticClass));
    EXPECT_TRUE (methodClass.inheritsFrom (&SingletonMethod::staticClass));
}

TEST_F (MethodTest, GetSoftwareVersionIsProgramsFirstMethodAndSoIsNotCreatedByName)
{
    EXPECT_EQ (Program::getStaticClass().createMethod ("getSoftwareVersion"), nullptr);
}

//==============================================================================
TEST_F (MethodTest, SingletonMethodCallPerformsTheMethodOnTheProgram)
{
    ProgramGetSoftwareVersionMethod method;
    EXPECT_EQ (method.getSingleton(), &Program::get());
    Owned<Object> version (method.call());
    auto* softwareVersion = dynamic_cast<SoftwareVersion*> (version.get());
    ASSERT_NE (softwareVersion, nullptr);
    EXPECT_NE (softwareVersion, &program.getSoftwareVersion());
    EXPECT_EQ (softwareVersion->toString(), program.getSoftwareVersion().toString());
    EXPECT_EQ (softwareVersion->versionNumberToString ("."), "1.2.3");
}

TEST_F (MethodTest, AProgramMethodOnSomethingElseThanAProgramAnswersNothing)
{
    ProgramGetSoftwareVersionMethod method;
    Counter counter;
    EXPECT_EQ (method.callOnThis (counter), nullptr);
}

TEST (MethodWithoutProgramTest, AProgramMethodHasNoSingletonOnceTheProgramIsGone)
{
    TestProgram::ensureTestLibraryTree();
    ASSERT_FALSE (Program::isStillRunning());
    ProgramGetSoftwareVersionMethod method;
    EXPECT_EQ (method.getSingleton(), nullptr);
    EXPECT_EQ (method.call(), nullptr);
}
