#include "Support/TestValues.h"
#include <Tov/Core/ClassRegistry.h>
#include <Tov/Standard/ExecutionContext.h>
#include <gtest/gtest.h>

using namespace tov;
using namespace tov::test;

namespace
{
/** A class whose instances cannot be made. */
class NoInstanceClass : public Class
{
public:
    NoInstanceClass() { setExpression (createAtomicClassExpression ("NoInstance")); }
    Class* declareBaseClass() override { return &Object::staticClass; }
    Object* createInstance() const override { return nullptr; }
};

/** A derived class that repeats its base's friendly name. */
class Square : public Rectangle
{
public:
    TOV_DECLARE_CLASS (Square, Rectangle)
};
TOV_BEGIN_CLASS (Square, { "friendlyName", "\"Geometric Shape\"" })
TOV_END_CLASS()

/** A metaclass that shares Shape's signature of width instead of declaring its own. */
class SharingShapeMetaclass : public Class
{
public:
    void declareMemberVariables (ExecutionContext& context) override
    {
        importMemberVariables ("Shape", 1, 1);
    }
};

class SharingShape : public Object
{
public:
    TOV_DECLARE_CLASS_WITH_METACLASS (SharingShape, Object, SharingShapeMetaclass)
};

TOV_BEGIN_CLASS (SharingShape)
TOV_END_CLASS()
}

TEST (ClassTest, NamesAndBases)
{
    EXPECT_EQ (RoundedRectangle::staticClass.getName(), "RoundedRectangle");
    RoundedRectangle::staticClass.initializeClass();
    EXPECT_EQ (RoundedRectangle::staticClass.getBaseClass(), &Rectangle::staticClass);
    EXPECT_EQ (Rectangle::staticClass.getBaseClass(), &Shape::staticClass);
    EXPECT_EQ (Shape::staticClass.getBaseClass(), &Object::staticClass);
    EXPECT_EQ (Object::staticClass.getBaseClass(), nullptr);
    EXPECT_EQ (getClass ("RoundedRectangle"), &RoundedRectangle::staticClass);
    EXPECT_TRUE (hasClass ("Shape"));
    EXPECT_FALSE (hasClass ("NoSuchShape"));
}

TEST (ClassTest, ClassOfAClassIsClass)
{
    EXPECT_EQ (Shape::staticClass.getClass(), &Class::staticClass);
    EXPECT_TRUE (Class::staticClass.isAbstract());
}

TEST (ClassTest, MembersInDeclarationOrderInheritedFirst)
{
    auto& c = RoundedRectangle::staticClass;
    c.initializeClass();
    ASSERT_EQ (c.getNumMemberVariables(), 5u);
    EXPECT_EQ (c.getBaseClassNumMemberVariables(), 4u);
    const char* names[] = { "title", "width", "height", "marker", "cornerRadius" };
    Class* classes[] = { &TestText::staticClass, &TestInteger::staticClass, &TestInteger::staticClass,
                         &Incomparable::staticClass, &TestInteger::staticClass };
    for (size_t i = 0; i < 5; ++i)
    {
        EXPECT_EQ (c.getMemberVariableSignature (i)->getName(), names[i]);
        EXPECT_EQ (c.getMemberVariableSignature (i)->getValueClass(), classes[i]);
    }
    EXPECT_TRUE (c.getMemberVariableSignature (3)->isReadOnly());
    EXPECT_EQ (c.findMemberVariable ("marker"), 3);
    EXPECT_EQ (c.findMemberVariable ("nothing"), -1);
    EXPECT_EQ (c.findMemberVariableSignature ("nothing"), nullptr);
}

TEST (ClassTest, FindCommonBaseClass)
{
    Square::staticClass.initializeClass();
    EXPECT_EQ (Class::findCommonBaseClass (&Shape::staticClass, &Shape::staticClass), &Shape::staticClass);
    EXPECT_EQ (Class::findCommonBaseClass (&RoundedRectangle::staticClass, &Shape::staticClass), &Shape::staticClass);
    EXPECT_EQ (Class::findCommonBaseClass (&RoundedRectangle::staticClass, &Square::staticClass), &Rectangle::staticClass);
    EXPECT_EQ (Class::findCommonBaseClass (&TestInteger::staticClass, &Square::staticClass), &Object::staticClass);
}

