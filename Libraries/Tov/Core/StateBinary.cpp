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

bool writeFlag (juce::OutputStream& output, bool present)
{
    return output.writeByte (present ? 1 : 0);
}

// The bytes up to the zero byte, or to the end of the stream when there is none,
// read as well-formed text: what is written again then takes the same bytes.
juce::String readStreamString (juce::InputStream& input)
{
    juce::MemoryOutputStream bytes;
    for (char c; input.read (&c, 1) == 1 && c != 0;)
        bytes.writeByte (c);
    return makeWellFormedUtf8 (bytes.getData(), bytes.getDataSize());
}

bool readNonEmptyStreamString (juce::InputStream& input, juce::String& text, juce::String& error, const char* message)
{
    if (input.isExhausted())
        return fail (error, message);
    text = readStreamString (input);
    return true;
}
}

//==============================================================================
bool ClassExpression::toBinary (const ClassExpression* expression, juce::OutputStream& output)
{
    if (! writeFlag (output, expression != nullptr))
        return false;
    if (expression == nullptr)
        return true;
    return output.writeByte ((char) expression->type)
        && output.writeString (expression->identifier)
        && toBinary (expression->classParameterExpression, output)
        && State::toBinary (expression->classGeneratorArguments.get(), output);
}

bool ClassExpression::loadFromBinary (juce::InputStream& input, const ClassExpression*& expression, juce::String& error)
{
    expression = nullptr;
    if (input.isExhausted())
        return fail (error, "Unexpected end of stream, expected Class Expression");
    if (input.readByte() == 0)
        return true;

    if (input.isExhausted())
        return fail (error, "Unexpected end of stream, expected Class Expression");
    const int type = (juce::uint8) input.readByte();
    juce::String identifier;
    if (! readNonEmptyStreamString (input, identifier, error, "Unexpected end of stream, expected Class Expression"))
        return false;
    const ClassExpression* inner = nullptr;
    if (! loadFromBinary (input, inner, error))
        return false;
    std::shared_ptr<State> arguments;
    if (! State::loadFromBinary (input, arguments, error))
        return false;

    // A template without arguments, or a parameter of no class, names nothing: it reads as null.
    switch (type)
    {
        case atomic:              expression = createAtomicClassExpression (identifier); return true;
        case classParameter:      expression = inner != nullptr ? createClassParameterExpression (inner, identifier) : nullptr; return true;
        case templateApplication: expression = arguments != nullptr ? createTemplateClassExpression (identifier, arguments) : nullptr; return true;
        default:                  return fail (error, "Unexpected type of class expression");
    }
}

//==============================================================================
bool State::toBinary (const State* state, juce::OutputStream& output)
{
    if (! writeFlag (output, state != nullptr))
        return false;
    return state == nullptr || state->toBinary (output);
}

bool State::toBinary (juce::OutputStream& output) const
{
    int header = streamVersion | ((int) type << 6);
    if (uniqueIdentifier.isNotNull())
        header |= identifierBit;
    if (versionNumber != 0)
        header |= versionBit;

    if (! output.writeShort ((short) header) || ! ClassExpression::toBinary (classExpression, output))
        return false;
    if (uniqueIdentifier.isNotNull() && ! output.writeInt64 ((juce::int64) uniqueIdentifier.getInt64()))
        return false;
    if (versionNumber != 0 && ! output.writeShort ((short) (versionNumber & 0xffff)))
        return false;

    switch (type)
    {
        case StateType::voidType:            return true;
        case StateType::booleanType:         return output.writeByte (getBoolean() ? 1 : 0);
        case StateType::integerType:         return output.writeInt64 (payload.integer);
        case StateType::realType:            return output.writeDouble (payload.real);
        case StateType::stringType:          return output.writeString (*payload.string);
        case StateType::weakPointerType:     return output.writeInt64 ((juce::int64) payload.word);
        case StateType::ownedPointerType:    return toBinary (payload.ownedPointer->get(), output);
        case StateType::classExpressionType: return ClassExpression::toBinary (payload.classExpression, output);
        case StateType::nativePointerType:   return output.writeInt64 ((juce::int64) payload.word);
        case StateType::bufferType:
        {
            const auto size = (int) payload.buffer->getSize();
            return output.writeInt (size) && (size == 0 || output.write (payload.buffer->getData(), (size_t) size));
        }
        case StateType::variablesType:
        {
            if (! output.writeInt ((int) payload.variables->size()))
                return false;
            for (auto& variable : *payload.variables)
                if (! output.writeString (variable.first) || ! toBinary (variable.second.get(), output))
                    return false;
            return true;
        }
    }
    return false;
}

bool State::loadFromBinary (juce::InputStream& input, std::shared_ptr<State>& state, juce::String& error)
{
    state = nullptr;
    if (input.isExhausted())
        return fail (error, "Unexpected end of stream, expected State");
    if (input.readByte() == 0)
        return true;
    state = std::make_shared<State>();
    return state->loadFromBinary (input, error);
}

