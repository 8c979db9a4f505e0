// The binary stream form of States and class expressions.
//
// A body is a 16-bit header (bits 0-5 stream version 1, bits 6-9 the type,
// bit 10 identifier present, bit 11 version present, bit 12 a dropped
// numChanges field follows), the class expression in optional form, the
// optional identifier and version, then the value. Numbers are little-endian,
// strings UTF-8 with a terminating zero.
#include "State.h"
#include "ClassExpression.h"
#include "WellFormedUtf8.h"
#include "ConversionCache.h"
#include "StringMeasureCache.h"
#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>
#include <typeinfo>

namespace tov
{

namespace
{
constexpr int streamVersion = 1;
constexpr int identifierBit = 1 << 10;
constexpr int versionBit = 1 << 11;
constexpr int numChangesBit = 1 << 12;

bool fail (juce::String& error, const char* message)
{
    error = message;
    return false;
}

//==============================================================================
/** Gathers the fields of a body in a block and hands the stream large writes:
    a call through the stream for each field of each node cost more than the
    fields themselves. After a failed write nothing more is written, so a
    failing stream holds a prefix of the form, though not always as long a
    prefix as field-by-field writing would have left.
*/
class BinaryWriter
{
public:
    explicit BinaryWriter (juce::OutputStream& output) : output (output) {}

    bool writeOptionalState (const State* state)
    {
        writeFlag (state != nullptr);
        return state == nullptr ? ! failed : writeState (*state);
    }

    bool writeState (const State& state)
    {
        const auto type = state.getType();
        const auto identifier = state.getUniqueIdentifier();
        const auto version = state.getVersionNumber();

        int header = streamVersion | ((int) type << 6);
        if (identifier.isNotNull())
            header |= identifierBit;
        if (version != 0)
            header |= versionBit;
        writeLittleEndian ((uint16_t) header);
        if (! writeOptionalExpression (state.getClassExpression()))
            return false;
        if (identifier.isNotNull())
            writeLittleEndian ((uint64_t) identifier.getInt64());
        if (version != 0)
            writeLittleEndian ((uint16_t) (version & 0xffff));
        return writeValue (state);
    }

    bool writeOptionalExpression (const ClassExpression* expression)
    {
        writeFlag (expression != nullptr);
        if (expression == nullptr)
            return ! failed;
        writeByte ((uint8_t) expression->getType());
        writeString (expression->getIdentifier());
        return writeOptionalExpression (expression->getClassParameterExpression())
            && writeOptionalState (expression->getClassGeneratorArgumentsPtr().get());
    }

    /** Hands over what the block holds; false when any write failed. */
    bool finish()
    {
        flush();
        return ! failed;
    }

private:
    static constexpr size_t blockSize = 8192;

    juce::OutputStream& output;
    char block[blockSize];
    size_t used = 0;
    bool failed = false;
    StringMeasureCache<size_t> nameSizes;

    void flush()
    {
        if (used != 0 && ! failed && ! output.write (block, used))
            failed = true;
        used = 0;
    }

    void writeBytes (const void* bytes, size_t size)
    {
        if (used + size > blockSize)
        {
            flush();
            if (size >= blockSize)
            {
                if (! failed && ! output.write (bytes, size))
                    failed = true;
                return;
            }
        }
        std::memcpy (block + used, bytes, size);
        used += size;
    }

    template <class Unsigned>
    void writeLittleEndian (Unsigned value)
    {
        value = juce::ByteOrder::swapIfBigEndian (value);
        writeBytes (&value, sizeof (value));
    }

    static uint64_t getBits (double value)
    {
        uint64_t bits;
        std::memcpy (&bits, &value, sizeof (bits));
        return bits;
    }

    void writeByte (uint8_t byte)      { writeBytes (&byte, 1); }
    void writeFlag (bool present)      { writeByte (present ? 1 : 0); }

