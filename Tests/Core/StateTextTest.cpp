#include <Tov/Core/State.h>
#include <Tov/Core/StateParser.h>
#include <Tov/Core/StateParserCallback.h>
#include <Tov/Core/StatePrinter.h>
#include <Tov/Core/ClassExpression.h>
#include <Support/RecordingExecutionContext.h>
#include <gtest/gtest.h>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>

using namespace tov;
using tov::testing::RecordingExecutionContext;

namespace
{
    using Variables = std::initializer_list<std::pair<const char*, std::shared_ptr<State>>>;

    std::shared_ptr<State> makeList (Variables variables)
    {
        auto list = std::make_shared<State>();
        for (auto& variable : variables)
            list->addVariable (variable.first, variable.second);
        return list;
    }

    std::shared_ptr<State> makeObject (const char* className, uint64_t identifier, Variables variables)
    {
        auto object = makeList (variables);
        object->setAtomicClassExpression (className);
        object->setUniqueIdentifier (UniqueIdentifier (identifier));
        return object;
    }

    template <class... Arguments>
    std::shared_ptr<State> make (Arguments&&... arguments)
    {
        return std::make_shared<State> (std::forward<Arguments> (arguments)...);
    }

    std::shared_ptr<State> makeOwnedPointer (const std::shared_ptr<State>& target)
    {
        auto pointer = std::make_shared<State>();
        pointer->setOwnedPointer (target);
        return pointer;
    }

    juce::String repeat (const char* text, int count)
    {
        return juce::String::repeatedString (text, count);
    }

    // The node of the worked example: a Foo with a string, numbers, an owned
    // Bar, a weak pointer to that Bar and a buffer of four bytes.
    std::shared_ptr<State> makeExampleObject (const juce::String& name)
    {
        static char bytes[] = { 'd', 'a', 't', 'a' };
        auto foo = makeObject ("Foo", 0x2a, {
            { "name", make (name) },
            { "size", make (12) },
            { "ratio", make (0.5) },
            { "child", makeOwnedPointer (makeObject ("Bar", 0x2b, { { "x", make (1.0) } })) },
            { "ref", make (UniqueIdentifier (0x2b)) },
            { "data", make ((uint64_t) 4, bytes, true) } });
        foo->setVersionNumber (3);
        return foo;
    }

    juce::String print (const State& state)
    {
        juce::MemoryOutputStream text, binary;
        state.print (text, binary);
        return text.toUTF8();
    }

    /** The position report that the parser puts in front of its messages. */
    juce::String positionReport (const juce::String& source, int line, int column, const juce::String& before, const juce::String& after)
    {
        return "Stream: " + source + "\nLine: " + juce::String (line) + "\nColumn: " + juce::String (column)
             + "\nEntire line in question: " + before + "[*Here*] " + after + "\n";
    }

    /** Parses a text that must fail, and returns what the parser reported. */
    std::vector<juce::String> parseFailure (const juce::String& text)
    {
        RecordingExecutionContext context;
        EXPECT_EQ (State::createFromStateString (context, text, "src"), nullptr) << text;
        return context.errors;
    }

    std::shared_ptr<State> parseSuccess (const juce::String& text)
    {
        RecordingExecutionContext context;
        auto state = State::createFromStateString (context, text, "src");
        EXPECT_NE (state, nullptr) << text;
        EXPECT_TRUE (context.errors.empty()) << text << " reported " << (context.errors.empty() ? juce::String() : context.errors[0]);
        return state;
    }
}

//==============================================================================
// Printing

TEST (StateTextTest, WorkedExampleFitsOnOneLine)
{
    auto foo = makeExampleObject ("a\"b");
    juce::MemoryOutputStream text, binary;
    foo->print (text, binary);

    EXPECT_EQ (text.toUTF8(), "'Foo @2a #3 {name = \"a\\\"b\", size = 12, ratio = 0.5, child = => 'Bar @2b {x = 1.}, "
                              "ref = -> @2b, data = [0 4]}\n");
    EXPECT_EQ (binary.toString(), "data");
}

