#include "JsonTestClasses.h"
#include <Tov/Standard/SoftwareVersion.h>
#include <Tov/Standard/TaskState.h>
#include <Tov/Standard/Time.h>

using namespace tov;
using namespace tov::test;
using tov::testing::RecordingExecutionContext;

namespace
{
class JsonBridgeTest : public ::testing::Test
{
protected:
    void SetUp() override       { ensureJsonTestLibrary(); }

    Owned<JsonSample> sample = (ensureJsonTestLibrary(), createOwned<JsonSample>());
    RecordingExecutionContext context;

    static juce::var parse (const char* text)      { return juce::JSON::fromString (text); }

    bool load (const char* text)                   { return sample->loadFromJson (context, parse (text)); }
};
}

//==============================================================================
TEST_F (JsonBridgeTest, SavesEachVariableUnderItsJsonIdentifier)
{
    sample->count.set (7);
    sample->label.set ("seven");
    sample->enabled.set (true);
    auto json = saveObjectToJson (*sample);
    EXPECT_EQ (oneLine (json), "{\"count\": 7, \"ratio\": 0.0, \"name\": \"seven\", \"enabled\": true, \"kept\": 0, \"fired\": 0}");
}

TEST_F (JsonBridgeTest, ValueClassesGiveJsonTypes)
{
    auto json = saveObjectToJson (*sample);
    EXPECT_TRUE (json["count"].isInt64());
    EXPECT_TRUE (json["ratio"].isDouble());
    EXPECT_TRUE (json["name"].isString());
    EXPECT_TRUE (json["enabled"].isBool());
}

TEST_F (JsonBridgeTest, WithoutDefaultsKeepsOnlyChangedAndUnprunableVariables)
{
    EXPECT_EQ (oneLine (saveObjectToJson (*sample, false, true)), "{\"kept\": 0}");
    sample->count.set (4);
    EXPECT_EQ (oneLine (saveObjectToJson (*sample, false, true)), "{\"count\": 4, \"kept\": 0}");
}

TEST_F (JsonBridgeTest, ReadOnlyVariablesNeedTheTransientFlag)
{
    sample->hidden.set (9);
    EXPECT_FALSE (saveObjectToJson (*sample, false, false).hasProperty ("hidden"));
    EXPECT_EQ ((int) saveObjectToJson (*sample, true, false)["hidden"], 9);
}

TEST_F (JsonBridgeTest, ObjectWithoutVariablesSavesVoid)
{
    auto empty = createOwned<Empty>();
    EXPECT_TRUE (saveObjectToJson (*empty).isVoid());
}

TEST_F (JsonBridgeTest, UnknownKeyIsIgnoredAndLoadSucceeds)
{
    EXPECT_TRUE (load ("{\"unknown\": 5, \"count\": 8}"));
    EXPECT_EQ (sample->count.get(), 8);
    EXPECT_TRUE (context.errors.empty());
}

TEST_F (JsonBridgeTest, JsonIdentifierIsTheKeyNotTheName)
{
    EXPECT_TRUE (load ("{\"name\": \"by identifier\"}"));
    EXPECT_EQ (sample->label.get(), "by identifier");
    EXPECT_TRUE (load ("{\"label\": \"by name\"}"));
    EXPECT_EQ (sample->label.get(), "by identifier");
}

TEST_F (JsonBridgeTest, NullLeavesTheVariableAtItsValue)
{
    sample->count.set (12);
    EXPECT_TRUE (load ("{\"count\": null}"));
    EXPECT_EQ (sample->count.get(), 12);
    EXPECT_TRUE (load ("{\"name\": \"null\"}"));
    EXPECT_EQ (sample->label.get(), "");
}

TEST_F (JsonBridgeTest, CustomFieldsLoadIntoTheSameObject)
{
    EXPECT_TRUE (load ("{\"custom_fields\": {\"count\": 1, \"name\": \"inside\"}}"));
    EXPECT_EQ (sample->count.get(), 1);
    EXPECT_EQ (sample->label.get(), "inside");
}