TEST (ClassTest, InheritsFrom)
{
    RoundedRectangle::staticClass.initializeClass();
    EXPECT_FALSE (Class::inheritsFrom (nullptr, &Shape::staticClass));
    EXPECT_FALSE (Class::inheritsFrom (&Shape::staticClass, nullptr));
    EXPECT_TRUE (RoundedRectangle::staticClass.inheritsFrom (&Shape::staticClass));
    EXPECT_TRUE (Shape::staticClass.inheritsFrom (&Shape::staticClass));
    EXPECT_FALSE (Shape::staticClass.inheritsFrom (&Rectangle::staticClass));
}

TEST (ClassTest, ClassAttributesAreInheritedWithOwnValuesWinning)
{
    Rectangle::staticClass.initializeClass();
    const auto& attributes = Rectangle::staticClass.getAttributes();
    ASSERT_EQ (attributes.size(), 3u);
    EXPECT_EQ (attributes.getStateName (0), "friendlyName");
    EXPECT_EQ (attributes.getStateName (1), "learnable");
    EXPECT_EQ (attributes.getStateName (2), "heightWhenUsedInParameterRow");
    EXPECT_FALSE (Rectangle::staticClass.getBooleanAttribute ("learnable", true));
    EXPECT_TRUE (Shape::staticClass.getBooleanAttribute ("learnable", false));
    EXPECT_EQ (Rectangle::staticClass.getIntegerAttribute ("heightWhenUsedInParameterRow", 0), 3);
    EXPECT_EQ (Rectangle::staticClass.getStringAttribute ("heightWhenUsedInParameterRow", "wrong type"), "wrong type");
}

TEST (ClassTest, SignatureAttributesWinOverClassAttributes)
{
    Shape::staticClass.initializeClass();
    auto* width = Shape::staticClass.findMemberVariableSignature ("width");
    auto* title = Shape::staticClass.findMemberVariableSignature ("title");
    Shape::staticClass.setAttribute ("unit", new State ("m"));
    EXPECT_EQ (Shape::staticClass.getStringAttribute (width, "unit"), "px");
    EXPECT_EQ (Shape::staticClass.getStringAttribute (title, "unit"), "m");
    EXPECT_EQ (Shape::staticClass.getStringAttribute (nullptr, "unit"), "m");
    Shape::staticClass.removeAttribute ("unit");
}

TEST (ClassTest, InterpolationKeyAndDiffDefaultToTheClassItself)
{
    EXPECT_EQ (Shape::staticClass.getClassAttribute ("interpolationKey"), &Shape::staticClass);
    EXPECT_EQ (Shape::staticClass.getClassAttribute ("diff"), &Shape::staticClass);
    EXPECT_EQ (Shape::staticClass.getClassAttribute ("target"), nullptr);
}

TEST (ClassTest, DerivedVariableAttributeLeavesTheBaseAlone)
{
    RoundedRectangle::staticClass.initializeClass();
    RoundedRectangle::staticClass.setVariableAttribute ("width", "unit", new State ("cm"));
    EXPECT_EQ (RoundedRectangle::staticClass.findMemberVariableSignature ("width")->getStringAttribute ("unit"), "cm");
    EXPECT_EQ (Shape::staticClass.findMemberVariableSignature ("width")->getStringAttribute ("unit"), "px");
    RoundedRectangle::staticClass.setVariableAttribute ("width", "unit", new State ("px"));
}

TEST (ClassTest, UnknownMemberOrNullStateIsIgnored)
{
    Shape::staticClass.initializeClass();
    Shape::staticClass.setVariableAttribute ("depth", "unit", new State ("cm"));
    Shape::staticClass.setVariableAttribute ("width", "unit", nullptr);
    EXPECT_EQ (Shape::staticClass.findMemberVariableSignature ("width")->getStringAttribute ("unit"), "px");
}

TEST (ClassTest, ImportedSignatureIsShared)
{
    SharingShape::staticClass.initializeClass();
    Shape::staticClass.initializeClass();
    ASSERT_EQ (SharingShape::staticClass.getNumMemberVariables(), 1u);
    auto* imported = SharingShape::staticClass.getMemberVariableSignature (0);
    EXPECT_EQ (imported, Shape::staticClass.findMemberVariableSignature ("width"));
    imported->setAttribute ("oftenAnimated", new State (true));
    EXPECT_TRUE (Shape::staticClass.findMemberVariableSignature ("width")->getBooleanAttribute ("oftenAnimated"));
    imported->removeAttribute ("oftenAnimated");
}