TEST (StateTextTest, WorkedExampleThatDoesNotFitTakesOneLinePerVariable)
{
    const auto name = repeat ("n", 200);
    auto foo = makeExampleObject (name);

    EXPECT_EQ (print (*foo), "'Foo @2a #3 \n"
                             "{\n"
                             "  name = \"" + name + "\", \n"
                             "  size = 12, \n"
                             "  ratio = 0.5, \n"
                             "  child = => 'Bar @2b {x = 1.}, \n"
                             "  ref = -> @2b, \n"
                             "  data = [0 4]\n"
                             "}\n");
}

TEST (StateTextTest, NonCompactListWithoutPrefixStartsOnANewLine)
{
    const auto text = repeat ("t", 150);
    auto list = makeList ({ { "a", makeList ({ { "b", make (text) } }) } });

    EXPECT_EQ (print (*list), "\n{\n  a = \n  {\n    b = \"" + text + "\"\n  }\n}\n");
}

TEST (StateTextTest, LineLimitIs140Columns)
{
    // An unnamed string of n characters is estimated at n + 4 in its list.
    auto fits = makeList ({ { "", make (repeat ("x", 135)) } });
    auto tooLong = makeList ({ { "", make (repeat ("x", 136)) } });

    EXPECT_EQ (print (*fits), "{\"" + repeat ("x", 135) + "\"}\n");
    EXPECT_EQ (print (*tooLong), "\n{\n  \"" + repeat ("x", 136) + "\"\n}\n");
}

TEST (StateTextTest, RoomOnTheLineDependsOnTheColumn)
{
    // The same list fits at the start of a line but not after a 20-character name.
    auto inner = makeList ({ { "", make (repeat ("y", 120)) } });
    auto outer = makeList ({ { repeat ("k", 20).toRawUTF8(), inner }, { "z", make (1) } });

    EXPECT_EQ (print (*inner), "{\"" + repeat ("y", 120) + "\"}\n");
    EXPECT_EQ (print (*outer), "\n{\n  " + repeat ("k", 20) + " = \n  {\n    \"" + repeat ("y", 120) + "\"\n  }, \n  z = 1\n}\n");
}

TEST (StateTextTest, EstimateStopsAtTheLimit)
{
    juce::MemoryOutputStream text, binary;
    StatePrinter printer (text, binary);
    auto list = makeList ({ { "", make (repeat ("x", 100)) }, { "", make (repeat ("x", 100)) }, { "", make (repeat ("x", 100)) } });

    EXPECT_EQ (printer.estimateLength (*list, 1000), 1u + 102 + 2 + 102 + 2 + 102 + 1);
    EXPECT_EQ (printer.estimateLength (*list, 140), 1u + 102 + 2 + 102);
}

TEST (StateTextTest, EstimateOfEachPart)
{
    juce::MemoryOutputStream text, binary;
    StatePrinter printer (text, binary);

    State prefixed ((int64_t) 5);
    prefixed.setAtomicClassExpression ("Foo");
    prefixed.setUniqueIdentifier (UniqueIdentifier (0x2a));
    prefixed.setVersionNumber (12);
    EXPECT_EQ (printer.estimateLength (prefixed, 1000), 5u + 4 + 4 + 1);

    State nullTarget;
    nullTarget.setOwnedPointer (nullptr);
    EXPECT_EQ (printer.estimateLength (nullTarget, 1000), 7u);

    State emptyList;
    emptyList.reserveVariables (0);
    EXPECT_EQ (printer.estimateLength (emptyList, 1000), 3u);

    EXPECT_EQ (printer.estimateLength (*makeList ({ { "ab", make (1) } }), 1000), 1u + 5 + 1 + 1);
    EXPECT_EQ (printer.estimateLength (State ((const Object*) (uintptr_t) 0x1234), 1000), 10u);

    binary.write ("0123456789", 10);
    char bytes[] = { 1, 2, 3 };
    EXPECT_EQ (printer.estimateLength (State (3, bytes, false), 1000), 2u + 1 + 3);
}

