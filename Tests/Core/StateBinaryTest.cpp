#include <Tov/Core/State.h>
#include <Tov/Core/ClassExpression.h>
#include <Support/RandomTreeGenerator.h>
#include <gtest/gtest.h>

using namespace tov;

namespace
{
std::vector<uint8_t> toBytes (const State* state)
{
    juce::MemoryOutputStream output;
    EXPECT_TRUE (State::toBinary (state, output));
    auto* data = static_cast<const uint8_t*> (output.getData());
    return std::vector<uint8_t> (data, data + output.getDataSize());
}

std::shared_ptr<State> fromBytes (const std::vector<uint8_t>& bytes, juce::String& error, bool expectSuccess = true)
{
    juce::MemoryInputStream input (bytes.data(), bytes.size(), false);
    std::shared_ptr<State> state;
    EXPECT_EQ (State::loadFromBinary (input, state, error), expectSuccess) << error;
    return state;
}

std::shared_ptr<State> roundTrip (const State& state)
{
    juce::String error;
    return fromBytes (toBytes (&state), error);
}
}

TEST (StateBinaryTest, IntegerFive)
{
    const State five ((int64_t) 5);
    juce::MemoryOutputStream output;
    ASSERT_TRUE (five.toBinary (output));
    const std::vector<uint8_t> body (static_cast<const uint8_t*> (output.getData()),
                                     static_cast<const uint8_t*> (output.getData()) + output.getDataSize());
    EXPECT_EQ (body, (std::vector<uint8_t> { 0x81, 0x00, 0x00, 0x05, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00 }));
}

TEST (StateBinaryTest, NullIsOneZeroByte)
{
    EXPECT_EQ (toBytes (nullptr), (std::vector<uint8_t> { 0 }));
    juce::String error;
    EXPECT_EQ (fromBytes ({ 0 }, error), nullptr);
    EXPECT_TRUE (error.isEmpty());
}

TEST (StateBinaryTest, GoldenStreamOfEveryType)
{
    State tree;
    tree.setAtomicClassExpression ("Doc");
    tree.setUniqueIdentifier (UniqueIdentifier (0x0102));
    tree.setVersionNumber (3);
    tree.addVariable ("v", std::make_shared<State>());
    tree.addVariable ("b", std::make_shared<State> (true));
    tree.addVariable ("i", std::make_shared<State> ((int64_t) -2));
    tree.addVariable ("r", std::make_shared<State> (0.5));
    tree.addVariable ("s", std::make_shared<State> ("hi"));
    tree.addVariable ("w", std::make_shared<State> (UniqueIdentifier (7)));
    auto owned = std::make_shared<State>();
    owned->setOwnedPointer (std::make_shared<State> (false));
    tree.addVariable ("o", owned);
    tree.addVariable ("c", std::make_shared<State> (createAtomicClassExpression ("X")));
    tree.addVariable ("", std::make_shared<State> ((uint64_t) 2, (void*) "\x01\x02", true));

    const std::vector<uint8_t> expected {
        0x01,                                       // present
        0xC1, 0x0D,                                 // header: version 1, variables (7), identifier and version flags
        0x01, 0x01, 'D', 'o', 'c', 0x00, 0x00, 0x00, // class expression: present, atomic, "Doc", no inner, no arguments
        0x02, 0x01, 0, 0, 0, 0, 0, 0,               // identifier 0x0102
        0x03, 0x00,                                 // version 3
        0x09, 0x00, 0x00, 0x00,                     // nine variables
        'v', 0, 0x01, 0x01, 0x00, 0x00,             // void
        'b', 0, 0x01, 0x41, 0x00, 0x00, 0x01,       // boolean true
        'i', 0, 0x01, 0x81, 0x00, 0x00, 0xFE, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF,
        'r', 0, 0x01, 0xC1, 0x00, 0x00, 0, 0, 0, 0, 0, 0, 0xE0, 0x3F,
        's', 0, 0x01, 0x01, 0x01, 0x00, 'h', 'i', 0,
        'w', 0, 0x01, 0x41, 0x01, 0x00, 0x07, 0, 0, 0, 0, 0, 0, 0,
        'o', 0, 0x01, 0x81, 0x01, 0x00, 0x01, 0x41, 0x00, 0x00, 0x00, // owned pointer to false
        'c', 0, 0x01, 0x01, 0x02, 0x00, 0x01, 0x01, 'X', 0, 0x00, 0x00, // class value X
        0, 0x01, 0x81, 0x02, 0x00, 0x02, 0, 0, 0, 0x01, 0x02          // unnamed buffer of two bytes
    };
    EXPECT_EQ (toBytes (&tree), expected);

    juce::String error;
    auto back = fromBytes (expected, error);
    ASSERT_NE (back, nullptr);
    EXPECT_TRUE (back->equals (tree));
    EXPECT_EQ (back->getVariableStateRef (8).getBuffer(), RawBuffer (2, "\x01\x02", false));
}