TEST (ClassTest, AddMemberVariableWithUnknownClassReportsAndUsesVoid)
{
    Empty::staticClass.initializeClass();
    juce::String log;
    ToStringExecutionContext context (log);
    class Scratch : public NoInstanceClass {} scratch;
    scratch.addMemberVariable (context, "NoSuchClass", "ghost");
    scratch.addMemberVariable (context, "Shape", "shape");
    EXPECT_EQ (log, "Error: Could not parse class name: NoSuchClass (in NoInstance)\n");
    ASSERT_EQ (scratch.getNumMemberVariables(), 2u);
    EXPECT_EQ (scratch.getMemberVariableSignature (0)->getName(), "ghost");
    EXPECT_EQ (scratch.getMemberVariableSignature (1)->getValueClass(), &Shape::staticClass);
}

TEST (ClassTest, FriendlyNameEqualToTheBasesIsComputedFromTheName)
{
    EXPECT_EQ (Shape::staticClass.getFriendlyName(), "Geometric Shape");
    EXPECT_EQ (Square::staticClass.getFriendlyName(), "Square");
    // An inherited friendly name is not taken either.
    EXPECT_EQ (Rectangle::staticClass.getFriendlyName(), "Rectangle");
}

TEST (ClassTest, FriendlyNameDropsTheBaseClassSuffix)
{
    // "RoundedRectangle" ends with its base's name "Rectangle".
    EXPECT_EQ (RoundedRectangle::staticClass.computeFriendlyName(), "Rounded");
    Rectangle::staticClass.initializeClass();
    Rectangle::staticClass.AttributesHost::setAttribute ("keepNameInFriendlyNames", new State (true));
    EXPECT_EQ (RoundedRectangle::staticClass.computeFriendlyName(), "Rounded Rectangle");
    Rectangle::staticClass.removeAttribute ("keepNameInFriendlyNames");
}

TEST (ClassTest, FriendlyNameSetAfterFirstUseTakesEffect)
{
    EXPECT_EQ (Empty::staticClass.getFriendlyName(), "Empty");
    juce::String log;
    ToStringExecutionContext context (log);
    Empty::staticClass.setAttribute (context, "friendlyName", new State ("Nothing At All"));
    EXPECT_EQ (Empty::staticClass.getFriendlyName(), "Nothing At All");
    Empty::staticClass.removeAttribute ("friendlyName");
    Empty::staticClass.setAttribute (context, "friendlyName", new State (""));
    EXPECT_EQ (Empty::staticClass.getFriendlyName(), "Empty");
    Empty::staticClass.removeAttribute ("friendlyName");
}

TEST (ClassTest, CreateObjectWithoutInstanceIsNull)
{
    NoInstanceClass noInstance;
    EXPECT_EQ (noInstance.createObject (nullptr), nullptr);
    EXPECT_EQ (noInstance.getDefaultObject(), nullptr);
}

TEST (ClassTest, AbstractClassCreatesNothing)
{
    EXPECT_TRUE (AbstractShape::staticClass.isAbstract());
    EXPECT_EQ (AbstractShape::staticClass.createObject (nullptr), nullptr);
    EXPECT_EQ (AbstractShape::staticClass.getDefaultObject(), nullptr);
}

TEST (ClassTest, DefaultObjectFlagsAndParent)
{
    auto* defaults = static_cast<Shape*> (Shape::staticClass.getDefaultObject());
    ASSERT_NE (defaults, nullptr);
    EXPECT_EQ (defaults, Shape::staticClass.getDefaultObject());
    EXPECT_TRUE (defaults->isClassDefaultObject());
    EXPECT_TRUE (defaults->isMultiThreadSafe());
    EXPECT_TRUE (defaults->width.isClassDefaultObject());
    EXPECT_TRUE (defaults->width.isMultiThreadSafe());
    EXPECT_TRUE (defaults->hasStaticAllocationFlag());
    EXPECT_EQ (defaults->getParent(), &Shape::staticClass);
    EXPECT_EQ (defaults->width.get(), 10);
    EXPECT_EQ (defaults->title.get(), "untitled");
}