TEST (StateTextTest, EmptyListPrintsAsVoid)
{
    State list;
    list.reserveVariables (0);
    list.setAtomicClassExpression ("Foo");
    EXPECT_EQ (list.saveToString(), "'Foo void\n");
}

TEST (StateTextTest, NullOwnedPointerPrintsNothingAfterTheToken)
{
    State pointer;
    pointer.setOwnedPointer (nullptr);
    EXPECT_EQ (pointer.saveToString(), "=> \n");
}

TEST (StateTextTest, NativePointerPrintsInHexadecimal)
{
    EXPECT_EQ (State ((const Object*) (uintptr_t) 0xbeef).saveToString(), "0xbeef\n");
}

TEST (StateTextTest, VersionPrintsAsA32BitNumber)
{
    State state ((int64_t) 1);
    state.setVersionNumber (0x100000005ull);
    EXPECT_EQ (state.saveToString(), "#5 1\n");
    state.setVersionNumber (0xffffffffull);
    EXPECT_EQ (state.saveToString(), "#-1 1\n");
}

TEST (StateTextTest, BuffersFollowEachOtherInTheBinaryStream)
{
    char first[] = { 'a', 'b', 'c', 'd' }, second[] = { 'e', 'f', 'g' };
    auto list = makeList ({ { "", make ((uint64_t) 4, first, true) }, { "", make ((uint64_t) 0, nullptr, false) },
                            { "", make ((uint64_t) 3, second, true) } });
    juce::MemoryOutputStream text, binary;
    list->print (text, binary);

    EXPECT_EQ (text.toUTF8(), "{[0 4], [4 0], [4 3]}\n");
    EXPECT_EQ (binary.toString(), "abcdefg");
    EXPECT_EQ (list->saveToString(), "{[0 4], [4 0], [4 3]}\n");
}

TEST (StateTextTest, StringsAreEscaped)
{
    EXPECT_EQ (State ("back\\slash \"quote\"\nline").saveToString(), "\"back\\\\slash \\\"quote\\\"\nline\"\n");
}

TEST (StateTextTest, RealsPrintWithTwelveDecimalsAndInfinities)
{
    auto list = makeList ({ { "", make (1.0) }, { "", make (0.1) }, { "", make (-2.5e-7) },
                            { "", make (std::numeric_limits<double>::max()) }, { "", make (-std::numeric_limits<double>::max()) },
                            { "", make (std::numeric_limits<double>::infinity()) } });
    EXPECT_EQ (list->saveToString(), "{1., 0.1, -0.00000025, +oo, -oo, 0.0}\n");
}

// What juce::String (value, 12, false) gives, which reals have always been printed from.
TEST (StateTextTest, RealsPrintAsJuceFormatsThemWithTwelveDecimals)
{
    const auto expected = [] (double value)
    {
        const juce::String text (value, 12, false);
        return text.containsChar ('.') ? text.trimCharactersAtEnd ("0") : text + ".";
    };
    juce::Random random (12);
    std::vector<double> values { 0.0, -0.0, 5e-13, 1.5e-12, 2.5e-12, 8999999.999999999, 9.0e6, 1e15, 1e36, -1e40, 1e300,
                                 std::numeric_limits<double>::min(), std::numeric_limits<double>::denorm_min() };
    for (int k = -20000; k <= 20000; ++k)
    {
        values.push_back (k / 8192.0);              // ties at the twelfth decimal, rounded to even
        values.push_back (k / 8192.0 + 4096.0);
        values.push_back (k / 1000.0);
        values.push_back (k * 1e-13);
    }
    for (int i = 0; i < 100000; ++i)
        values.push_back ((random.nextDouble() - 0.5) * std::pow (10.0, random.nextInt (50) - 20));

    for (double value : values)
        ASSERT_EQ (State (value).toShortString(), expected (value)) << juce::String (value, 17, true);
}