    // The bytes and a zero, as OutputStream::writeString writes them.
    void writeString (const juce::String& text)
    {
        writeBytes (text.toRawUTF8(), getNumBytesAsUtf8 (text) + 1);
    }

    // Names recur, and the tree outlives the writer: their sizes are kept.
    void writeName (const juce::String& name)
    {
        writeBytes (name.toRawUTF8(), nameSizes.get (name, [&name] { return getNumBytesAsUtf8 (name); }) + 1);
    }

    bool writeValue (const State& state)
    {
        switch (state.getType())
        {
            case StateType::voidType:            break;
            case StateType::booleanType:         writeByte (state.getBoolean() ? 1 : 0); break;
            case StateType::integerType:         writeLittleEndian ((uint64_t) state.getInteger()); break;
            case StateType::realType:            writeLittleEndian (getBits (state.getReal())); break;
            case StateType::stringType:          writeString (state.getString()); break;
            case StateType::weakPointerType:     writeLittleEndian ((uint64_t) state.getUniqueIdentifierValue().getInt64()); break;
            case StateType::ownedPointerType:    return writeOptionalState (state.getOwnedPointer().get());
            case StateType::classExpressionType: return writeOptionalExpression (state.getClassExpressionValue());
            case StateType::nativePointerType:   writeLittleEndian ((uint64_t) (juce::pointer_sized_uint) state.getNativePointer()); break;
            case StateType::bufferType:
            {
                const auto& buffer = state.getBuffer();
                const auto size = (int) buffer.getSize();
                writeLittleEndian ((uint32_t) size);
                if (size != 0)
                    writeBytes (buffer.getData(), (size_t) size);
                break;
            }
            case StateType::variablesType:
            {
                const auto& variables = state.getVariables();
                writeLittleEndian ((uint32_t) variables.size());
                for (const auto& variable : variables)
                {
                    writeName (variable.first);
                    if (! writeOptionalState (variable.second.get()))
                        return false;
                }
                break;
            }
        }
        return ! failed;
    }
};

//==============================================================================
/** Reads fields from any stream, through its own calls. */
class StreamSource
{
public:
    explicit StreamSource (juce::InputStream& input) : input (input) {}

    bool isExhausted()                  { return input.isExhausted(); }
    int64_t getNumBytesRemaining()      { return input.getNumBytesRemaining(); }
    char readByte()                     { return input.readByte(); }
    short readShort()                   { return input.readShort(); }
    int readInt()                       { return input.readInt(); }
    int64_t readInt64()                 { return input.readInt64(); }
    int read (void* destination, int size) { return input.read (destination, size); }

    // The bytes up to the zero byte, or to the end of the stream when there is none;
    // they stay valid until the next read.
    std::string_view readStringBytes()
    {
        bytes.clear();
        for (char c; input.read (&c, 1) == 1 && c != 0;)
            bytes += c;
        return bytes;
    }

private:
    juce::InputStream& input;
    std::string bytes;
};

/** Reads the bytes of a MemoryInputStream in place, by the stream's own rules (a
    short read takes what is left), and leaves the stream where reading ended.
*/
class MemorySource
{
public:
    explicit MemorySource (juce::MemoryInputStream& input)
        : input (input), data (static_cast<const char*> (input.getData())), size (input.getDataSize()),
          position ((size_t) input.getPosition())
    {
    }

    ~MemorySource()                     { input.setPosition ((juce::int64) position); }

    bool isExhausted() const noexcept   { return position >= size; }
    int64_t getNumBytesRemaining() const noexcept { return (int64_t) (size - position); }
    char readByte() noexcept            { return isExhausted() ? 0 : data[position++]; }
    short readShort() noexcept          { return (short) juce::ByteOrder::swapIfBigEndian (readFixed<uint16_t>()); }
    int readInt() noexcept              { return (int) juce::ByteOrder::swapIfBigEndian (readFixed<uint32_t>()); }
    int64_t readInt64() noexcept        { return (int64_t) juce::ByteOrder::swapIfBigEndian (readFixed<uint64_t>()); }