TEST_F (JsonBridgeTest, CustomFieldsOfAnotherTypeAreIgnored)
{
    EXPECT_TRUE (load ("{\"custom_fields\": 5, \"count\": 2}"));
    EXPECT_EQ (sample->count.get(), 2);
}

TEST_F (JsonBridgeTest, NonObjectValueLoadsOnlyWhenFalse)
{
    EXPECT_TRUE (sample->loadFromJson (context, juce::var()));
    EXPECT_TRUE (sample->loadFromJson (context, juce::var (0)));
    EXPECT_TRUE (sample->loadFromJson (context, juce::var (false)));
    EXPECT_FALSE (sample->loadFromJson (context, juce::var (5)));
    EXPECT_TRUE (context.errors.empty());
}

TEST_F (JsonBridgeTest, ObjectWithoutVariablesDoesNotLoad)
{
    auto empty = createOwned<Empty>();
    EXPECT_FALSE (empty->loadFromJson (context, parse ("{}")));
}

TEST_F (JsonBridgeTest, FailedPropertyIsNamedAndTheOthersStillLoad)
{
    juce::String error;
    auto value = parse ("{\"fired\": \"x\", \"count\": 9}");
    EXPECT_FALSE (loadObjectFromJsonProperties (value.getDynamicObject()->getProperties(), *sample, false, &error));
    EXPECT_EQ (sample->count.get(), 9);
    EXPECT_EQ (error, "Cannot load " + sample->fired.getFriendlyName() + " from Json value \"x\" in property 'fired'");
}

TEST_F (JsonBridgeTest, FailedLoadIsReportedWithTheObjectsName)
{
    EXPECT_FALSE (load ("{\"fired\": 2.5}"));
    ASSERT_EQ (context.errors.size(), (size_t) 1);
    EXPECT_EQ (context.errors[0], "Could not load " + sample->getFriendlyName() + ": Cannot load "
                                  + sample->fired.getFriendlyName() + " from Json value 2.5 in property 'fired'");
}

TEST_F (JsonBridgeTest, LoadObjectFromJsonNamesTheValueOnFailure)
{
    juce::String error;
    EXPECT_FALSE (loadObjectFromJson (juce::var (7), *sample, false, &error));
    EXPECT_EQ (error, "Cannot load Json Sample from Json value 7");
    // A text that converts to false stands for an empty value, as 0 does.
    EXPECT_TRUE (loadObjectFromJson (juce::var ("text"), *sample, false, &error));
    EXPECT_TRUE (loadObjectFromJson (parse ("{\"count\": 5}"), *sample, false, &error));
}

TEST_F (JsonBridgeTest, InferredClassOfWholeNumbersDependsOnTheirWidth)
{
    EXPECT_EQ (inferClassFromJson (juce::var (5)), &Integer::staticClass);
    EXPECT_EQ (inferClassFromJson (juce::JSON::fromString ("12345678901")), nullptr);
    EXPECT_EQ (inferClassFromJson (juce::var ((juce::int64) 5)), nullptr);
}

TEST_F (JsonBridgeTest, InferredClassOfEachType)
{
    EXPECT_EQ (inferClassFromJson (juce::var()), &Void::staticClass);
    EXPECT_EQ (inferClassFromJson (juce::var::undefined()), nullptr);
    EXPECT_EQ (inferClassFromJson (juce::var (true)), &Boolean::staticClass);
    EXPECT_EQ (inferClassFromJson (juce::var (2.5)), &Real::staticClass);
    EXPECT_EQ (inferClassFromJson (juce::var ("a")), &String::staticClass);
    EXPECT_EQ (inferClassFromJson (parse ("{}")), &Object::staticClass);
    EXPECT_EQ (inferClassFromJson (parse ("[]")), &ObjectOwnedVector::staticClass);
    EXPECT_EQ (inferClassFromJson (juce::var (juce::MemoryBlock (4))), nullptr);
}