//==============================================================================
// Parsing: values

TEST (StateTextTest, EmptyTextAndLoneMinusAreTheIntegerZero)
{
    for (auto* text : { "", "-", "  " })
    {
        auto state = parseSuccess (text);
        ASSERT_NE (state, nullptr);
        EXPECT_EQ (state->getType(), StateType::integerType) << text;
        EXPECT_EQ (state->getInteger(), 0) << text;
    }
}

TEST (StateTextTest, ParsesEachKindOfValue)
{
    EXPECT_EQ (parseSuccess ("void")->getType(), StateType::voidType);
    EXPECT_TRUE (parseSuccess ("True")->getBoolean());
    EXPECT_FALSE (parseSuccess ("False")->getBoolean());
    EXPECT_EQ (parseSuccess ("-42")->getInteger(), -42);
    EXPECT_EQ (parseSuccess ("9223372036854775807")->getInteger(), std::numeric_limits<int64_t>::max());
    EXPECT_EQ (parseSuccess ("-9223372036854775808")->getInteger(), std::numeric_limits<int64_t>::min());
    EXPECT_EQ (parseSuccess (juce::String::fromUTF8 ("\"caf\xc3\xa9\nline\""))->getString(), juce::String::fromUTF8 ("caf\xc3\xa9\nline"));
    EXPECT_EQ (parseSuccess ("-> @2a")->getUniqueIdentifierValue(), UniqueIdentifier (0x2a));
    EXPECT_EQ (parseSuccess ("=> 'Bar 1")->getOwnedPointer()->getClassExpression(), createAtomicClassExpression ("Bar"));
    EXPECT_EQ (parseSuccess ("Number:interpolationKey")->getClassExpressionValue()->toString(), "Number:interpolationKey");
}

TEST (StateTextTest, RealForms)
{
    const double largest = std::numeric_limits<double>::max();
    EXPECT_EQ (parseSuccess ("1.")->getReal(), 1.0);
    EXPECT_EQ (parseSuccess (".5")->getReal(), 0.5);
    EXPECT_EQ (parseSuccess ("-1.5e-3")->getReal(), -1.5e-3);
    EXPECT_EQ (parseSuccess ("+2.5")->getReal(), 2.5);
    EXPECT_EQ (parseSuccess ("e.")->getReal(), 0.0);
    EXPECT_EQ (parseSuccess ("e.")->getType(), StateType::realType);
    EXPECT_EQ (parseSuccess ("+oo")->getReal(), largest);
    EXPECT_EQ (parseSuccess ("-oo")->getReal(), -largest);
    EXPECT_EQ (parseSuccess ("0.0")->getReal(), 0.0);
}

// Reals read as the C library reads the token, whichever way the parser takes.
TEST (StateTextTest, RealsReadAsStrtodReadsThem)
{
    juce::Random random (34);
    const char bytes[] = "0123456789-+e";
    for (int i = 0; i < 50000; ++i)
    {
        std::string token;
        for (int n = 1 + random.nextInt (22); --n >= 0;)
            token += bytes[random.nextInt (i % 4 == 0 ? 13 : 10)];
        token.insert ((size_t) random.nextInt ((int) token.size() + 1), ".");
        if (i % 3 == 0)
            token.insert (0, "-");

        RecordingExecutionContext context;
        auto state = State::createFromStateString (context, token, "src");
        if (state == nullptr || state->getType() != StateType::realType)
            continue;
        const double expected = std::strtod (token.c_str(), nullptr), read = state->getReal();
        EXPECT_EQ (std::memcmp (&expected, &read, sizeof (double)), 0) << token;
    }
}

TEST (StateTextTest, StringEscapes)
{
    EXPECT_EQ (parseSuccess ("\"a\\\"b\"")->getString(), "a\"b");
    EXPECT_EQ (parseSuccess ("\"a\\\\b\"")->getString(), "a\\b");
    EXPECT_EQ (parseSuccess ("\"a\\nb\"")->getString(), "a\\nb");
    EXPECT_EQ (parseSuccess ("\"\\\\\\\"\"")->getString(), "\\\"");
}