// Guards every read of a fixed-size field: a stream too short for it fails with the message.
static bool hasBytes (juce::InputStream& input, int64_t count)
{
    const auto remaining = input.getNumBytesRemaining();
    return ! input.isExhausted() && (remaining < 0 || remaining >= count);
}

bool State::loadFromBinary (juce::InputStream& input, juce::String& error)
{
    if (! hasBytes (input, 2))
        return fail (error, "Unexpected end of stream, expected State");
    const int header = (juce::uint16) input.readShort();
    const int version = header & 0x3f;
    if (version != streamVersion)
    {
        error = "Unexpected binary stream version: " + juce::String (version);
        return false;
    }

    const ClassExpression* expression = nullptr;
    if (input.isExhausted())
        return fail (error, "Unexpected end of stream, expected Class Expression");
    if (! ClassExpression::loadFromBinary (input, expression, error))
        return false;
    setClassExpression (expression);

    uniqueIdentifier = UniqueIdentifier();
    if ((header & identifierBit) != 0)
    {
        if (! hasBytes (input, 8))
            return fail (error, "Unexpected end of stream, expected unique identifier");
        uniqueIdentifier = UniqueIdentifier ((uint64_t) input.readInt64());
    }

    versionNumber = 0;
    if ((header & versionBit) != 0)
    {
        if (! hasBytes (input, 2))
            return fail (error, "Unexpected end of stream, expected version Number");
        versionNumber = (uint64_t) (int64_t) input.readShort();
    }

    if ((header & numChangesBit) != 0)
    {
        if (! hasBytes (input, 8))
            return fail (error, "Unexpected end of stream, expected numChanges");
        input.readInt64();
    }

    const int typeValue = (header >> 6) & 0xf;
    if (typeValue == 0)
        return true;
    if (input.isExhausted())
        return fail (error, "Unexpected end of stream, expected State value");
    if (typeValue > (int) StateType::bufferType)
        return fail (error, "Unexpected type of State");

    switch ((StateType) typeValue)
    {
        case StateType::booleanType:
            setBoolean (input.readByte() != 0);
            return true;
        case StateType::integerType:
        case StateType::weakPointerType:
        case StateType::nativePointerType:
        case StateType::realType:
        {
            if (! hasBytes (input, 8))
                return fail (error, "Unexpected end of stream, expected State value");
            const auto word = input.readInt64();
            setType ((StateType) typeValue);
            payload.integer = word;
            return true;
        }
        case StateType::stringType:
            setString (readStreamString (input));
            return true;
        case StateType::ownedPointerType:
        {
            std::shared_ptr<State> target;
            const bool result = loadFromBinary (input, target, error);
            setOwnedPointer (target);
            return result;
        }
        case StateType::classExpressionType:
        {
            const ClassExpression* value = nullptr;
            const bool result = ClassExpression::loadFromBinary (input, value, error);
            setClassExpressionValue (value);
            return result;
        }
        case StateType::bufferType:     return loadBufferFromBinary (input, error);
        case StateType::variablesType:  return loadVariablesFromBinary (input, error);
        case StateType::voidType:       return true;
    }
    return fail (error, "Unexpected type of State");
}

// A size of 0 or less is an empty buffer. The size is checked against what the
// stream holds, so a corrupt size never allocates more than the stream could fill.
bool State::loadBufferFromBinary (juce::InputStream& input, juce::String& error)
{
    if (! hasBytes (input, 4))
        return fail (error, "Unexpected end of stream, expected State value");
    const int size = input.readInt();
    setType (StateType::bufferType);
    if (size <= 0)
        return true;
    if (input.isExhausted())
        return fail (error, "Unexpected end of stream, expected buffer");
    const auto remaining = input.getNumBytesRemaining();
    if (remaining >= 0 && remaining < size)
        return fail (error, "Unexpected end of stream, truncated buffer");

    payload.buffer->allocateData ((uint64_t) size);
    if (input.read (payload.buffer->getData(), size) != size)
    {
        payload.buffer->reset();
        return fail (error, "Unexpected end of stream, truncated buffer");
    }
    return true;
}

// A count of 0 leaves the node as it was: an empty list reads back as void.
// Every variable takes at least two bytes, which bounds what a corrupt count can reserve.
bool State::loadVariablesFromBinary (juce::InputStream& input, juce::String& error)
{
    if (! hasBytes (input, 4))
        return fail (error, "Unexpected end of stream, expected State value");
    const int count = input.readInt();
    for (int i = 0; i < count; ++i)
    {
        juce::String name;
        if (! readNonEmptyStreamString (input, name, error, "Unexpected end of stream, expected variable name"))
            return false;
        std::shared_ptr<State> variable;
        if (! loadFromBinary (input, variable, error))
            return false;
        // Every variable of a tree has a node: a null one in the stream becomes void.
        addVariable (name, variable != nullptr ? variable : std::make_shared<State>());
    }
    return true;
}

} // namespace tov