TEST_F (JsonBridgeTest, VarTexts)
{
    EXPECT_EQ (juceVarToString (parse ("[1, 2]")), "1, 2");
    EXPECT_EQ (juceVarToString (parse ("{\"name\": \"joe\", \"age\": 3}")), "joe");
    EXPECT_EQ (juceVarToString (parse ("{\"age\": 3}")), "{\"age\": 3}");
    EXPECT_EQ (juceVarToString (juce::var (2.5)), "2.5");
    EXPECT_EQ (juceVarToString (juce::var()), "");
}

TEST_F (JsonBridgeTest, VarTypeWords)
{
    EXPECT_STREQ (juceVarTypeToString (juce::var()), "null");
    EXPECT_STREQ (juceVarTypeToString (juce::var (true)), "boolean");
    EXPECT_STREQ (juceVarTypeToString (juce::var (1.5)), "double");
    EXPECT_STREQ (juceVarTypeToString (juce::var (1)), "integer");
    EXPECT_STREQ (juceVarTypeToString (juce::var ((juce::int64) 1)), "integer");
    EXPECT_STREQ (juceVarTypeToString (juce::var ("s")), "string");
    EXPECT_STREQ (juceVarTypeToString (parse ("[]")), "array");
    EXPECT_STREQ (juceVarTypeToString (parse ("{}")), "object");
    EXPECT_STREQ (juceVarTypeToString (juce::var::undefined()), "undefined");
    EXPECT_STREQ (juceVarTypeToString (juce::var (juce::MemoryBlock (2))), "binary");
}

TEST_F (JsonBridgeTest, FindsVariablesByJsonIdentifier)
{
    EXPECT_EQ (findVariableByJsonIdentifier (&JsonSample::staticClass, "name"), 2);
    EXPECT_EQ (findVariableByJsonIdentifier (&JsonSample::staticClass, "label"), -1);
    EXPECT_EQ (findVariableByJsonIdentifier (&JsonSample::staticClass, "count"), 0);
    EXPECT_EQ (findVariableByJsonIdentifier (nullptr, "count"), -1);
    EXPECT_EQ (getJsonIdentifier (*JsonSample::staticClass.getMemberVariableSignature (2)), "name");
    EXPECT_EQ (getJsonIdentifier (*JsonSample::staticClass.getMemberVariableSignature (1)), "ratio");
}

TEST_F (JsonBridgeTest, CreateObjectFromJson)
{
    EXPECT_EQ (createObjectFromJson (juce::var (5), nullptr), nullptr);
    Owned<Object> inferred (createObjectFromJson (juce::var (5), &Object::staticClass));
    ASSERT_NE (inferred, nullptr);
    EXPECT_EQ (inferred->getClass(), &Integer::staticClass);
    EXPECT_EQ (static_cast<Integer&> (*inferred).get(), 5);

    Owned<Object> loaded (createObjectFromJson (parse ("{\"count\": 6}"), &JsonSample::staticClass));
    ASSERT_NE (loaded, nullptr);
    EXPECT_EQ (static_cast<JsonSample&> (*loaded).count.get(), 6);

    juce::String error;
    EXPECT_EQ (createObjectFromJson (juce::var (7), &JsonSample::staticClass, false, &error), nullptr);
    EXPECT_EQ (error, "Cannot load Json Sample from Json value 7");
}