TEST (StateBinaryTest, NativePointerKeepsItsValue)
{
    int anything = 0;
    const State pointer (reinterpret_cast<const Object*> (&anything));
    EXPECT_EQ (roundTrip (pointer)->getNativePointer(), reinterpret_cast<const Object*> (&anything));
}

TEST (StateBinaryTest, VersionNumbersKeepSixteenBits)
{
    State node ((int64_t) 1);
    node.setVersionNumber (70000);
    EXPECT_EQ (roundTrip (node)->getVersionNumber(), 4464u);
    node.setVersionNumber (40000);
    EXPECT_EQ (roundTrip (node)->getVersionNumber(), (uint64_t) (int64_t) (int16_t) 40000);
}

TEST (StateBinaryTest, StreamVersionTwoFails)
{
    juce::String error;
    fromBytes ({ 0x01, 0x82, 0x00, 0x00 }, error, false);
    EXPECT_EQ (error, "Unexpected binary stream version: 2");
}

TEST (StateBinaryTest, NumChangesFieldIsReadAndDropped)
{
    juce::String error;
    auto withField = fromBytes ({ 0x01, 0x81, 0x10, 0x00, 9, 9, 9, 9, 9, 9, 9, 9, 0x05, 0, 0, 0, 0, 0, 0, 0 }, error);
    ASSERT_NE (withField, nullptr);
    EXPECT_TRUE (withField->equals (State ((int64_t) 5)));
}

TEST (StateBinaryTest, EmptyListReadsBackAsVoidWithItsClass)
{
    State list;
    list.reserveVariables (0);
    list.setAtomicClassExpression ("Folder");
    auto back = roundTrip (list);
    EXPECT_EQ (back->getType(), StateType::voidType);
    EXPECT_EQ (back->getClassExpression(), createAtomicClassExpression ("Folder"));
}

TEST (StateBinaryTest, TemplateAndParameterExpressions)
{
    auto arguments = std::make_shared<State> (createAtomicClassExpression ("String"));
    auto* vector = createTemplateClassExpression ("OwnedVector", arguments);
    auto* parameter = createClassParameterExpression (vector, "target");
    const State node (parameter);
    EXPECT_EQ (roundTrip (node)->getClassExpressionValue(), parameter);
}

TEST (StateBinaryTest, ExpressionsWithoutTheirPartsReadAsNull)
{
    juce::String error;
    // A class value: a template without arguments, then a parameter without base expression.
    auto noArguments = fromBytes ({ 0x01, 0x01, 0x02, 0x00, 0x01, 0x02, 'B', 'o', 'x', 0, 0x00, 0x00 }, error);
    EXPECT_EQ (noArguments->getType(), StateType::classExpressionType);
    EXPECT_EQ (noArguments->getClassExpressionValue(), nullptr);
    auto noBase = fromBytes ({ 0x01, 0x01, 0x02, 0x00, 0x01, 0x03, 'k', 'e', 'y', 0, 0x00, 0x00 }, error);
    EXPECT_EQ (noBase->getClassExpressionValue(), nullptr);
    EXPECT_EQ (noBase->toShortString(), "<noclass>");
}

TEST (StateBinaryTest, TruncationErrors)
{
    const State five ((int64_t) 5);
    const auto bytes = toBytes (&five);
    struct Case { size_t length; const char* error; };
    for (auto& c : { Case { 0, "Unexpected end of stream, expected State" },
                     Case { 2, "Unexpected end of stream, expected State" },
                     Case { 3, "Unexpected end of stream, expected Class Expression" },
                     Case { 4, "Unexpected end of stream, expected State value" },
                     Case { 8, "Unexpected end of stream, expected State value" } })
    {
        juce::String error;
        fromBytes (std::vector<uint8_t> (bytes.begin(), bytes.begin() + (std::ptrdiff_t) c.length), error, false);
        EXPECT_EQ (error, c.error) << c.length;
    }

    juce::String error;
    fromBytes ({ 0x01, 0x41, 0x04, 0x00, 1, 2 }, error, false);
    EXPECT_EQ (error, "Unexpected end of stream, expected unique identifier");
    fromBytes ({ 0x01, 0x41, 0x08, 0x00, 1 }, error, false);
    EXPECT_EQ (error, "Unexpected end of stream, expected version Number");
    fromBytes ({ 0x01, 0x41, 0x10, 0x00 }, error, false);
    EXPECT_EQ (error, "Unexpected end of stream, expected numChanges");
    fromBytes ({ 0x01, 0xC1, 0x01, 0x00, 0x01, 0, 0, 0 }, error, false);
    EXPECT_EQ (error, "Unexpected end of stream, expected variable name");
    fromBytes ({ 0x01, 0x81, 0x02, 0x00, 0x04, 0, 0, 0 }, error, false);
    EXPECT_EQ (error, "Unexpected end of stream, expected buffer");
    fromBytes ({ 0x01, 0x81, 0x02, 0x00, 0x04, 0, 0, 0, 1, 2 }, error, false);
    EXPECT_EQ (error, "Unexpected end of stream, truncated buffer");
    fromBytes ({ 0x01, 0xC1, 0x02, 0x00, 0x00 }, error, false);
    EXPECT_EQ (error, "Unexpected type of State");
    fromBytes ({ 0x01, 0x01, 0x00, 0x01, 0x07, 'X', 0, 0, 0 }, error, false);
    EXPECT_EQ (error, "Unexpected type of class expression");
}

