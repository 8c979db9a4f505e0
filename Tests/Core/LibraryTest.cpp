#include "Support/ScratchDirectory.h"
#include "Support/TestValues.h"
#include <Tov/Core/AutoDeclaredSingletons.h>
#include <Tov/Core/ClassRegistry.h>
#include <Tov/Core/DynamicallyLinkedLibrary.h>
#include <Tov/Core/TemplateClassGenerator.h>
#include <gtest/gtest.h>
#include <atomic>
#include <thread>

using namespace tov;
using namespace tov::test;

namespace
{
/** A library that counts its initialisations. */
class CountingLibrary : public Library
{
public:
    explicit CountingLibrary (juce::String name) : name (std::move (name)) {}
    juce::String getName() const override { return name; }
    void initializeLibrary() override     { ++initializations; Library::initializeLibrary(); }
    int initializations = 0;

private:
    juce::String name;
};

// A template "Box(target)" whose classes derive from Shape.
class BoxClassGenerator : public TemplateClassGenerator
{
public:
    std::atomic<int> creations { 0 };
    static std::atomic<int> initializations;

    class BoxClass : public TemplateGeneratedClass
    {
    public:
        Class* declareBaseClass() override                  { return &Shape::staticClass; }
        Object* createInstance() const override             { return new Shape(); }
        void declareAttributes (ExecutionContext& context) override
        {
            ++initializations;
            TemplateGeneratedClass::declareAttributes (context);
            setAttribute (context, "friendlyNameExpression", new State ("Box of %1s"));
        }
    };

    Class* create (const State& arguments, juce::String& errorMessage) override
    {
        ++creations;
        return TemplateClassGenerator::create (arguments, errorMessage);
    }

protected:
    TemplateGeneratedClass* createEmptyClass() override { return new BoxClass(); }
    void declareParameters (ExecutionContext&) override { addParameter ("target", "Object"); }
};
std::atomic<int> BoxClassGenerator::initializations { 0 };

// A template "Pair(first, second)" with a friendly name that names a missing third parameter.
class PairClassGenerator : public TemplateClassGenerator
{
public:
    class PairClass : public TemplateGeneratedClass
    {
    public:
        Class* declareBaseClass() override                  { return &Shape::staticClass; }
        Object* createInstance() const override             { return new Shape(); }
        void declareAttributes (ExecutionContext& context) override
        {
            TemplateGeneratedClass::declareAttributes (context);
            setAttribute (context, "friendlyNameExpression", new State ("%1 and %2 and %3 at 100%"));
        }
    };

protected:
    TemplateGeneratedClass* createEmptyClass() override { return new PairClass(); }
    void declareParameters (ExecutionContext&) override
    {
        addParameter ("first", "Object");
        addParameter ("second", "Object");
        addParameter ("ignored", "NoSuchClass");
    }
};

std::shared_ptr<State> classArgument (Class* c)
{
    auto state = std::make_shared<State>();
    state->setClassValue (c);
    return state;
}

/** Adds a library of test generators for the life of a test. */
class GeneratorFixture : public ::testing::Test
{
protected:
    void SetUp() override
    {
        library = new NamedLibrary ("Generators", {});
        box = new BoxClassGenerator();
        library->addClassGenerator ("Box", box);
        library->addClassGenerator ("Pair", new PairClassGenerator());
        Library::getRootLibrary()->addLibrary (library);
    }
    void TearDown() override { Library::getRootLibrary()->removeLibrary (library); }

    Library* library = nullptr;
    BoxClassGenerator* box = nullptr;
};
}