TEST_F (JsonBridgeTest, FileRoundTripWithCrlfLines)
{
    const juce::TemporaryFile temporary (".json");
    const auto& file = temporary.getFile();
    SoftwareVersion version ("player", "beta", 4, 5, 6, "c0ffee");
    ASSERT_TRUE (saveObjectToJsonFile (version, file));
    EXPECT_EQ (file.loadFileAsString(), "{\r\n  \"program\": \"player\",\r\n  \"branch\": \"beta\",\r\n  \"major\": 4,\r\n"
                                        "  \"minor\": 5,\r\n  \"revision\": 6,\r\n  \"commit\": \"c0ffee\",\r\n  \"platform\": \""
                                        + version.getTargetPlatform().get() + "\"\r\n}");
    SoftwareVersion copy;
    EXPECT_TRUE (loadObjectFromJsonFile (file, copy));
    EXPECT_TRUE (copy.equals (version));
}

TEST_F (JsonBridgeTest, TriggerCountsDoNotLoadBackFromText)
{
    // A count saves as a 64-bit integer, but JSON text gives small numbers back as 32-bit ones,
    // which a trigger refuses: a document with triggers goes through text without defaults.
    const juce::TemporaryFile temporary (".json");
    const auto& file = temporary.getFile();
    ASSERT_TRUE (saveObjectToJsonFile (*sample, file));
    auto copy = createOwned<JsonSample>();
    EXPECT_FALSE (loadObjectFromJsonFile (file, *copy));
    EXPECT_EQ (context.errors.size(), (size_t) 0);
}

TEST_F (JsonBridgeTest, FileThatIsMissingOrNotJsonDoesNotLoad)
{
    const juce::TemporaryFile temporary (".json");
    const auto& file = temporary.getFile();
    EXPECT_FALSE (loadObjectFromJsonFile (file, *sample));
    file.replaceWithText ("not json");
    EXPECT_FALSE (loadObjectFromJsonFile (file, *sample));
}

TEST_F (JsonBridgeTest, TextRoundTrip)
{
    sample->count.set (-4);
    sample->ratio.set (0.125);
    sample->label.set ("r\u00e9sum\u00e9 \"quoted\"");
    sample->enabled.set (true);
    auto copy = createOwned<JsonSample>();
    const auto text = juce::JSON::toString (saveObjectToJson (*sample, false, true));
    EXPECT_TRUE (loadObjectFromJson (juce::JSON::fromString (text), *copy));
    EXPECT_TRUE (copy->equals (*sample));
}

//==============================================================================
TEST (JsonValueTest, TimeIsIso8601WithMilliseconds)
{
    tov::Time time (juce::Time (2026, 10, 25, 12, 30, 15, 250, false));
    const auto json = time.saveToJson (0);
    ASSERT_TRUE (json.isString());
    EXPECT_EQ (json.toString(), juce::Time (2026, 10, 25, 12, 30, 15, 250, false).toISO8601 (true));
    EXPECT_TRUE (json.toString().startsWith ("2026-11-25T12:30:15.250"));
    tov::Time loaded;
    RecordingExecutionContext context;
    EXPECT_TRUE (loaded.loadFromJson (context, json));
    EXPECT_EQ (loaded.get().toMilliseconds(), time.get().toMilliseconds());
}

TEST (JsonValueTest, TriggerSavesItsCountAndLoadsOnly64BitIntegers)
{
    Trigger trigger;
    trigger.setCount (3, false);
    EXPECT_TRUE (trigger.saveToJson (0).isInt64());
    EXPECT_EQ ((int) trigger.saveToJson (0), 3);
    EXPECT_TRUE (trigger.saveToJson (exportWithoutDefaults).isVoid());
    RecordingExecutionContext context;
    EXPECT_TRUE (trigger.loadFromJson (context, juce::var ((juce::int64) 8)));
    EXPECT_EQ (trigger.getCount(), 8);
    EXPECT_FALSE (trigger.loadFromJson (context, juce::var (9)));
    EXPECT_EQ (trigger.getCount(), 8);
}