TEST (StateTextTest, EmptyValueInAListFails)
{
    EXPECT_EQ (parseFailure ("{a = }"),
               (std::vector<juce::String> { positionReport ("src", 0, 4, "{a =", " }") + " => Expected a value.",
                                            "Could not parse value \"{a = }\"" }));
}

TEST (StateTextTest, TrailingCommaAndEmptyBraces)
{
    auto one = parseSuccess ("{a = 1,}");
    ASSERT_NE (one, nullptr);
    EXPECT_EQ (one->toString(), "{a = 1}");

    auto empty = parseSuccess ("{}");
    ASSERT_NE (empty, nullptr);
    EXPECT_EQ (empty->getType(), StateType::variablesType);
    EXPECT_EQ (empty->getNumVariables(), 0u);
}

TEST (StateTextTest, MissingCommaEndsTheListAndLeavesAClassExpression)
{
    const auto report = positionReport ("src", 0, 6, "{a=1 b", "=2}");
    EXPECT_EQ (parseFailure ("{a=1 b=2}"),
               (std::vector<juce::String> { report + " => Unexpected expression at the end of state: " + report,
                                            "Could not parse value \"{a=1 b=2}\"" }));
}

TEST (StateTextTest, UnderscoreAfterTheFirstByteIsNoName)
{
    EXPECT_EQ (parseFailure ("{my_var = 1}")[0], positionReport ("src", 0, 8, "{my_var ", "= 1}") + " => Expected a value.");

    auto leading = parseSuccess ("{_ = 1, _a = 2, 9x = 3}");
    ASSERT_NE (leading, nullptr);
    EXPECT_EQ (leading->toString(), "{_ = 1, _a = 2, 9x = 3}");
}

TEST (StateTextTest, NilAloneIsNoValue)
{
    EXPECT_EQ (parseFailure ("nil")[0], positionReport ("src", 0, 3, "nil", "") + " => Expected a value.");

    auto pointer = parseSuccess ("-> nil");
    ASSERT_NE (pointer, nullptr);
    EXPECT_EQ (pointer->getType(), StateType::weakPointerType);
    EXPECT_TRUE (pointer->getUniqueIdentifierValue().isNull());
}

TEST (StateTextTest, HexadecimalTokenReadsAsVoid)
{
    auto state = parseSuccess ("0xff");
    ASSERT_NE (state, nullptr);
    EXPECT_EQ (state->getType(), StateType::voidType);
    EXPECT_EQ (parseSuccess ("0x")->getType(), StateType::voidType);
}

TEST (StateTextTest, BooleanWordsAndClassExpressions)
{
    EXPECT_EQ (parseSuccess ("true")->getType(), StateType::booleanType);

    auto upper = parseSuccess ("TRUE");
    ASSERT_NE (upper, nullptr);
    EXPECT_EQ (upper->getType(), StateType::classExpressionType);
    EXPECT_EQ (upper->getClassExpressionValue(), createAtomicClassExpression ("TRUE"));
}

TEST (StateTextTest, IntegerRealOrNoValue)
{
    EXPECT_EQ (parseSuccess ("5")->getType(), StateType::integerType);
    EXPECT_EQ (parseSuccess ("5.")->getType(), StateType::realType);
    EXPECT_EQ (parseSuccess ("5.")->getReal(), 5.0);
    EXPECT_EQ (parseFailure ("5e3")[0], positionReport ("src", 0, 0, "", "5e3") + " => Expected a value.");
}

