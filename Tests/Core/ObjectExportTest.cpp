#include "Support/ScratchDirectory.h"
#include "Support/TestValues.h"
#include <Tov/Core/ObjectImporter.h>
#include <Tov/Core/StateObjectExporter.h>
#include <Tov/Core/StateCloner.h>
#include <Tov/Standard/ExecutionContext.h>
#include <gtest/gtest.h>

using namespace tov;
using namespace tov::test;

namespace
{
/** Holds a heap object, written through writeOwnedPointer. */
class Container : public Object
{
public:
    TOV_DECLARE_CLASS (Container, Object)

    Object* content = nullptr;
    ~Container() override { if (content != nullptr) content->deleteThis(); }

    void save (ObjectExporter& exporter) const override
    {
        exporter.saveVariable ("content", content, &Shape::staticClass);
    }

    bool load (ObjectImporter& importer) override
    {
        ObjectImporter::Scope scope (importer, "content");
        return scope.isOpen() && importer.readObject (this, content, &Shape::staticClass);
    }
};
TOV_BEGIN_CLASS (Container)
TOV_END_CLASS()
}

TEST (ObjectExportTest, DefaultsArePrunedToVoid)
{
    auto shape = createOwned<Shape>();
    auto state = shape->makeState (true, false);
    EXPECT_EQ (state->getType(), StateType::voidType);
    EXPECT_EQ (state->toShortString(), "void");
}

TEST (ObjectExportTest, ChangedValuesAreKept)
{
    auto shape = createOwned<RoundedRectangle>();
    shape->width.set (3);
    EXPECT_EQ (shape->makeState (true, false)->toShortString(), "{width = 3}");
    EXPECT_EQ (shape->makeState (false, false)->toShortString(), "{title = \"untitled\", width = 3, height = 5, cornerRadius = 0}");
    auto withClass = shape->makeState (true, true);
    ASSERT_NE (withClass->getClassExpression(), nullptr);
    EXPECT_EQ (withClass->getClassExpression()->toString(), "RoundedRectangle");
    EXPECT_EQ (withClass->getClass(), &RoundedRectangle::staticClass);
}

TEST (ObjectExportTest, ReadOnlyVariablesAreSavedOnlyWithTransientFlag)
{
    auto shape = createOwned<Rectangle>();
    auto state = StateObjectExporter::make (*shape, exportTransientVariables, false);
    EXPECT_NE (state->findVariable ("marker"), -1);
    EXPECT_EQ (shape->makeState (false, false)->findVariable ("marker"), -1);
}

TEST (ObjectExportTest, HeapObjectsCarryIdentifiersUnlessAsked)
{
    auto shape = createOwned<Shape>();
    shape->setUniqueIdentifier (UniqueIdentifier (0x77));
    EXPECT_EQ (shape->makeState (false, false)->getUniqueIdentifier(), UniqueIdentifier (0x77));
    EXPECT_TRUE (StateObjectExporter::make (*shape, exportWithoutIdentifiers, false)->getUniqueIdentifier().isNull());
}

TEST (ObjectExportTest, IdentifierOnLoad)
{
    juce::String log;
    ToStringExecutionContext context (log);
    auto source = createOwned<Shape>();
    source->setUniqueIdentifier (UniqueIdentifier (0x55));

    auto fresh = createOwned<Shape>();
    fresh->loadFromState (context, StateObjectExporter::make (*source, exportWithoutIdentifiers, false));
    EXPECT_TRUE (fresh->getUniqueIdentifier().isNull());

    fresh->loadFromState (context, source->makeState (false, false));
    EXPECT_EQ (fresh->getUniqueIdentifier(), UniqueIdentifier (0x55));

    auto named = createOwned<Shape>();
    named->setUniqueIdentifier (UniqueIdentifier (0x66));
    named->loadFromState (context, source->makeState (false, false));
    EXPECT_EQ (named->getUniqueIdentifier(), UniqueIdentifier (0x66));
    EXPECT_TRUE (log.isEmpty());
}

TEST (ObjectExportTest, DerivedStateLoadsIntoBaseObject)
{
    juce::String log;
    ToStringExecutionContext context (log);
    auto derived = createOwned<Rectangle>();
    derived->width.set (8);
    derived->height.set (9);
    auto base = createOwned<Shape>();
    EXPECT_TRUE (base->loadFromState (context, derived->makeState (true, true)));
    EXPECT_EQ (base->getClass(), &Shape::staticClass);
    EXPECT_EQ (base->width.get(), 8);
    EXPECT_EQ (log, "Warning: Unknown variable height in Shape (in ObjectImporter::sendUnknownVariableWarning)\n");
}

TEST (ObjectExportTest, BaseStateIntoDerivedObjectFails)
{
    juce::String log;
    ToStringExecutionContext context (log);
    auto base = createOwned<Shape>();
    base->width.set (2);
    auto derived = createOwned<Rectangle>();
    EXPECT_FALSE (derived->loadFromState (context, base->makeState (true, true)));
    EXPECT_EQ (log, "Error: Invalid class: expected Rectangle found Shape (in Loading {width = 2})\n");
}