TEST (JsonValueTest, ClassObjectByNameWithNoneAndUnknown)
{
    ClassObject classObject;
    RecordingExecutionContext context;
    EXPECT_EQ (classObject.saveToJson (0).toString(), "< None >");
    EXPECT_TRUE (classObject.loadFromJson (context, juce::var ("Integer")));
    EXPECT_EQ (classObject.get(), &Integer::staticClass);
    EXPECT_EQ (classObject.saveToJson (0).toString(), "Integer");
    EXPECT_FALSE (classObject.loadFromJson (context, juce::var ("NoSuchClassAnywhere")));
    EXPECT_EQ (classObject.get(), &Integer::staticClass);
    EXPECT_TRUE (classObject.loadFromJson (context, juce::var ("< None >")));
    EXPECT_EQ (classObject.get(), nullptr);
}

TEST (JsonValueTest, EnumerationByElementName)
{
    auto state = createOwned<TaskState>();
    RecordingExecutionContext context;
    EXPECT_EQ (state->saveToJson (0).toString(), "uninitialized");
    EXPECT_TRUE (state->loadFromJson (context, juce::var ("canceled")));
    EXPECT_EQ (state->get(), 2);
    EXPECT_TRUE (state->loadFromJson (context, juce::var ("terminated")));
    EXPECT_EQ (state->get(), 3);
}

TEST (JsonValueTest, UuidAsDashedText)
{
    const juce::Uuid id ("12345678-9abc-def0-1234-56789abcdef0");
    tov::Uuid uuid (id);
    EXPECT_EQ (uuid.saveToJson (0).toString(), "12345678-9abc-def0-1234-56789abcdef0");
    tov::Uuid loaded;
    RecordingExecutionContext context;
    EXPECT_TRUE (loaded.loadFromJson (context, uuid.saveToJson (0)));
    EXPECT_EQ (loaded.get(), id);
}

TEST (JsonValueTest, SoftwareVersionUsesItsShortKeys)
{
    SoftwareVersion version ("tov", "main", 1, 2, 3, "abc");
    auto json = saveObjectToJson (version);
    EXPECT_EQ (json["program"].toString(), "tov");
    EXPECT_EQ (json["branch"].toString(), "main");
    EXPECT_EQ ((int) json["major"], 1);
    EXPECT_EQ ((int) json["revision"], 3);
    EXPECT_EQ (json["commit"].toString(), "abc");
    SoftwareVersion loaded;
    EXPECT_TRUE (loadObjectFromJson (json, loaded));
    EXPECT_TRUE (loaded.equals (version));
}

//==============================================================================
namespace
{
class JsonContainerTest : public ::testing::Test
{
protected:
    Owned<JsonNest> nest = (ensureJsonTestLibrary(), createOwned<JsonNest>());
    RecordingExecutionContext context;
};
}

TEST_F (JsonContainerTest, EmbeddedObjectsNestAndEmptyPointersAreLeftOut)
{
    nest->inner.count.set (5);
    auto json = saveObjectToJson (*nest, false, true);
    EXPECT_EQ (oneLine (json), "{\"inner\": {\"count\": 5, \"kept\": 0}}");
    EXPECT_EQ (oneLine (saveObjectToJson (*nest)["list"]), "[]");
}

TEST_F (JsonContainerTest, PointerToTheTargetClassHoldsThePlainObject)
{
    auto* pointed = create<JsonSample>();
    pointed->count.set (11);
    nest->pointer.set (pointed);
    EXPECT_EQ (oneLine (saveObjectToJson (*nest, false, true)["pointer"]), "{\"count\": 11, \"kept\": 0}");
}

TEST_F (JsonContainerTest, PointerToADerivedClassNamesIt)
{
    auto* pointed = create<JsonDerivedSample>();
    pointed->extra.set ("more");
    nest->pointer.set (pointed);
    EXPECT_EQ (oneLine (saveObjectToJson (*nest, false, true)["pointer"]),
               "{\"class\": \"JsonDerivedSample\", \"value\": {\"kept\": 0, \"extra\": \"more\"}}");

    auto copy = createOwned<JsonNest>();
    EXPECT_TRUE (loadObjectFromJson (saveObjectToJson (*nest), *copy));
    ASSERT_NE (copy->pointer.get(), nullptr);
    EXPECT_EQ (copy->pointer->getClass(), &JsonDerivedSample::staticClass);
    EXPECT_EQ (static_cast<JsonDerivedSample&> (*copy->pointer).extra.get(), "more");
}