TEST (StateTextTest, IdentifiersAndVersions)
{
    EXPECT_EQ (parseFailure ("@2A 1")[0], positionReport ("src", 0, 0, "", "@2A 1") + " => Expected a value.");

    auto identified = parseSuccess ("@2a 1");
    ASSERT_NE (identified, nullptr);
    EXPECT_EQ (identified->getInteger(), 1);
    EXPECT_EQ (identified->getUniqueIdentifier(), UniqueIdentifier (0x2a));

    auto versioned = parseSuccess ("#7 1");
    ASSERT_NE (versioned, nullptr);
    EXPECT_EQ (versioned->getInteger(), 1);
    EXPECT_EQ (versioned->getVersionNumber(), 7u);

    auto noDigits = parseSuccess ("# 1");
    ASSERT_NE (noDigits, nullptr);
    EXPECT_EQ (noDigits->getInteger(), 1);
    EXPECT_EQ (noDigits->getVersionNumber(), 0u);

    auto all = parseSuccess ("'Foo nil #2 void");
    ASSERT_NE (all, nullptr);
    EXPECT_EQ (all->getClassExpression(), createAtomicClassExpression ("Foo"));
    EXPECT_TRUE (all->getUniqueIdentifier().isNull());
    EXPECT_EQ (all->getVersionNumber(), 2u);
}

// Each digit shifts the value four bits up: past sixteen digits the first ones are lost.
TEST (StateTextTest, LongIdentifiersKeepTheirLastSixteenDigits)
{
    auto full = parseSuccess ("@fedcba9876543210 1");
    ASSERT_NE (full, nullptr);
    EXPECT_EQ (full->getUniqueIdentifier(), UniqueIdentifier (0xfedcba9876543210ull));

    // The second text holds a pointer, which only the grammar's rules read.
    for (auto* text : { "@123456789abcdef01 1", "{a = @123456789abcdef01 -> @2a}" })
    {
        auto parsed = parseSuccess (text);
        ASSERT_NE (parsed, nullptr) << text;
        const auto& node = parsed->getNumVariables() > 0 ? parsed->getVariableStateRef (0) : *parsed;
        EXPECT_EQ (node.getUniqueIdentifier(), UniqueIdentifier (0x23456789abcdef01ull)) << text;
        EXPECT_EQ (node.getUniqueIdentifier().getInt64(), (uint64_t) juce::String ("123456789abcdef01").getHexValue64()) << text;
    }
}

TEST (StateTextTest, UnclosedStringIsNoValue)
{
    EXPECT_EQ (parseFailure ("\"a\\\"")[0], positionReport ("src", 0, 0, "", "\"a\\\"") + " => Expected a value.");
}

TEST (StateTextTest, BuffersWithoutABinaryStreamAreEmpty)
{
    auto buffer = parseSuccess ("[0 4]");
    ASSERT_NE (buffer, nullptr);
    EXPECT_EQ (buffer->getType(), StateType::bufferType);
    EXPECT_EQ (buffer->getBuffer().getSize(), 0u);

    EXPECT_EQ (parseFailure ("[-1 4]")[0], positionReport ("src", 0, 0, "", "[-1 4]") + " => Expected a value.");
}

TEST (StateTextTest, BuffersComeFromTheBinaryStream)
{
    RecordingExecutionContext context;
    juce::MemoryInputStream text ("{[2 3], [4 3], [0 0]}", 21, false), binary ("abcdef", 6, false);
    auto list = State::parse (context, text, binary, "src");

    ASSERT_NE (list, nullptr);
    EXPECT_TRUE (context.errors.empty());
    EXPECT_EQ (list->getVariableStateRef (0).getBuffer(), RawBuffer (3, "cde", false));
    EXPECT_EQ (list->getVariableStateRef (1).getBuffer().getSize(), 0u); // past the end of the stream
    EXPECT_EQ (list->getVariableStateRef (2).getBuffer().getSize(), 0u);
}