TEST (ObjectExportTest, CreateFromStateMakesTheNamedClass)
{
    juce::String log;
    ToStringExecutionContext context (log);
    auto source = createOwned<RoundedRectangle>();
    source->cornerRadius.set (4);
    auto* copy = Object::createFromState (context, source->makeState (true, true));
    ASSERT_NE (copy, nullptr);
    EXPECT_EQ (copy->getClass(), &RoundedRectangle::staticClass);
    EXPECT_TRUE (copy->equalsIgnoringReadOnly (*source, false));
    copy->deleteThis();

    auto unknown = std::make_shared<State>();
    unknown->setAtomicClassExpression ("Unheard");
    EXPECT_EQ (Object::createFromState (context, unknown), nullptr);
    EXPECT_EQ (log, "Error: Could not find class \"Unheard\"\n");
}

TEST (ObjectExportTest, NullOwnedPointerSavesAsNullWeakPointer)
{
    juce::String log;
    ToStringExecutionContext context (log);
    auto container = createOwned<Container>();
    auto state = container->makeState (false, false);
    EXPECT_EQ (state->toShortString(), "{content = -> nil}");
    auto loaded = createOwned<Container>();
    EXPECT_TRUE (loaded->loadFromState (context, state));
    EXPECT_EQ (loaded->content, nullptr);
}

TEST (ObjectExportTest, OwnedPointerWritesClassOnlyWhenItAddsInformation)
{
    auto container = createOwned<Container>();
    container->content = Shape::staticClass.createObject (container.get());
    EXPECT_EQ (container->makeState (false, false)->toShortString(), "{content = => {title = \"untitled\", width = 10}}");
    container->content->deleteThis();
    container->content = Rectangle::staticClass.createObject (container.get());
    auto state = container->makeState (true, false);
    auto target = state->getVariableStateRef (0).getOwnedPointer();
    EXPECT_EQ (target->getClassExpression()->toString(), "Rectangle");

    juce::String log;
    ToStringExecutionContext context (log);
    auto loaded = createOwned<Container>();
    EXPECT_TRUE (loaded->loadFromState (context, state));
    ASSERT_NE (loaded->content, nullptr);
    EXPECT_EQ (loaded->content->getClass(), &Rectangle::staticClass);
    EXPECT_EQ (loaded->content->getParent(), loaded.get());
}

TEST (ObjectExportTest, MissingWeakTargetNamesTheParentPath)
{
    juce::String log;
    ToStringExecutionContext context (log);
    auto state = std::make_shared<State>();
    state->addVariable ("content", std::make_shared<State> (UniqueIdentifier (0xabc)));
    auto container = createOwned<Container>();
    EXPECT_FALSE (container->loadFromState (context, state));
    EXPECT_EQ (log, "Error: Could not find object with uid @abc in Container (in StateObjectImporter::readObject)\n");
}

TEST (ObjectExportTest, PendingStateIsCreatedOnFirstUseAndFoundAfterwards)
{
    juce::String log;
    ToStringExecutionContext context (log);
    auto pendingShape = std::make_shared<State>();
    pendingShape->setClass (&Shape::staticClass);
    pendingShape->setUniqueIdentifier (UniqueIdentifier (0x10));
    ObjectImporter::PendingStates pending { { UniqueIdentifier (0x10), pendingShape } };

    auto weak = std::make_shared<State>();
    weak->addVariable (std::make_shared<State> (UniqueIdentifier (0x10)));
    weak->addVariable (std::make_shared<State> (UniqueIdentifier (0x10)));
    ObjectImporter importer (context, weak, &pending);
    Object* first = nullptr;
    Object* second = nullptr;
    {
        ObjectImporter::Scope scope (importer, (size_t) 0);
        EXPECT_TRUE (importer.readObject (nullptr, first, nullptr));
    }
    EXPECT_TRUE (pending.empty());
    {
        ObjectImporter::Scope scope (importer, (size_t) 1);
        EXPECT_TRUE (importer.readObject (nullptr, second, nullptr));
    }
    ASSERT_NE (first, nullptr);
    EXPECT_EQ (first, second);
    EXPECT_EQ (first->getUniqueIdentifier(), UniqueIdentifier (0x10));
    first->deleteThis();
}

TEST (ObjectExportTest, ReadBufferTakesOwnershipOrDecodesBase64)
{
    juce::String log;
    ToStringExecutionContext context (log);
    auto bufferState = std::make_shared<State> ((uint64_t) 3, (void*) "abc", true);
    const void* bytes = bufferState->getBuffer().getData();
    ObjectImporter importer (context, bufferState);
    RawBuffer out;
    bool changed = false;
    EXPECT_TRUE (importer.readBuffer (out, changed));
    EXPECT_TRUE (changed);
    EXPECT_EQ (out.getData(), bytes);
    EXPECT_FALSE (bufferState->getBuffer().isDataOwned());

    auto bad = std::make_shared<State> ("***");
    ObjectImporter badImporter (context, bad);
    RawBuffer untouched (2, "xy", true);
    EXPECT_FALSE (badImporter.readBuffer (untouched, changed));
    EXPECT_EQ (untouched, RawBuffer (2, "xy", false));
    EXPECT_EQ (log, "Error: bad base64 format (in \"***\") (in ObjectImporter::readBuffer)\n");
}