TEST (LibraryTest, TreeHasTheSubLibrariesInOrder)
{
    auto* tov = Library::getRootLibrary()->getLibraryByName ("Tov");
    ASSERT_NE (tov, nullptr);
    EXPECT_EQ (Library::getRootLibrary()->getName(), "<root>");
    juce::StringArray names;
    for (size_t i = 0; i < tov->getNumLibraries(); ++i)
        names.add (tov->getLibrary (i)->getName());
    EXPECT_EQ (names, juce::StringArray ({ "Core", "Atomic", "Pointer", "Container", "Network", "Message", "Standard" }));
    auto* message = tov->getLibraryByName ("Message");
    ASSERT_EQ (message->getNumLibraries(), 3u);
    EXPECT_EQ (message->getLibrary (0)->getName(), "Transaction");
    EXPECT_EQ (message->getLibrary (1)->getName(), "Mirroring");
    EXPECT_EQ (message->getLibrary (2)->getName(), "RemoteCall");
    auto* standard = tov->getLibraryByName ("Standard");
    EXPECT_EQ (standard->getLibrary (standard->getNumLibraries() - 1)->getName(), "Profiler");
    EXPECT_TRUE (tov->getSourceCodeDirectory().getFullPathName().endsWith ("Libraries/Tov"));
}

TEST (LibraryTest, PathWalksThreeLevels)
{
    auto* mirroring = Library::getRootLibrary()->getLibraryByPath ("Tov/Message/Mirroring");
    ASSERT_NE (mirroring, nullptr);
    EXPECT_EQ (mirroring->getName(), "Mirroring");
    EXPECT_EQ (mirroring->toString(), "Mirroring");
    EXPECT_EQ (mirroring->getFriendlyName(), "Mirroring");
}

TEST (LibraryTest, PathWithUnknownFirstSegmentIsNull)
{
    EXPECT_EQ (Library::getRootLibrary()->getLibraryByPath ("Nope/Message"), nullptr);
    EXPECT_EQ (Library::getRootLibrary()->getLibraryByPath ("Tov/Nope"), nullptr);
    EXPECT_EQ (Library::getRootLibrary()->getLibraryByPath ("Nope"), nullptr);
}

TEST (LibraryTest, AddingToAnInitialisedLibraryInitialisesAtOnce)
{
    Library parent;
    auto* early = new CountingLibrary ("early");
    parent.addLibrary (early);
    EXPECT_EQ (early->initializations, 0);
    parent.initializeLibrary();
    EXPECT_EQ (early->initializations, 1);
    auto* late = new CountingLibrary ("late");
    parent.addLibrary (late);
    EXPECT_EQ (late->initializations, 1);
    EXPECT_EQ (late->getParent(), &parent);
}

TEST (LibraryTest, DeinitialisingAnUninitialisedLibraryChangesNothing)
{
    Library library;
    library.addClass<Empty>();
    Empty::staticClass.initializeClass();
    library.deinitializeLibrary();
    EXPECT_TRUE (Empty::staticClass.isInitialized());
    library.removeClass (&Empty::staticClass);
    Empty::staticClass.initializeClass();
    Library::getRootLibrary()->getLibraryByName ("Tests")->addClass<Empty>();
}

// The registry's answers are remembered by each thread: a class removed after a look-up is
// no longer found, and found again once added back.
TEST (LibraryTest, RemovedClassIsNotFoundAfterALookUp)
{
    auto* registry = ClassRegistry::getInstance();
    auto* tests = Library::getRootLibrary()->getLibraryByName ("Tests");
    ASSERT_NE (tests, nullptr);
    const auto* expression = Empty::staticClass.getExpression();
    ASSERT_EQ (registry->resolve (expression), &Empty::staticClass);
    ASSERT_EQ (registry->resolve (expression), &Empty::staticClass);
    tests->removeClass (&Empty::staticClass);
    EXPECT_EQ (registry->resolve (expression), nullptr);
    tests->addClass<Empty>();
    Empty::staticClass.initializeClass();
    EXPECT_EQ (registry->resolve (expression), &Empty::staticClass);
}

TEST (LibraryTest, RemoveLibraryByNameAndUnknownOnesAreIgnored)
{
    Library parent;
    parent.addLibrary (new CountingLibrary ("a"));
    parent.addLibrary (new CountingLibrary ("b"));
    parent.removeLibrary ("a");
    parent.removeLibrary ("zzz");
    ASSERT_EQ (parent.getNumLibraries(), 1u);
    EXPECT_EQ (parent.getLibrary (0)->getName(), "b");
}

