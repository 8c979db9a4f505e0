#include "Support/LogTestSupport.h"
#include "Support/RecordingExecutionContext.h"
#include "Support/TestValues.h"
#include <Tov/Core/ClassRegistry.h>
#include <Tov/Core/ConverterClassGenerators.h>
#include <Tov/Core/Library.h>
#include <Tov/Core/ObjectConverters.h>
#include <Tov/Pointer/OwnedPointer.h>
#include <Tov/Standard/ExecutionContext.h>
#include <gtest/gtest.h>

using namespace tov;
using namespace tov::test;

namespace
{
/** What the converters of these tests make: a text. No other test converts into it. */
class Label : public Object
{
public:
    TOV_DECLARE_CLASS (Label, Object)
    TestText text;
};

/** Writes "shape <title>". */
using ShapeToLabel = Converter<Shape, Label>;
class ShapeToLabelConverter : public ShapeToLabel
{
public:
    TOV_DECLARE_CLASS (ShapeToLabelConverter, ShapeToLabel)
    bool convert (ExecutionContext&, const Object& source, Object& target, int64_t) const override
    {
        static_cast<Label&> (target).text.set ("shape " + static_cast<const Shape&> (source).title.get(), false);
        return true;
    }
};

/** Secret, for any object: writes its class name. */
using AnythingToLabel = Converter<Object, Label>;
class AnythingToLabelConverter : public AnythingToLabel
{
public:
    TOV_DECLARE_CLASS (AnythingToLabelConverter, AnythingToLabel)
    bool convert (ExecutionContext&, const Object& source, Object& target, int64_t) const override
    {
        static_cast<Label&> (target).text.set (source.getClassName(), false);
        return true;
    }
};

/** Refuses empty rectangles through canConvert; fails with an error otherwise. */
using RectanglePointerToShapePointer = OwnedPointerConverter<Rectangle, Shape>;
class RectanglePointerConverter : public RectanglePointerToShapePointer
{
public:
    TOV_DECLARE_CLASS (RectanglePointerConverter, RectanglePointerToShapePointer)
    bool canConvert (const Object& object, Class*) const override   { return static_cast<const ObjectOwnedPointer&> (object).get() != nullptr; }
    bool convert (ExecutionContext& context, const Object&, Object&, int64_t) const override
    {
        context.error ("no room");
        return false;
    }
};

TOV_BEGIN_CLASS (Label)
    TOV_VARIABLE (text)
TOV_END_CLASS()

TOV_BEGIN_CLASS (ShapeToLabelConverter)
TOV_END_CLASS()

TOV_BEGIN_CLASS (AnythingToLabelConverter, { "secret", "true" })
TOV_END_CLASS()

TOV_BEGIN_CLASS (RectanglePointerConverter)
TOV_END_CLASS()

class ObjectConverterTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        TestProgram::ensureTestLibraryTree();
        auto* root = Library::getRootLibrary();
        if (root->getLibraryByName ("ConverterTests") != nullptr)
            return;
        auto* library = new NamedLibrary ("ConverterTests", {});
        library->addClass<Label>();
        library->addClass<ShapeToLabelConverter>();
        library->addClass<AnythingToLabelConverter>();
        library->addClass<RectanglePointerConverter>();
        root->addLibrary (library);
    }

    ObjectConverters& converters() const        { return *ObjectConverters::getInstanceWithoutCreating(); }
    static Class* labelClass()                  { return &Label::getStaticClass(); }

    /** The converters that ObjectConverters holds, by class name, in table order. */
    juce::StringArray converterClassNames() const
    {
        juce::StringArray names;
        for (size_t i = 0; i < converters().getNumConverters(); ++i)
            names.add (converters().getConverter (i)->getClassName());
        return names;
    }
};
} // namespace

TEST_F (ObjectConverterTest, EveryConcreteConverterHasOneInstanceInTheOrderOfInitialisation)
{
    ASSERT_NE (ObjectConverters::getInstanceWithoutCreating(), nullptr);
    EXPECT_EQ (converterClassNames(), juce::StringArray ({ "ShapeToLabelConverter", "AnythingToLabelConverter", "RectanglePointerConverter" }));
    EXPECT_EQ (converters().getBaseClass(), &ObjectConverter::staticClass);
}