TEST (StateBinaryTest, HugeCountsFailQuickly)
{
    juce::String error;
    // A buffer of 2^31 - 1 bytes announced in a 20-byte stream.
    fromBytes ({ 0x01, 0x81, 0x02, 0x00, 0xFF, 0xFF, 0xFF, 0x7F, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12 }, error, false);
    EXPECT_EQ (error, "Unexpected end of stream, truncated buffer");
    // 2^31 - 1 variables announced, only one there.
    auto partial = fromBytes ({ 0x01, 0xC1, 0x01, 0x00, 0xFF, 0xFF, 0xFF, 0x7F, 'a', 0, 0x00 }, error, false);
    EXPECT_EQ (error, "Unexpected end of stream, expected variable name");
    ASSERT_EQ (partial->getNumVariables(), 1u);
    EXPECT_EQ (partial->getVariableStateRef (0).getType(), StateType::voidType);
}

TEST (StateBinaryTest, FailedVariableKeepsWhatWasRead)
{
    juce::MemoryInputStream input ("\xC1\x01\x00\x02\x00\x00\x00" "a\0\x00" "b\0", 12, false);
    State node;
    juce::String error;
    EXPECT_FALSE (node.loadFromBinary (input, error));
    EXPECT_EQ (error, "Unexpected end of stream, expected State");
    ASSERT_EQ (node.getNumVariables(), 1u);
    EXPECT_EQ (node.getVariableStateRef (0).getType(), StateType::voidType);
    EXPECT_EQ (node.getVariableName (0), "a");
}

TEST (StateBinaryTest, BufferOfSizeZero)
{
    const State empty ((uint64_t) 0, nullptr, false);
    EXPECT_EQ (toBytes (&empty), (std::vector<uint8_t> { 0x01, 0x81, 0x02, 0x00, 0, 0, 0, 0 }));
    juce::String error;
    auto negative = fromBytes ({ 0x01, 0x81, 0x02, 0x00, 0xFF, 0xFF, 0xFF, 0xFF }, error);
    EXPECT_EQ (negative->getType(), StateType::bufferType);
    EXPECT_EQ (negative->getBuffer().getSize(), 0u);
}

TEST (StateBinaryTest, ReadingAgainWhatWasWrittenGivesTheSameTree)
{
    // Found by the fuzzer of the binary form: a name of ill-formed UTF-8 was written back with other bytes.
    const std::vector<uint8_t> bytes { 0x01, 0xc1, 0x0d, 0x01, 0x01, 0x44, 0x6f, 0x63, 0x00, 0x00, 0x00, 0xfe, 0xfe, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0x03, 0x00, 0x09, 0x00, 0x00, 0x00, 0x76, 0x00, 0x01, 0x01, 0x00, 0x00, 0x62, 0x00, 0x01, 0x41, 0x00, 0x00, 0x01, 0x69, 0x00, 0x01, 0x81, 0x32, 0x00, 0xfe, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0x72, 0x00, 0x01, 0xc1, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xe0, 0x3f, 0x73, 0x00, 0x01, 0x01, 0x01, 0x00, 0x68, 0x69, 0x00, 0x77, 0x00, 0x01, 0x41, 0x01, 0x00, 0x07, 0x00, 0x00, 0x00, 0x1c, 0x00, 0x00, 0x00, 0x6f, 0x00, 0x01, 0x81, 0x01, 0x00, 0x01, 0x41, 0x00, 0x00, 0x00, 0x63, 0x00, 0x01, 0x01, 0x02, 0x00, 0x01, 0x01, 0x58, 0x00, 0x00, 0x00, 0x00, 0x01, 0x81, 0x02, 0x00, 0x02, 0x00, 0x00, 0x00, 0x01, 0x02 };
    juce::String error;
    juce::MemoryInputStream input (bytes.data(), bytes.size(), false);
    std::shared_ptr<State> state;
    State::loadFromBinary (input, state, error);
    ASSERT_NE (state, nullptr);
    auto reread = roundTrip (*state);
    EXPECT_TRUE (state->equals (*reread));
    EXPECT_GE (state->findVariable (juce::String::fromUTF8 ("\xef\xbf\xbd?s")), 0);
}