TEST (StateTextTest, TemplateArguments)
{
    auto pair = parseSuccess ("Foo(1, 2)");
    ASSERT_NE (pair, nullptr);
    const auto* pairExpression = pair->getClassExpressionValue();
    EXPECT_EQ (pairExpression->getType(), ClassExpression::templateApplication);
    EXPECT_EQ (pairExpression->getClassGeneratorArguments().getType(), StateType::variablesType);
    EXPECT_EQ (pairExpression->getClassGeneratorArguments().getNumVariables(), 2u);
    EXPECT_EQ (pairExpression->toString(), "Foo({1, 2})");

    auto single = parseSuccess ("Foo(1)");
    ASSERT_NE (single, nullptr);
    EXPECT_EQ (single->getClassExpressionValue()->getClassGeneratorArguments().getType(), StateType::integerType);
    EXPECT_EQ (single->getClassExpressionValue()->toString(), "Foo(1)");
}

TEST (StateTextTest, LinesCountFromZero)
{
    EXPECT_EQ (parseFailure ("{\n  a = 1,\n  b = \n}")[0], positionReport ("src", 2, 5, "  b =", " ") + " => Expected a value.");
}

TEST (StateTextTest, UnexpectedExpressionOnALaterLine)
{
    const auto report = positionReport ("src", 1, 0, "", "2");
    EXPECT_EQ (parseFailure ("1\n2")[0], report + " => Unexpected expression at the end of state: " + report);
}

TEST (StateTextTest, OneReportPerParse)
{
    // The innermost failure is reported; the failures it causes further out are not.
    EXPECT_EQ (parseFailure ("{a = {b = {c = }}}").size(), 2u);
    EXPECT_EQ (parseFailure ("{a = {b = {c = }}}")[0],
               positionReport ("src", 0, 14, "{a = {b = {c =", " }}}") + " => Expected a value.");
}

TEST (StateTextTest, CarriageReturnsAndTabsAreWhiteSpace)
{
    auto list = parseSuccess ("{\r\n\ta\t=\t1,\r\n\tb = 2\r\n}\r\n");
    ASSERT_NE (list, nullptr);
    EXPECT_EQ (list->toString(), "{a = 1, b = 2}");
}

TEST (StateTextTest, IllFormedUtf8ReadsAsReplacementCharacters)
{
    // A juce::String keeps ill-formed bytes (and loses the character after an
    // overlong sequence, hence the final blanks); the parser reads each byte of
    // an ill-formed sequence as U+FFFD.
    const juce::String replacement = juce::String::charToString ((juce::juce_wchar) 0xfffd);
    auto overlong = parseSuccess (juce::String::fromUTF8 ("{a = \"x\xc0\xa0y\"} "));
    ASSERT_NE (overlong, nullptr);
    EXPECT_EQ (overlong->getVariableStateRef (0).getString(), "x" + replacement + replacement + "y");

    auto surrogate = parseSuccess (juce::String::fromUTF8 ("Foo\xed\xa0\x80"));
    ASSERT_NE (surrogate, nullptr);
    EXPECT_EQ (surrogate->getClassExpressionValue()->getIdentifier(), "Foo" + replacement + replacement + replacement);
    EXPECT_EQ (parseSuccess (surrogate->saveToString())->saveToString(), surrogate->saveToString());
}

//==============================================================================
// Entry points, callbacks and limits

TEST (StateTextTest, BufferEntryPointNamesTheSource)
{
    RecordingExecutionContext context;
    const char text[] = "{a = }";
    EXPECT_EQ (State::createFromStateStringBuffer (context, text, 6, "settings.txt"), nullptr);
    ASSERT_EQ (context.errors.size(), 2u);
    EXPECT_EQ (context.errors[0], positionReport ("settings.txt", 0, 4, "{a =", " }") + " => Expected a value.");
    EXPECT_EQ (context.errors[1], "Could not parse value of settings.txt");

    auto state = State::createFromStateStringBuffer (context, "{a = 1}", 7, "settings.txt");
    ASSERT_NE (state, nullptr);
    EXPECT_EQ (state->toString(), "{a = 1}");
}

TEST (StateTextTest, StreamEntryPointReportsOnlyTheParserReport)
{
    RecordingExecutionContext context;
    juce::MemoryInputStream text ("5e3", 3, false);
    EXPECT_EQ (State::parse (context, text, "stream"), nullptr);
    EXPECT_EQ (context.errors, (std::vector<juce::String> { positionReport ("stream", 0, 0, "", "5e3") + " => Expected a value." }));
}