TEST (LibraryTest, ClassesByName)
{
    EXPECT_EQ (getClass ("Object"), &Object::staticClass);
    EXPECT_EQ (getClass ("Class"), &Class::staticClass);
    EXPECT_EQ (getClass ("Shape"), &Shape::staticClass);
    EXPECT_EQ (getClass ("tov::Shape"), &Shape::staticClass);
    EXPECT_EQ (getClass ("NoSuchThing"), nullptr);
    EXPECT_EQ (Shape::staticClass.getLibrary(), Library::getRootLibrary()->getLibraryByName ("Tests"));
    EXPECT_EQ (Object::staticClass.getLibrary(), Library::getRootLibrary()->getLibraryByPath ("Tov/Core"));
}

TEST (LibraryTest, AllClassesInheritedFrom)
{
    std::vector<Class*> classes;
    Library::getRootLibrary()->getLibraryByName ("Tests")->getAllClassesInheritedFrom (&Shape::staticClass, false, classes);
    EXPECT_EQ (classes, (std::vector<Class*> { &Shape::staticClass, &Rectangle::staticClass, &RoundedRectangle::staticClass }));
    classes.clear();
    Library::getRootLibrary()->getAllClassesInheritedFrom (&Object::staticClass, true, classes);
    EXPECT_TRUE (std::find (classes.begin(), classes.end(), &AbstractShape::staticClass) == classes.end());
    EXPECT_TRUE (std::find (classes.begin(), classes.end(), &Empty::staticClass) != classes.end());
}

TEST (LibraryTest, ClassByUuid)
{
    auto* root = Library::getRootLibrary();
    EXPECT_EQ (root->getClassByUuid (Class::getClassUniqueIdentifierByName ("Rectangle")), &Rectangle::staticClass);
    EXPECT_EQ (root->getClassByUuid (Class::getClassUniqueIdentifierByName ("Nothing")), nullptr);
}

TEST (LibraryTest, TovStartsAgainAfterItStopped)
{
    deinitializeTov();
    EXPECT_EQ (ClassRegistry::getInstanceIfExists(), nullptr);
    EXPECT_EQ (getClass ("Object"), nullptr);
    EXPECT_FALSE (Shape::staticClass.isInitialized());

    auto* root = initializeTov();
    root->addLibrary (createTestLibrary());
    EXPECT_EQ (getClass ("Object"), &Object::staticClass);
    EXPECT_EQ (getClass ("Shape"), &Shape::staticClass);
    EXPECT_TRUE (Shape::staticClass.isInitialized());
    auto* defaults = static_cast<Shape*> (Shape::staticClass.getDefaultObject());
    EXPECT_EQ (defaults->width.get(), 10);
}

//==============================================================================
namespace
{
class Tool : public Object
{
public:
    TOV_DECLARE_CLASS (Tool, Object)
};
class Hammer : public Tool
{
public:
    TOV_DECLARE_CLASS (Hammer, Tool)
};
class AbstractTool : public Tool
{
public:
    TOV_DECLARE_CLASS (AbstractTool, Tool)
    virtual void use() = 0;
};
TOV_BEGIN_CLASS (Tool)
TOV_END_CLASS()
TOV_BEGIN_CLASS (Hammer, { "friendlyName", "\"Big Hammer\"" })
TOV_END_CLASS()
TOV_BEGIN_CLASS (AbstractTool)
TOV_END_CLASS()
}

TEST (AutoDeclaredSingletonsTest, ConcreteDerivedClassesGetASingleton)
{
    auto* singletons = new AutoDeclaredSingletons ("Tool");
    Library::addAutoDeclaredSingletons (singletons);
    auto* library = new NamedLibrary ("Tools", {});
    library->addClass<Tool>();
    library->addClass<Hammer>();
    library->addClass<AbstractTool>();
    Library::getRootLibrary()->addLibrary (library);

    // The base class names the family and gets no singleton itself; nor does the abstract class.
    EXPECT_EQ (singletons->getBaseClass(), &Tool::staticClass);
    ASSERT_EQ (singletons->getNumSingletons(), 1u);
    EXPECT_EQ (singletons->getSingleton (0)->getClass(), &Hammer::staticClass);
    EXPECT_EQ (singletons->getSingletonByName ("Hammer"), singletons->getSingleton (0));
    EXPECT_EQ (singletons->getSingletonByName ("Tool"), nullptr);
    EXPECT_EQ (singletons->getSingletonByFriendlyName ("Big Hammer"), singletons->getSingleton (0));
    EXPECT_EQ (singletons->getFirstSingletonByClass (&Tool::staticClass), singletons->getSingleton (0));
    EXPECT_EQ (singletons->getFriendlyNames(), juce::StringArray ({ "Big Hammer" }));
    std::vector<Object*> tools;
    singletons->getSingletonsByClass (&Tool::staticClass, tools);
    EXPECT_EQ (tools.size(), 1u);

    Library::getRootLibrary()->removeLibrary (library);
    EXPECT_EQ (singletons->getNumSingletons(), 0u);
    EXPECT_EQ (singletons->getBaseClass(), nullptr);
    Library::removeAutoDeclaredSingletons (singletons);
}