    int read (void* destination, int count) noexcept
    {
        if (count <= 0 || isExhausted())
            return 0;
        const size_t numRead = std::min ((size_t) count, size - position);
        std::memcpy (destination, data + position, numRead);
        position += numRead;
        return (int) numRead;
    }

    std::string_view readStringBytes() noexcept
    {
        const char* start = data + position;
        const auto* zero = static_cast<const char*> (std::memchr (start, 0, size - position));
        const size_t length = zero != nullptr ? (size_t) (zero - start) : size - position;
        position = zero != nullptr ? position + length + 1 : size;
        return { start, length };
    }

private:
    juce::MemoryInputStream& input;
    const char* data;
    size_t size, position;

    template <class Unsigned>
    Unsigned readFixed() noexcept
    {
        Unsigned value = 0;
        if (read (&value, sizeof (value)) != (int) sizeof (value))
            return 0;
        return value;
    }
};

/** Reads through whichever source suits the stream. The reading is the same
    either way; a MemoryInputStream only spares a call per field.
*/
template <class Read>
bool readFrom (juce::InputStream& input, Read&& read)
{
    if (typeid (input) == typeid (juce::MemoryInputStream))
    {
        MemorySource source (static_cast<juce::MemoryInputStream&> (input));
        return read (source);
    }
    StreamSource source (input);
    return read (source);
}
} // namespace

//==============================================================================
/** The reading half of the form, over a source of fields. */
template <class Source>
class StateBinaryReader
{
public:
    StateBinaryReader (Source& source, juce::String& error) : source (source), error (error) {}

    bool readOptionalExpression (const ClassExpression*& expression)
    {
        expression = nullptr;
        if (source.isExhausted())
            return fail (error, "Unexpected end of stream, expected Class Expression");
        if (source.readByte() == 0)
            return true;

        if (source.isExhausted())
            return fail (error, "Unexpected end of stream, expected Class Expression");
        const int type = (juce::uint8) source.readByte();
        juce::String identifier;
        const ClassExpression* atomicExpression = nullptr;
        if (! (type == ClassExpression::atomic ? readAtomicExpression (atomicExpression)
                                                 : readNonEmptyName (identifier, "Unexpected end of stream, expected Class Expression")))
            return false;
        const ClassExpression* inner = nullptr;
        if (! readOptionalExpression (inner))
            return false;
        std::shared_ptr<State> arguments;
        if (! readOptionalState (arguments))
            return false;

        switch (type)
        {
            case ClassExpression::atomic:              expression = atomicExpression; return true;
            case ClassExpression::classParameter:      expression = inner != nullptr ? createClassParameterExpression (inner, identifier) : nullptr; return true;
            case ClassExpression::templateApplication: expression = arguments != nullptr ? createTemplateClassExpression (identifier, arguments) : nullptr; return true;
            default:                                   return fail (error, "Unexpected type of class expression");
        }
    }

    bool readOptionalState (std::shared_ptr<State>& state)
    {
        state = nullptr;
        if (source.isExhausted())
            return fail (error, "Unexpected end of stream, expected State");
        if (source.readByte() == 0)
            return true;
        state = std::make_shared<State>();
        return readState (*state);
    }