//==============================================================================
// Memory streams are read in place; any other stream through its calls. Both
// must give the same tree, report and position, whole or cut short.
namespace
{
    /** The bytes of a MemoryInputStream behind a stream of another type. */
    class OtherStream : public juce::InputStream
    {
    public:
        OtherStream (const void* data, size_t size) : input (data, size, false) {}
        juce::int64 getTotalLength() override          { return input.getTotalLength(); }
        bool isExhausted() override                    { return input.isExhausted(); }
        int read (void* destination, int size) override { return input.read (destination, size); }
        juce::int64 getPosition() override             { return input.getPosition(); }
        bool setPosition (juce::int64 position) override { return input.setPosition (position); }

    private:
        juce::MemoryInputStream input;
    };

    juce::String describeRead (juce::InputStream& input)
    {
        std::shared_ptr<State> state;
        juce::String error;
        const bool read = State::loadFromBinary (input, state, error);
        juce::MemoryOutputStream again;
        State::toBinary (state.get(), again);
        return juce::String ((int) read) + " " + error + " " + juce::String (input.getPosition()) + " "
             + juce::String::toHexString (again.getData(), (int) again.getDataSize());
    }

    /** Accepts a number of bytes, then fails every write. */
    class FailingStream : public juce::OutputStream
    {
    public:
        explicit FailingStream (size_t capacity) : capacity (capacity) {}
        void flush() override {}
        bool setPosition (juce::int64) override        { return false; }
        juce::int64 getPosition() override             { return (juce::int64) received.getDataSize(); }
        bool write (const void* data, size_t size) override
        {
            return received.getDataSize() + size <= capacity && received.write (data, size);
        }

        juce::MemoryOutputStream received;

    private:
        size_t capacity;
    };
}

TEST (StateBinaryTest, MemoryStreamsReadAsOtherStreamsRead)
{
    tov::testing::RandomTreeGenerator generator (56);
    juce::Random random (56);
    for (int i = 0; i < 300; ++i)
    {
        auto bytes = toBytes (generator.makeTree (4).get());
        for (int variant = 0; variant < 8; ++variant)
        {
            auto input = bytes;
            if (variant % 2 == 1)
                input.resize ((size_t) random.nextInt ((int) input.size()));
            else if (variant > 0)
                input[(size_t) random.nextInt ((int) input.size())] = (uint8_t) random.nextInt (256);

            juce::MemoryInputStream memory (input.data(), input.size(), false);
            OtherStream other (input.data(), input.size());
            ASSERT_EQ (describeRead (memory), describeRead (other)) << i << " " << variant;
        }
    }
}

TEST (StateBinaryTest, WritingStopsAtAFailingStream)
{
    tov::testing::RandomTreeGenerator generator (78);
    for (int i = 0; i < 50; ++i)
    {
        auto tree = generator.makeTree (5);
        const auto bytes = toBytes (tree.get());
        for (size_t capacity : { (size_t) 0, (size_t) 1, bytes.size() / 2, bytes.size() - 1, bytes.size() })
        {
            FailingStream output (capacity);
            EXPECT_EQ (State::toBinary (tree.get(), output), capacity == bytes.size()) << capacity;
            const auto* received = static_cast<const uint8_t*> (output.received.getData());
            EXPECT_TRUE (std::equal (received, received + output.received.getDataSize(), bytes.begin()));
        }
    }
}

// The bytes of a string are those that OutputStream::writeString writes, which
// for ill-formed text stops where JUCE's count of it stops.
TEST (StateBinaryTest, IllFormedStringsAreWrittenAsJuceWritesThem)
{
    for (auto* bytes : { "plain", "caf\xc3\xa9", "a\x80\x80z", "x\xc0\x80y", "\xe0\x80\xafz", "\xff\xfe", "\xf7\xbf\xbf\xbfq" })
    {
        const auto text = juce::String::fromUTF8 (bytes, (int) std::strlen (bytes));
        juce::MemoryOutputStream expected;
        expected.writeShort (0x0101);
        expected.writeByte (0);
        expected.writeString (text);

        juce::MemoryOutputStream written;
        State (text).toBinary (written);
        EXPECT_TRUE (written.getMemoryBlock() == expected.getMemoryBlock()) << bytes;
    }
}