//==============================================================================
TEST (DynamicallyLinkedLibraryTest, LoadsFindsAndClosesAPlugin)
{
    juce::String error;
    auto* plugin = DynamicallyLinkedLibrary::createFromFile (juce::File (TOV_TEST_PLUGIN_PATH), "createTestPluginLibrary",
                                                            &Library::staticClass, error);
    ASSERT_NE (plugin, nullptr) << error;
    EXPECT_TRUE (error.isEmpty());
    Library::getRootLibrary()->addLibrary (plugin);

    EXPECT_EQ (plugin->getName(), "libtovTestPlugin.so");
    EXPECT_EQ (plugin->getReducedName(), "tovTestPlugin");
    ASSERT_EQ (plugin->getNumLibraries(), 1u);
    EXPECT_EQ (plugin->getLibrary (0)->getName(), "Plugin");
    auto* widgetClass = getClass ("PluginWidget");
    ASSERT_NE (widgetClass, nullptr);
    EXPECT_TRUE (widgetClass->isInitialized());
    auto* widget = widgetClass->createObject();
    EXPECT_EQ (widget->getClassName(), "PluginWidget");
    widget->deleteThis();
    EXPECT_EQ (DynamicallyLinkedLibrary::getFromName (*Library::getRootLibrary(), "tovTestPlugin"), plugin);

    DynamicallyLinkedLibrary::closeDynamicallyLinkedLibraries (*Library::getRootLibrary());
    EXPECT_EQ (getClass ("PluginWidget"), nullptr);
    EXPECT_EQ (DynamicallyLinkedLibrary::getFromName (*Library::getRootLibrary(), "tovTestPlugin"), nullptr);
    EXPECT_NE (Library::getRootLibrary()->getLibraryByName ("Tov"), nullptr);
}

TEST (DynamicallyLinkedLibraryTest, MissingFile)
{
    juce::String error;
    const juce::String path = "/nonexistent/libmissing.so";
    EXPECT_EQ (DynamicallyLinkedLibrary::createFromFile (juce::File (path), "factory", &Library::staticClass, error), nullptr);
    EXPECT_EQ (error, "Could not load dynamic library " + path + " (error 0): " + path
                    + ": cannot open shared object file: No such file or directory");
}

TEST (DynamicallyLinkedLibraryTest, MissingFactory)
{
    juce::String error;
    EXPECT_EQ (DynamicallyLinkedLibrary::createFromFile (juce::File (TOV_TEST_PLUGIN_PATH), "noSuchFactory", &Library::staticClass, error), nullptr);
    EXPECT_EQ (error, juce::String ("Dynamic library ") + TOV_TEST_PLUGIN_PATH + " does not contains factory function: noSuchFactory");
}

TEST (DynamicallyLinkedLibraryTest, WrongLibraryKind)
{
    const juce::String expected = juce::String ("Dynamic library ") + TOV_TEST_PLUGIN_PATH + " does not contains expected library kind";
    juce::String error;
    EXPECT_EQ (DynamicallyLinkedLibrary::createFromFile (juce::File (TOV_TEST_PLUGIN_PATH), "createTestPluginLibrary",
                                                         &DynamicallyLinkedLibrary::staticClass, error), nullptr);
    EXPECT_EQ (error, expected);
    error.clear();
    EXPECT_EQ (DynamicallyLinkedLibrary::createFromFile (juce::File (TOV_TEST_PLUGIN_PATH), "createNoLibrary",
                                                         &Library::staticClass, error), nullptr);
    EXPECT_EQ (error, expected);
    EXPECT_EQ (getClass ("PluginWidget"), nullptr);
}