TEST (ClassTest, ObjectCreatedUnderADefaultObjectJoinsTheDefaultTree)
{
    auto* defaults = Shape::staticClass.getDefaultObject();
    auto* object = Empty::staticClass.createObject (defaults);
    EXPECT_TRUE (object->isClassDefaultObject());
    EXPECT_TRUE (object->isMultiThreadSafe());
    EXPECT_EQ (object->getParent(), defaults);
    object->deleteThis();
}

TEST (ClassTest, DeinitializeAndInitializeAgain)
{
    auto& c = Rectangle::staticClass;
    c.initializeClass();
    auto* before = c.getDefaultObject();
    ASSERT_NE (before, nullptr);
    const auto numMembers = c.getNumMemberVariables();
    const auto numAttributes = c.getAttributes().size();

    c.deinitializeClass();
    EXPECT_FALSE (c.isInitialized());
    EXPECT_EQ (c.getNumMemberVariables(), 0u);
    EXPECT_TRUE (c.getAttributes().isEmpty());
    EXPECT_EQ (c.getBaseClass(), nullptr);
    EXPECT_EQ (c.getName(), "Rectangle");

    c.initializeClass();
    EXPECT_EQ (c.getNumMemberVariables(), numMembers);
    EXPECT_EQ (c.getAttributes().size(), numAttributes);
    EXPECT_EQ (c.getBaseClass(), &Shape::staticClass);
    auto* after = static_cast<Rectangle*> (c.getDefaultObject());
    ASSERT_NE (after, nullptr);
    EXPECT_EQ (after->height.get(), 5);
}

TEST (ClassTest, ClassUniqueIdentifierIsMd5OfTheName)
{
    const auto uuid = Class::getClassUniqueIdentifierByName ("Shape");
    EXPECT_EQ (uuid, Class::getClassUniqueIdentifierByName ("Shape"));
    EXPECT_EQ (uuid, Shape::staticClass.getClassUniqueIdentifier());
    EXPECT_NE (uuid, Class::getClassUniqueIdentifierByName ("Rectangle"));
    EXPECT_EQ (uuid.getRawData()[6] >> 4, 4);
    EXPECT_EQ (uuid.getRawData()[8] >> 6, 2);
    // MD5 ("Shape") is 880c1273b27d27cfc82004c3a4b205c9; bytes 6 and 8 take the version and variant.
    EXPECT_EQ (uuid.toDashedString(), "880c1273-b27d-47cf-8820-04c3a4b205c9");
}

TEST (ClassTest, RelatedClassByConvention)
{
    EXPECT_EQ (Rectangle::staticClass.getRelatedClass ("Editor"), nullptr);
    EXPECT_EQ (Shape::staticClass.getRelatedClass ("Text"), nullptr);
    EXPECT_EQ (Empty::staticClass.getRelatedClass ("Editor"), nullptr);
}

TEST (ClassTest, CreateMembersOfDerivedClassesThroughTheBase)
{
    auto* object = RoundedRectangle::staticClass.createObject (nullptr);
    auto* shape = static_cast<RoundedRectangle*> (object);
    EXPECT_EQ (Shape::staticClass.getMemberVariable (object, 1), &shape->width);
    EXPECT_EQ (RoundedRectangle::staticClass.getMemberVariable (object, 4), &shape->cornerRadius);
    EXPECT_EQ (RoundedRectangle::staticClass.getMemberVariable (object, 5), nullptr);
    object->deleteThis();
}

//==============================================================================
TEST (MemberSignatureTest, ValidNames)
{
    EXPECT_TRUE (MemberSignature::isValidName ("width"));
    EXPECT_TRUE (MemberSignature::isValidName ("mp3Decoder"));
    EXPECT_FALSE (MemberSignature::isValidName (""));
    EXPECT_FALSE (MemberSignature::isValidName ("Width"));
    EXPECT_FALSE (MemberSignature::isValidName ("3d"));
    EXPECT_FALSE (MemberSignature::isValidName ("two words"));
    EXPECT_FALSE (MemberSignature::isValidName ("under_score"));
}