TEST_F (JsonContainerTest, PointerLoadsIntoItsObjectInPlace)
{
    auto* pointed = create<JsonSample>();
    nest->pointer.set (pointed);
    EXPECT_TRUE (nest->loadFromJson (context, juce::JSON::fromString ("{\"pointer\": {\"count\": 30}}")));
    EXPECT_EQ (nest->pointer.get(), pointed);
    EXPECT_EQ (pointed->count.get(), 30);
}

TEST_F (JsonContainerTest, EmptyPointerIsCreatedFromTheTargetClass)
{
    EXPECT_TRUE (nest->loadFromJson (context, juce::JSON::fromString ("{\"pointer\": {\"count\": 31}}")));
    ASSERT_NE (nest->pointer.get(), nullptr);
    EXPECT_EQ (nest->pointer->getClass(), &JsonSample::staticClass);
    EXPECT_EQ (nest->pointer->count.get(), 31);
}

TEST_F (JsonContainerTest, VectorIsAnArrayOfItsElements)
{
    for (int i = 1; i <= 3; ++i)
    {
        auto* element = create<JsonSample>();
        element->count.set (i);
        nest->list.append (element);
    }
    EXPECT_EQ (oneLine (saveObjectToJson (*nest, false, true)["list"]),
               "[{\"count\": 1, \"kept\": 0}, {\"count\": 2, \"kept\": 0}, {\"kept\": 0}]");

    auto copy = createOwned<JsonNest>();
    EXPECT_TRUE (loadObjectFromJson (saveObjectToJson (*nest), *copy));
    ASSERT_EQ (copy->list.size(), (size_t) 3);
    EXPECT_EQ (copy->list[2]->count.get(), 3);
    EXPECT_TRUE (copy->equals (*nest));
}

TEST_F (JsonContainerTest, VectorElementThatFailsIsLeftOut)
{
    EXPECT_FALSE (nest->loadFromJson (context, juce::JSON::fromString ("{\"list\": [{\"count\": 1}, 7, {\"count\": 2}]}")));
    ASSERT_EQ (nest->list.size(), (size_t) 2);
    EXPECT_EQ (nest->list[1]->count.get(), 2);
    EXPECT_FALSE (context.errors.empty());
}

TEST_F (JsonContainerTest, NamedObjectMapHasOnePropertyPerKey)
{
    auto map = createOwned<NamedObjectMap>();
    static_cast<JsonSample*> (map->getByValueClass (&JsonSample::staticClass))->count.set (40);
    auto json = saveObjectToJson (*map, false, true);
    EXPECT_EQ (oneLine (json), "{\"jsonSample\": {\"count\": 40, \"kept\": 0}}");

    auto copy = createOwned<NamedObjectMap>();
    EXPECT_TRUE (loadObjectFromJson (json, *copy));
    auto* loaded = dynamic_cast<JsonSample*> (copy->find ("jsonSample"));
    ASSERT_NE (loaded, nullptr);
    EXPECT_EQ (loaded->count.get(), 40);
}

TEST_F (JsonContainerTest, OwnedVectorOfIntegersFromAnArray)
{
    OwnedVector<Integer> numbers;
    EXPECT_TRUE (numbers.loadFromJson (context, juce::JSON::fromString ("[4, 5, 6]")));
    ASSERT_EQ (numbers.size(), (size_t) 3);
    EXPECT_EQ (numbers[1]->get(), 5);
    EXPECT_EQ (oneLine (numbers.saveToJson (0)), "[4, 5, 6]");
}