TEST (DynamicallyLinkedLibraryTest, FindFromDirectory)
{
    const ScratchDirectory scratch;
    const auto& directory = scratch.getFile();
    EXPECT_TRUE (DynamicallyLinkedLibrary::findFromDirectory (directory, "modules").isEmpty());
    directory.getChildFile ("modules").createDirectory();
    directory.getChildFile ("modules/libone.so").create();
    directory.getChildFile ("modules/.libhidden.so").create();
    directory.getChildFile ("modules/other.so").create();
    directory.getChildFile ("modules/libtwo.txt").create();
    directory.getChildFile ("modules/deeper").createDirectory();
    directory.getChildFile ("modules/deeper/libthree.so").create();
    auto files = DynamicallyLinkedLibrary::findFromDirectory (directory, "modules");
    ASSERT_EQ (files.size(), 1);
    EXPECT_EQ (files[0].getFileName(), "libone.so");
    EXPECT_EQ (DynamicallyLinkedLibrary::getFullNameFromReducedName ("one", true), "libone.so");
    EXPECT_EQ (DynamicallyLinkedLibrary::getFullNameFromReducedName ("one", false), "libone");
}

//==============================================================================
TEST_F (GeneratorFixture, TemplateClassIsGeneratedOnceAndKeepsItsParameters)
{
    auto* boxOfShapes = getTemplateClass ("Box", &Shape::staticClass);
    ASSERT_NE (boxOfShapes, nullptr);
    EXPECT_EQ (getTemplateClass ("Box", &Shape::staticClass), boxOfShapes);
    EXPECT_EQ (box->creations, 1);
    EXPECT_EQ (boxOfShapes->getName(), "Box(Shape)");
    EXPECT_EQ (boxOfShapes->getStrippedName(), "ShapeBox");
    EXPECT_EQ (boxOfShapes->getLibrary(), library);
    EXPECT_TRUE (boxOfShapes->inheritsFrom (&Shape::staticClass));
    EXPECT_EQ (boxOfShapes->getClassAttribute ("target"), &Shape::staticClass);
    EXPECT_EQ (boxOfShapes->getFriendlyName(), "Box of Geometric Shapes");
    EXPECT_EQ (getTemplateClass ("Box", nullptr), nullptr);

    auto* object = boxOfShapes->createObject();
    EXPECT_EQ (object->getClass(), boxOfShapes);
    object->deleteThis();
}

TEST_F (GeneratorFixture, UnknownGeneratorIsAskedAgainNextTime)
{
    juce::String error;
    auto* expression = createTemplateClassExpression ("Crate", classArgument (&Shape::staticClass));
    EXPECT_EQ (ClassRegistry::getInstance()->resolve (expression, &error), nullptr);
    EXPECT_EQ (error, "Could not find class generator \"Crate\"");
    auto* crates = new NamedLibrary ("Crates", {});
    crates->addClassGenerator ("Crate", new BoxClassGenerator());
    Library::getRootLibrary()->addLibrary (crates);
    EXPECT_NE (ClassRegistry::getInstance()->resolve (expression, &error), nullptr);
    Library::getRootLibrary()->removeLibrary (crates);
    EXPECT_EQ (ClassRegistry::getInstance()->resolve (expression, &error), nullptr);
}