    bool readState (State& state)
    {
        if (! hasBytes (2))
            return fail (error, "Unexpected end of stream, expected State");
        const int header = (juce::uint16) source.readShort();
        const int version = header & 0x3f;
        if (version != streamVersion)
        {
            error = "Unexpected binary stream version: " + juce::String (version);
            return false;
        }

        const ClassExpression* expression = nullptr;
        if (source.isExhausted())
            return fail (error, "Unexpected end of stream, expected Class Expression");
        if (! readOptionalExpression (expression))
            return false;
        state.setClassExpression (expression);

        state.uniqueIdentifier = UniqueIdentifier();
        if ((header & identifierBit) != 0)
        {
            if (! hasBytes (8))
                return fail (error, "Unexpected end of stream, expected unique identifier");
            state.uniqueIdentifier = UniqueIdentifier ((uint64_t) source.readInt64());
        }

        state.versionNumber = 0;
        if ((header & versionBit) != 0)
        {
            if (! hasBytes (2))
                return fail (error, "Unexpected end of stream, expected version Number");
            state.versionNumber = (uint64_t) (int64_t) source.readShort();
        }

        if ((header & numChangesBit) != 0)
        {
            if (! hasBytes (8))
                return fail (error, "Unexpected end of stream, expected numChanges");
            source.readInt64();
        }

        const int typeValue = (header >> 6) & 0xf;
        if (typeValue == 0)
            return true;
        if (source.isExhausted())
            return fail (error, "Unexpected end of stream, expected State value");
        if (typeValue > (int) StateType::bufferType)
            return fail (error, "Unexpected type of State");
        return readValue (state, (StateType) typeValue);
    }

private:
    Source& source;
    juce::String& error;
    // Small states (an envelop on a connection) are read by the thousand on one thread, and
    // each would pay for caches of its own: a thread's readers share theirs instead.
    struct Caches
    {
        ConversionCache<juce::String> names;
        ConversionCache<const ClassExpression*> atomicExpressions;
    };
    Caches& caches = getThreadCaches();
    ConversionCache<juce::String>& names = caches.names;
    ConversionCache<const ClassExpression*>& atomicExpressions = caches.atomicExpressions;

    static Caches& getThreadCaches()
    {
        thread_local Caches threadCaches;
        // A thread that has read every name there is starts again rather than converting new
        // names one by one for the rest of its life.
        if (threadCaches.names.isFull() || threadCaches.atomicExpressions.isFull())
            threadCaches = Caches();
        return threadCaches;
    }

    // Guards every read of a fixed-size field: a stream too short for it fails with the message.
    bool hasBytes (int64_t count)
    {
        const auto remaining = source.getNumBytesRemaining();
        return ! source.isExhausted() && (remaining < 0 || remaining >= count);
    }

    juce::String readString()
    {
        const auto bytes = source.readStringBytes();
        return makeWellFormedUtf8 (bytes.data(), bytes.size());
    }

    // Names of variables and classes: the same bytes give the same string.
    bool readNonEmptyName (juce::String& name, const char* message)
    {
        if (source.isExhausted())
            return fail (error, message);
        const auto bytes = source.readStringBytes();
        name = names.get (bytes.data(), bytes.size(), [&] { return makeWellFormedUtf8 (bytes.data(), bytes.size()); });
        return true;
    }

    // The expression of a class name, found by the name's bytes.
    bool readAtomicExpression (const ClassExpression*& expression)
    {
        if (source.isExhausted())
            return fail (error, "Unexpected end of stream, expected Class Expression");
        const auto bytes = source.readStringBytes();
        expression = atomicExpressions.get (bytes.data(), bytes.size(), [&]
        {
            return createAtomicClassExpression (makeWellFormedUtf8 (bytes.data(), bytes.size()));
        });
        return true;
    }

    bool readValue (State& state, StateType type)
    {
        switch (type)
        {
            case StateType::booleanType:
                state.setBoolean (source.readByte() != 0);
                return true;
            case StateType::integerType:
            case StateType::weakPointerType:
            case StateType::nativePointerType:
            case StateType::realType:
            {
                if (! hasBytes (8))
                    return fail (error, "Unexpected end of stream, expected State value");
                const auto word = source.readInt64();
                state.setType (type);
                state.payload.integer = word;
                return true;
            }
            case StateType::stringType:
                state.setString (readString());
                return true;
            case StateType::ownedPointerType:
            {
                std::shared_ptr<State> target;
                const bool result = readOptionalState (target);
                state.setOwnedPointer (target);
                return result;
            }
            case StateType::classExpressionType:
            {
                const ClassExpression* value = nullptr;
                const bool result = readOptionalExpression (value);
                state.setClassExpressionValue (value);
                return result;
            }
            case StateType::bufferType:     return readBuffer (state);
            case StateType::variablesType:  return readVariables (state);
            case StateType::voidType:       return true;
        }
        return fail (error, "Unexpected type of State");
    }