TEST (MemberSignatureTest, Tokenize)
{
    EXPECT_EQ (MemberSignature::tokenizeIdentifier ("mp3Decoder"), juce::StringArray ({ "mp", "3Decoder" }));
    EXPECT_EQ (MemberSignature::tokenizeIdentifier ("HTTPServer"), juce::StringArray ({ "HTTPServer" }));
    EXPECT_EQ (MemberSignature::tokenizeIdentifier ("numberOfHTTPRequests"), juce::StringArray ({ "number", "Of", "HTTPRequests" }));
    EXPECT_EQ (MemberSignature::tokenizeIdentifier ("width"), juce::StringArray ({ "width" }));
}

TEST (MemberSignatureTest, FriendlyNames)
{
    EXPECT_EQ (MemberSignature::makeFriendlyNameFromName ("numberOfItems", true), "Number of Items");
    EXPECT_EQ (MemberSignature::makeFriendlyNameFromName ("numberOfItems", false), "number of items");
    EXPECT_EQ (MemberSignature::makeFriendlyNameFromName ("in", true), "In");
    EXPECT_EQ (MemberSignature::makeFriendlyNameFromName ("timeInSeconds", true), "Time in Seconds");
    EXPECT_EQ (MemberSignature::makeFriendlyNameFromName ("mp3Decoder", true), "Mp 3Decoder");
    VariableSignature signature (nullptr, "cornerRadius", false);
    EXPECT_EQ (signature.getFriendlyName(), "corner radius");
    EXPECT_EQ (signature.getFriendlyNameWithCapitals(), "Corner Radius");
    signature.setAttribute ("friendlyName", new State ("Rounding"));
    EXPECT_EQ (signature.getFriendlyNameWithCapitals(), "Rounding");
}

TEST (MemberSignatureTest, CanBeSaved)
{
    VariableSignature signature (nullptr, "x", true);
    EXPECT_FALSE (signature.canBeSaved (false));
    EXPECT_TRUE (signature.canBeSaved (true));
    signature.setReadOnly (false);
    EXPECT_TRUE (signature.canBeSaved (false));
    signature.setAttribute ("internal", new State (true));
    EXPECT_FALSE (signature.canBeSaved (true));
}

//==============================================================================
TEST (AttributesHostTest, TypedGettersNeedTheRightType)
{
    AttributesHost host;
    host.setAttribute ("count", new State ((int64_t) 4));
    host.setAttribute ("ratio", new State (0.5));
    host.setAttribute ("flag", new State (true));
    host.setAttribute ("label", new State ("text"));
    EXPECT_EQ (host.getIntegerAttribute ("count", -1), 4);
    EXPECT_EQ (host.getRealAttribute ("count", -1.0), -1.0);
    EXPECT_EQ (host.getRealAttribute ("ratio", -1.0), 0.5);
    EXPECT_TRUE (host.getBooleanAttribute ("flag", false));
    EXPECT_EQ (host.getStringAttribute ("label"), "text");
    EXPECT_EQ (host.getStringAttribute ("missing", "fallback"), "fallback");
    EXPECT_TRUE (host.hasAttributeOfType ("count", StateType::integerType));
    EXPECT_FALSE (host.hasAttributeOfType ("count", StateType::realType));
    EXPECT_EQ (host.getAttributeNamesByType (StateType::integerType), juce::StringArray ({ "count" }));
    host.setAttribute ("countMore", new State ((int64_t) 5));
    EXPECT_EQ (host.getAttributeNamesByType (StateType::integerType, "countM"), juce::StringArray ({ "countMore" }));
}

TEST (AttributesHostTest, AppendOverwritesInPlaceAndAddsAtTheEnd)
{
    AttributesHost host;
    host.setAttribute ("a", new State ((int64_t) 1));
    host.setAttribute ("b", new State ((int64_t) 2));
    StateMap more;
    more["b"] = std::make_shared<State> ((int64_t) 20);
    more["c"] = std::make_shared<State> ((int64_t) 30);
    host.appendAttributes (more);
    ASSERT_EQ (host.getAttributes().size(), 3u);
    EXPECT_EQ (host.getAttributes().getStateName (1), "b");
    EXPECT_EQ (host.getIntegerAttribute ("b"), 20);
    EXPECT_EQ (host.getAttribute ("c").get(), more.getState (1).get());
}