TEST_F (GeneratorFixture, ArgumentsMustInheritFromTheParameterClass)
{
    juce::String error;
    EXPECT_FALSE (box->checkArgumentInheritFrom (*classArgument (&Shape::staticClass), &Rectangle::staticClass, error));
    EXPECT_EQ (error, "Cannot generate class Box: parameter Shape does not inherit from Rectangle");
    EXPECT_TRUE (box->checkArgumentInheritFrom (*classArgument (&Rectangle::staticClass), &Shape::staticClass, error));
    EXPECT_FALSE (box->checkArgumentInheritFrom (State ((int64_t) 3), &Shape::staticClass, error));
    EXPECT_EQ (error, "Wrong type: expected classExpression, found integer (in 3)");

    // Other values are taken as they are.
    auto* boxOfThree = ClassRegistry::getInstance()->resolve (createTemplateClassExpression ("Box", std::make_shared<State> ((int64_t) 3)), &error);
    ASSERT_NE (boxOfThree, nullptr);
    EXPECT_EQ (boxOfThree->getIntegerAttribute ("target"), 3);
    EXPECT_EQ (boxOfThree->getFriendlyName(), "Box of 3s");
    auto unknown = std::make_shared<State>();
    unknown->addVariable ("colour", classArgument (&Shape::staticClass));
    EXPECT_EQ (ClassRegistry::getInstance()->resolve (createTemplateClassExpression ("Box", unknown), &error), nullptr);
    EXPECT_EQ (error, "Could not find parameter colour");
}

TEST_F (GeneratorFixture, ObjectArgumentsFillParametersInTheirOrder)
{
    auto arguments = std::make_shared<State>();
    arguments->addVariable ("second", classArgument (&Rectangle::staticClass));
    arguments->addVariable ("first", classArgument (&Empty::staticClass));
    auto* pair = ClassRegistry::getInstance()->resolve (createTemplateClassExpression ("Pair", arguments), nullptr);
    ASSERT_NE (pair, nullptr);
    EXPECT_EQ (pair->getClassAttribute ("first"), &Rectangle::staticClass);
    EXPECT_EQ (pair->getClassAttribute ("second"), &Empty::staticClass);
    // %3 names no parameter, and a lone % at the end stays.
    EXPECT_EQ (pair->getFriendlyName(), "Rectangle and Empty and %% at 100%");
}

TEST_F (GeneratorFixture, TwoThreadsGetTheSameNewClass)
{
    for (int round = 0; round < 200; ++round)
    {
        auto* generatorLibrary = new NamedLibrary ("Race", {});
        auto* generator = new BoxClassGenerator();
        generatorLibrary->addClassGenerator ("Race", generator);
        Library::getRootLibrary()->addLibrary (generatorLibrary);
        BoxClassGenerator::initializations = 0;

        std::atomic<bool> go { false };
        Class* results[2] = {};
        auto ask = [&] (int index)
        {
            while (! go) {}
            results[index] = getTemplateClass ("Race", &Shape::staticClass);
        };
        std::thread first (ask, 0), second (ask, 1);
        go = true;
        first.join();
        second.join();

        ASSERT_NE (results[0], nullptr);
        ASSERT_EQ (results[0], results[1]);
        ASSERT_EQ (generator->creations, 1);
        ASSERT_EQ (BoxClassGenerator::initializations, 1);
        Library::getRootLibrary()->removeLibrary (generatorLibrary);
    }
}

namespace
{
class ShapeEditor : public Object
{
public:
    TOV_DECLARE_CLASS (ShapeEditor, Object)
};
class BoxEditor : public Object
{
public:
    TOV_DECLARE_CLASS (BoxEditor, Object)
};
class EmptyEditor : public Object
{
public:
    TOV_DECLARE_CLASS (EmptyEditor, Object)
};
TOV_BEGIN_CLASS (ShapeEditor, { "target", "'Shape" })
TOV_END_CLASS()
TOV_BEGIN_CLASS (BoxEditor)
TOV_END_CLASS()
TOV_BEGIN_CLASS (EmptyEditor)
TOV_END_CLASS()
}

TEST_F (GeneratorFixture, TemplateClassesInheritByArguments)
{
    auto* boxOfShapes = getTemplateClass ("Box", &Shape::staticClass);
    auto* boxOfRectangles = getTemplateClass ("Box", &Rectangle::staticClass);
    EXPECT_TRUE (boxOfRectangles->inheritsFrom (boxOfShapes));
    EXPECT_FALSE (boxOfShapes->inheritsFrom (boxOfRectangles));
    EXPECT_TRUE (boxOfShapes->inheritsFrom (&Shape::staticClass));
}