TEST_F (ObjectConverterTest, TheConverterGeneratorMakesAnAbstractClassWhoseSourceAndTargetAreInherited)
{
    auto* generated = getClass ("Converter({source=Shape,target=Label})");
    ASSERT_NE (generated, nullptr);
    EXPECT_TRUE (generated->isAbstract());
    EXPECT_EQ (generated->createObject(), nullptr);
    EXPECT_EQ (generated->getBaseClass(), &ObjectConverter::staticClass);
    EXPECT_EQ (ShapeToLabelConverter::getStaticClass().getBaseClass(), generated);
    EXPECT_EQ (ShapeToLabelConverter::getStaticClass().getClassAttribute ("source"), &Shape::staticClass);
    EXPECT_EQ (ShapeToLabelConverter::getStaticClass().getClassAttribute ("target"), labelClass());
    auto* converter = converters().getConverter (0);
    EXPECT_EQ (converter->getSourceClass(), &Shape::staticClass);
    EXPECT_EQ (converter->getTargetClass (&Shape::staticClass, labelClass()), labelClass());
}

TEST_F (ObjectConverterTest, TheOwnedPointerConverterGeneratorNamesOwnedPointerClasses)
{
    auto* generated = getClass ("OwnedPointerConverter({sourcePointed=Rectangle,targetPointed=Shape})");
    ASSERT_NE (generated, nullptr);
    EXPECT_TRUE (generated->isAbstract());
    EXPECT_EQ (generated->getClassAttribute ("source"), ownedPointerClass (&Rectangle::staticClass));
    EXPECT_EQ (generated->getClassAttribute ("target"), ownedPointerClass (&Shape::staticClass));
    EXPECT_EQ (RectanglePointerConverter::getStaticClass().getClassAttribute ("source"), ownedPointerClass (&Rectangle::staticClass));
}

TEST_F (ObjectConverterTest, AConverterWhoseSourceIsObjectMatchesEveryObject)
{
    auto* anything = converters().getConverter (1);
    Integer number (3);
    Label label;
    Rectangle rectangle;
    EXPECT_TRUE (anything->doesMatch (number, labelClass()));
    EXPECT_TRUE (anything->doesMatch (label, labelClass()));
    EXPECT_TRUE (anything->doesMatch (rectangle, labelClass()));
    EXPECT_FALSE (anything->doesMatch (number, &Shape::staticClass));
}

TEST_F (ObjectConverterTest, ASecretConverterIsFoundButLeftOutOfTheNamesUnlessAskedFor)
{
    Integer number (3);
    EXPECT_EQ (converters().getFirstConverter (number, labelClass()), converters().getConverter (1));
    EXPECT_TRUE (converters().getConverter (1)->isSecret());
    EXPECT_FALSE (converters().getConverter (0)->isSecret());
    EXPECT_EQ (converters().getAvailableConverterNames (number, labelClass(), false), juce::StringArray());
    EXPECT_EQ (converters().getAvailableConverterNames (number, labelClass(), true),
               juce::StringArray ({ converters().getConverter (1)->toString() }));

    Shape shape;
    EXPECT_EQ (converters().getAvailableConverterNames (shape, labelClass(), false),
               juce::StringArray ({ converters().getConverter (0)->toString() }));
    EXPECT_EQ (converters().getAvailableConverterNames (shape, labelClass(), true).size(), 2);
}

TEST_F (ObjectConverterTest, TheFirstConverterInTableOrderIsTakenAndGetConverterFindsOneByName)
{
    Rectangle rectangle;
    EXPECT_EQ (converters().getFirstConverter (rectangle, labelClass()), converters().getConverter (0));
    const auto name = converters().getConverter (1)->toString();
    EXPECT_EQ (converters().getConverter (rectangle, labelClass(), name), converters().getConverter (1));
    std::vector<ObjectConverter*> available;
    converters().getAvailableConverters (rectangle, labelClass(), available);
    EXPECT_EQ (available, (std::vector<ObjectConverter*> { converters().getConverter (0), converters().getConverter (1) }));
}

TEST_F (ObjectConverterTest, GetConverterWithAnUnknownNameGivesNull)
{
    Rectangle rectangle;
    EXPECT_EQ (converters().getConverter (rectangle, labelClass(), "Rectangle To Poem"), nullptr);
}

TEST_F (ObjectConverterTest, NoConverterMatchesAnUnrelatedTarget)
{
    Rectangle rectangle;
    EXPECT_EQ (converters().getFirstConverter (rectangle, &Integer::staticClass), nullptr);
    EXPECT_FALSE (converters().isConvertibleTo (rectangle, &Integer::staticClass));
    EXPECT_TRUE (converters().isConvertibleTo (rectangle, labelClass()));
}

TEST_F (ObjectConverterTest, CompatibilityAcceptsAMapOfDerivedValuesForAMapOfBaseValues)
{
    auto* derivedMap = getClass ("Map({key=String,value=Rectangle})");
    auto* baseMap = getClass ("Map({key=String,value=Shape})");
    ASSERT_NE (derivedMap, nullptr);
    ASSERT_NE (baseMap, nullptr);
    EXPECT_TRUE (ObjectConverter::isCompatible (derivedMap, baseMap));
    EXPECT_FALSE (ObjectConverter::isCompatible (baseMap, derivedMap));
    EXPECT_FALSE (ObjectConverter::isCompatible (getClass ("Map({key=Integer,value=Rectangle})"), baseMap));
}