TEST (ObjectExportTest, BuffersAsBase64)
{
    StateObjectExporter exporter (exportBuffersAsBase64);
    exporter.writeBuffer (3, (void*) "abc", false);
    EXPECT_EQ (exporter.getRootState()->getType(), StateType::stringType);
    EXPECT_EQ (exporter.getRootState()->getString(), juce::MemoryBlock ("abc", 3).toBase64Encoding());
}

namespace
{
/** Two classes alike but for the name of their one variable, and one with a version. */
class NamedA : public Object
{
public:
    TOV_DECLARE_CLASS (NamedA, Object)
    TestInteger first;
};
class NamedB : public Object
{
public:
    TOV_DECLARE_CLASS (NamedB, Object)
    TestInteger second;
};
class VersionedMetaclass : public Class
{
public:
    uint64_t version = 1;
    uint64_t getVersion() const override { return version; }
};
class Versioned : public Object
{
public:
    TOV_DECLARE_CLASS_WITH_METACLASS (Versioned, Object, VersionedMetaclass)
    TestInteger first;
};
TOV_BEGIN_CLASS (NamedA)
    TOV_VARIABLE (first)
TOV_END_CLASS()
TOV_BEGIN_CLASS (NamedB)
    TOV_VARIABLE (second)
TOV_END_CLASS()
TOV_BEGIN_CLASS (Versioned)
    TOV_VARIABLE (first)
TOV_END_CLASS()
}

TEST (ObjectExportTest, HashIgnoresVersionsAndSeesVariableNames)
{
    auto versioned = createOwned<Versioned>();
    versioned->first.set (3);
    const auto before = versioned->computeHash();
    Versioned::staticClass.version = 7;
    EXPECT_EQ (versioned->computeHash(), before);
    EXPECT_EQ (versioned->makeState (false, false)->getVersionNumber(), 7u);

    auto a = createOwned<NamedA>();
    auto b = createOwned<NamedB>();
    a->first.set (3);
    b->second.set (3);
    EXPECT_NE (a->computeHash(), b->computeHash());
    EXPECT_EQ (a->computeHash(), before);
    a->first.set (4);
    EXPECT_NE (a->computeHash(), before);
}

TEST (ObjectExportTest, HashCountsReadOnlyVariables)
{
    auto a = createOwned<Rectangle>();
    auto b = createOwned<Rectangle>();
    EXPECT_EQ (a->computeHash(), b->computeHash());
    b->height.set (1);
    EXPECT_NE (a->computeHash(), b->computeHash());
}

TEST (ObjectExportTest, ObjectsSaveToFilesWithoutDefaultsAndLoadBackEqual)
{
    const ScratchDirectory scratch;
    const auto& directory = scratch.getFile();
    const auto file = directory.getChildFile ("shape.txt");
    juce::String log;
    ToStringExecutionContext context (log);

    auto shape = createOwned<RoundedRectangle>();
    shape->title.set ("saved");
    shape->cornerRadius.set (6);
    ASSERT_TRUE (shape->saveToFile (context, file, true));
    EXPECT_EQ (file.loadFileAsString(), "'RoundedRectangle {title = \"saved\", cornerRadius = 6}\n");

    auto loaded = createOwned<RoundedRectangle>();
    ASSERT_TRUE (loaded->loadFromFile (context, file));
    EXPECT_TRUE (loaded->equalsIgnoringReadOnly (*shape, false));
    EXPECT_EQ (loaded->width.get(), 10);

    EXPECT_FALSE (loaded->loadFromFile (context, directory.getChildFile ("missing.txt")));
    EXPECT_EQ (log, "Error: File " + directory.getChildFile ("missing.txt").getFullPathName() + " does not exist\n");
}

TEST (ObjectExportTest, CloneObjectRemapsIdentifiers)
{
    juce::String log;
    ToStringExecutionContext context (log);
    auto shape = createOwned<Rectangle>();
    shape->setUniqueIdentifier (UniqueIdentifier (0x0f));
    shape->height.set (12);
    StateCloner cloner (UniqueIdentifier (0xf0));
    auto* copy = cloner.cloneObject (context, *shape, nullptr);
    ASSERT_NE (copy, nullptr);
    EXPECT_EQ (copy->getClass(), &Rectangle::staticClass);
    EXPECT_EQ (copy->getUniqueIdentifier(), UniqueIdentifier (0xff));
    EXPECT_EQ (static_cast<Rectangle*> (copy)->height.get(), 12);
    copy->deleteThis();
    EXPECT_TRUE (log.isEmpty());
}

TEST (ObjectExportTest, StackObjectSavesItsVariables)
{
    Shape shape;
    EXPECT_EQ (shape.getClassWithoutLookUp(), nullptr);
    shape.width.set (4, false);
    EXPECT_EQ (shape.makeState (false, false)->toShortString(), "{title = \"\", width = 4}");
}