TEST_F (GeneratorFixture, ExpressionsRelativeToATemplateClass)
{
    auto* boxOfShapes = getTemplateClass ("Box", &Shape::staticClass);
    EXPECT_EQ (boxOfShapes->makeClassExpressionRelativeTo (createAtomicClassExpression ("target")), Shape::staticClass.getExpression());
    EXPECT_EQ (boxOfShapes->makeClassExpressionRelativeTo (createAtomicClassExpression ("Empty")), createAtomicClassExpression ("Empty"));

    auto targetArgument = std::make_shared<State> (createAtomicClassExpression ("target"));
    auto* relative = boxOfShapes->makeClassExpressionRelativeTo (createTemplateClassExpression ("Box", targetArgument));
    EXPECT_EQ (relative, boxOfShapes->getExpression());

    auto thisArgument = std::make_shared<State> (createAtomicClassExpression ("this"));
    auto* nested = boxOfShapes->makeClassExpressionRelativeTo (createTemplateClassExpression ("Box", thisArgument));
    EXPECT_EQ (nested->toString(), "Box(Box(Shape))");

    auto* parameter = boxOfShapes->makeClassExpressionRelativeTo (createClassParameterExpression (createAtomicClassExpression ("target"), "interpolationKey"));
    EXPECT_EQ (parameter, createClassParameterExpression (Shape::staticClass.getExpression(), "interpolationKey"));
    EXPECT_EQ (ClassRegistry::getInstance()->resolve (parameter), &Shape::staticClass);
}

TEST_F (GeneratorFixture, ClassParameterThatIsMissing)
{
    juce::String error;
    auto* expression = createClassParameterExpression (Shape::staticClass.getExpression(), "colour");
    EXPECT_EQ (ClassRegistry::getInstance()->resolve (expression, &error), nullptr);
    EXPECT_EQ (error, "Could not find parameter colour in class Shape");
    auto* key = createClassParameterExpression (Shape::staticClass.getExpression(), "interpolationKey");
    EXPECT_EQ (ClassRegistry::getInstance()->resolve (key, &error), &Shape::staticClass);
}

TEST_F (GeneratorFixture, RelatedClasses)
{
    auto* editors = new NamedLibrary ("Editors", {});
    editors->addClass<ShapeEditor>();
    editors->addClass<BoxEditor>();
    editors->addClass<EmptyEditor>();
    Library::getRootLibrary()->addLibrary (editors);

    EXPECT_EQ (Shape::staticClass.getRelatedClass ("Editor"), &ShapeEditor::staticClass);
    EXPECT_EQ (RoundedRectangle::staticClass.getRelatedClass ("Editor"), &ShapeEditor::staticClass);
    EXPECT_EQ (Empty::staticClass.getRelatedClass ("Editor"), &EmptyEditor::staticClass);
    EXPECT_EQ (TestInteger::staticClass.getRelatedClass ("Editor"), nullptr);
    EXPECT_EQ (getTemplateClass ("Box", &Empty::staticClass)->getRelatedClass ("Editor"), &BoxEditor::staticClass);

    Library::getRootLibrary()->removeLibrary (editors);
}

TEST_F (GeneratorFixture, GeneratedClassNamesReadBack)
{
    auto* boxOfShapes = getTemplateClass ("Box", &Shape::staticClass);
    EXPECT_EQ (createClassExpressionFromString (boxOfShapes->getName(), nullptr), boxOfShapes->getExpression());
    EXPECT_EQ (getClass ("Box(Shape)"), boxOfShapes);
    EXPECT_EQ (getClass ("tov::Box(Shape)"), boxOfShapes);
    EXPECT_EQ (getClass ("Box(Shape)x"), nullptr);

    auto* pair = getClass ("Pair({second=Rectangle,first=Empty})");
    ASSERT_NE (pair, nullptr);
    EXPECT_EQ (pair->getName(), "Pair({second = Rectangle, first = Empty})");
    EXPECT_EQ (pair->getClassAttribute ("first"), &Rectangle::staticClass);
    EXPECT_EQ (getClass (pair->getName()), pair);
    EXPECT_EQ (getClass ("Box(NoSuchClass)"), nullptr);
    EXPECT_EQ (getClass ("Box(Shape):target"), &Shape::staticClass);
}