TEST_F (ObjectConverterTest, CompatibilityGoesThroughNestedTemplatesButNotAcrossTemplateNames)
{
    auto* derived = getClass ("OwnedVector(OwnedPointer(RoundedRectangle))");
    auto* base = getClass ("OwnedVector(OwnedPointer(Shape))");
    EXPECT_TRUE (ObjectConverter::isCompatible (derived, base));
    EXPECT_FALSE (ObjectConverter::isCompatible (base, derived));
    EXPECT_FALSE (ObjectConverter::isCompatible (getClass ("OwnedPointer(Rectangle)"), getClass ("WeakPointer(Shape)")));
    EXPECT_FALSE (ObjectConverter::isCompatible (nullptr, base));
    EXPECT_TRUE (ObjectConverter::isCompatible (&Rectangle::staticClass, &Shape::staticClass));
}

TEST_F (ObjectConverterTest, ConvertToHandsTheWorkToTheFirstConverter)
{
    Rectangle rectangle;
    rectangle.title.set ("door", false);
    Label label;
    ExecutionContext context;
    EXPECT_TRUE (rectangle.convertTo (context, label));
    EXPECT_EQ (label.text.get(), "shape door");

    Integer number (3);
    EXPECT_TRUE (number.convertTo (context, label));
    EXPECT_EQ (label.text.get(), "Integer");
}

TEST_F (ObjectConverterTest, ConvertToWithoutAConverterSucceedsAndChangesNothing)
{
    Rectangle rectangle;
    Integer number (3);
    ExecutionContext context;
    EXPECT_TRUE (rectangle.convertTo (context, number));
    EXPECT_EQ (number.get(), 3);
    EXPECT_TRUE (rectangle.convertTo (context, number, nullptr));
}

TEST_F (ObjectConverterTest, ACanConvertThatRefusesHidesTheConverterAndAFailingConversionIsReported)
{
    OwnedPointer<Rectangle> empty;
    OwnedPointer<Shape> target;
    EXPECT_EQ (converters().getFirstConverter (empty, target.getClass()), nullptr);

    OwnedPointer<Rectangle> full (create<Rectangle>());
    auto* converter = converters().getFirstConverter (full, target.getClass());
    ASSERT_EQ (converter, converters().getConverter (2));
    tov::testing::RecordingExecutionContext context;
    EXPECT_FALSE (full.convertTo (context, target));
    EXPECT_EQ (context.errors, std::vector<juce::String> { "no room" });
}

TEST_F (ObjectConverterTest, IsConvertibleToAsksTheConvertersBeforeTheTarget)
{
    Rectangle rectangle;
    Label label;
    EXPECT_TRUE (rectangle.isConvertibleTo (label));
    EXPECT_TRUE (rectangle.isConvertibleTo (labelClass()));
    EXPECT_FALSE (rectangle.isConvertibleTo (&Integer::staticClass));
}

TEST_F (ObjectConverterTest, AvailableConvertersWithoutATargetAreThoseOfTheSource)
{
    Rectangle rectangle;
    std::vector<ObjectConverter*> available;
    converters().getAvailableConverters (rectangle, available);
    EXPECT_EQ (available, (std::vector<ObjectConverter*> { converters().getConverter (0), converters().getConverter (1) }));

    OwnedPointer<Rectangle> full (create<Rectangle>());
    available.clear();
    converters().getAvailableConverters (full, available);
    EXPECT_EQ (available, (std::vector<ObjectConverter*> { converters().getConverter (1), converters().getConverter (2) }));
}

TEST_F (ObjectConverterTest, TheRegistryGoesWithTheLibraryTreeAndComesBackWithIt)
{
    deinitializeTov();
    EXPECT_EQ (ObjectConverters::getInstanceWithoutCreating(), nullptr);
    SetUp();
    ASSERT_NE (ObjectConverters::getInstanceWithoutCreating(), nullptr);
    EXPECT_EQ (converterClassNames(), juce::StringArray ({ "ShapeToLabelConverter", "AnythingToLabelConverter", "RectanglePointerConverter" }));
}

TEST_F (ObjectConverterTest, AConverterLeavesTheRegistryWithItsClass)
{
    Library::getRootLibrary()->removeLibrary ("ConverterTests");
    EXPECT_EQ (converters().getNumConverters(), 0u);
    SetUp();
    EXPECT_EQ (converters().getNumConverters(), 3u);
}