    // A size of 0 or less is an empty buffer. The size is checked against what the
    // stream holds, so a corrupt size never allocates more than the stream could fill.
    bool readBuffer (State& state)
    {
        if (! hasBytes (4))
            return fail (error, "Unexpected end of stream, expected State value");
        const int size = source.readInt();
        state.setType (StateType::bufferType);
        if (size <= 0)
            return true;
        if (source.isExhausted())
            return fail (error, "Unexpected end of stream, expected buffer");
        const auto remaining = source.getNumBytesRemaining();
        if (remaining >= 0 && remaining < size)
            return fail (error, "Unexpected end of stream, truncated buffer");

        auto& buffer = *state.payload.buffer;
        buffer.allocateData ((uint64_t) size);
        if (source.read (buffer.getData(), size) != size)
        {
            buffer.reset();
            return fail (error, "Unexpected end of stream, truncated buffer");
        }
        return true;
    }

    // A count of 0 leaves the node as it was: an empty list reads back as void.
    // Every variable takes at least two bytes, which bounds what a corrupt count
    // can reserve; the room is reserved once the first variable has been read.
    bool readVariables (State& state)
    {
        if (! hasBytes (4))
            return fail (error, "Unexpected end of stream, expected State value");
        const int count = source.readInt();
        for (int i = 0; i < count; ++i)
        {
            juce::String name;
            if (! readNonEmptyName (name, "Unexpected end of stream, expected variable name"))
                return false;
            std::shared_ptr<State> variable;
            if (! readOptionalState (variable))
                return false;

            // Every variable of a tree has a node: a null one in the stream becomes void.
            if (variable == nullptr)
                variable = std::make_shared<State>();
            state.setType (StateType::variablesType);
            auto& variables = *state.payload.variables;
            if (i == 0)
                variables.reserve (variables.size() + getRoomForVariables (count));
            variables.emplace_back (std::move (name), std::move (variable));
        }
        return true;
    }

    size_t getRoomForVariables (int count)
    {
        const auto remaining = source.getNumBytesRemaining();
        return (size_t) std::min<int64_t> (count, remaining < 0 ? 1 : remaining / 2 + 1);
    }
};

//==============================================================================
bool ClassExpression::toBinary (const ClassExpression* expression, juce::OutputStream& output)
{
    BinaryWriter writer (output);
    return writer.writeOptionalExpression (expression) && writer.finish();
}

bool ClassExpression::loadFromBinary (juce::InputStream& input, const ClassExpression*& expression, juce::String& error)
{
    return readFrom (input, [&] (auto& source) { return StateBinaryReader (source, error).readOptionalExpression (expression); });
}

bool State::toBinary (const State* state, juce::OutputStream& output)
{
    BinaryWriter writer (output);
    return writer.writeOptionalState (state) && writer.finish();
}

bool State::toBinary (juce::OutputStream& output) const
{
    BinaryWriter writer (output);
    return writer.writeState (*this) && writer.finish();
}

bool State::loadFromBinary (juce::InputStream& input, std::shared_ptr<State>& state, juce::String& error)
{
    return readFrom (input, [&] (auto& source) { return StateBinaryReader (source, error).readOptionalState (state); });
}

bool State::loadFromBinary (juce::InputStream& input, juce::String& error)
{
    return readFrom (input, [&] (auto& source) { return StateBinaryReader (source, error).readState (*this); });
}

} // namespace tov