namespace
{
    struct RecordingCallback : public StateParserCallback
    {
        bool stateParsed (State& state) override
        {
            seen.add (state.toString());
            return ! (stopAtInteger && state.getType() == StateType::integerType && state.getInteger() == stopAtInteger);
        }

        juce::StringArray seen;
        int64_t stopAtInteger = 0;
    };

    struct NegatingCallback : public StateParserCallback
    {
        bool stateParsed (State& state) override
        {
            if (state.getType() == StateType::integerType)
                state.setInteger (-state.getInteger());
            return true;
        }
    };
}

TEST (StateTextTest, CallbackSeesChildrenBeforeParentsAndTemplateArguments)
{
    RecordingExecutionContext context;
    RecordingCallback callback;
    auto state = State::createFromStateString (context, "{a = 1, b = Foo(2, 3)}", "src", &callback);

    ASSERT_NE (state, nullptr);
    EXPECT_EQ (callback.seen, juce::StringArray ({ "1", "2", "3", "{2, 3}", "Foo({2, 3})", "{a = 1, b = Foo({2, 3})}" }));
}

TEST (StateTextTest, CallbackMayChangeTheNode)
{
    RecordingExecutionContext context;
    NegatingCallback callback;
    auto state = State::createFromStateString (context, "{a = 1, b = {c = 2}}", "src", &callback);
    ASSERT_NE (state, nullptr);
    EXPECT_EQ (state->toString(), "{a = -1, b = {c = -2}}");
}

TEST (StateTextTest, CallbackStopsTheParseWithoutAParserReport)
{
    RecordingExecutionContext context;
    RecordingCallback callback;
    callback.stopAtInteger = 2;

    EXPECT_EQ (State::createFromStateString (context, "{a = 1, b = 2, c = 3}", "src", &callback), nullptr);
    EXPECT_EQ (callback.seen, juce::StringArray ({ "1", "2" }));
    EXPECT_EQ (context.errors, (std::vector<juce::String> { "Could not parse value \"{a = 1, b = 2, c = 3}\"" }));
}

TEST (StateTextTest, NestingUpToTheLimitParses)
{
    const int blocks = (int) StateParser::maximumDepth - 1;
    const auto text = repeat ("{", blocks) + "1" + repeat ("}", blocks);
    auto state = parseSuccess (text);
    ASSERT_NE (state, nullptr);

    const State* node = state.get();
    for (int i = 0; i < blocks; ++i)
        node = &node->getVariableStateRef (0);
    EXPECT_EQ (node->getInteger(), 1);
    EXPECT_TRUE (*parseSuccess (state->saveToString()) == *state);
}

TEST (StateTextTest, NestingBeyondTheLimitIsReported)
{
    const int blocks = (int) StateParser::maximumDepth;
    const auto errors = parseFailure (repeat ("{", blocks) + "1" + repeat ("}", blocks));
    ASSERT_EQ (errors.size(), 2u);
    EXPECT_EQ (errors[0], positionReport ("src", 0, blocks, repeat ("{", blocks), "1" + repeat ("}", blocks))
                            + " => Too deeply nested state: more than 512 levels");
}

TEST (StateTextTest, DeepNestingDoesNotExhaustTheStack)
{
    const juce::String suffix = " => Too deeply nested state: more than 512 levels";
    for (auto* opening : { "{", "=> ", "A(", "{a = ", "'A(" })
    {
        RecordingExecutionContext context;
        const auto text = repeat (opening, 100000);
        EXPECT_EQ (State::createFromStateString (context, text, "deep"), nullptr) << opening;
        ASSERT_EQ (context.errors.size(), 2u) << opening;
        EXPECT_TRUE (context.errors[0].endsWith (suffix)) << opening;
        EXPECT_TRUE (context.errors[0].startsWith ("Stream: deep\nLine: 0\n")) << opening;
    }
}
