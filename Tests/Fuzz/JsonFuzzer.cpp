// libFuzzer target for JSON loading, which takes text from outside the program.
//
// Each input is JSON text (well-formed UTF-8), parsed by juce::JSON and loaded through loadObjectFromJson into a
// document that holds one variable of every value class, a pointer, a list and a map of
// objects of any class. Whatever loads is saved to JSON again and loaded into a fresh
// document: that must succeed. Nothing may crash or leak.
#include <Tov/Atomic/Atomic.h>
#include <Tov/Container/NamedObjectMap.h>
#include <Tov/Container/OwnedVector.h>
#include <Tov/Container/StringVector.h>
#include <Tov/Core/Json.h>
#include <Tov/Core/Library.h>
#include <Tov/Core/WellFormedUtf8.h>
#include <Tov/Network/NetworkAddress.h>
#include <Tov/Pointer/NativeHandle.h>
#include <Tov/Pointer/OwnedPointer.h>
#include <Tov/Standard/Color.h>
#include <Tov/Standard/ColorShift.h>
#include <Tov/Standard/ExecutionContext.h>
#include <Tov/Standard/SoftwareVersion.h>
#include <Tov/Standard/TaskState.h>
#include <Tov/Standard/Time.h>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

using namespace tov;

namespace
{
void check (bool condition)
{
    if (! condition)
        __builtin_trap();
}

class JsonFuzzDocument : public Object
{
public:
    TOV_DECLARE_CLASS (JsonFuzzDocument, Object)
    Boolean boolean;
    Integer integer;
    Real real;
    String string;
    Trigger trigger;
    tov::Uuid uuid;
    ClassObject classObject;
    TaskState enumeration;
    Time time;
    NativeHandle handle;
    Percentage percentage;
    PositiveInteger positiveInteger;
    MemorySize memorySize;
    Seconds seconds;
    Void nothing;
    Color color;
    ColorShift shift;
    SoftwareVersion version;
    NetworkAddress address;
    StringVector strings;
    OwnedPointer<Object> pointer;
    OwnedVector<Object> list;
    OwnedVector<JsonFuzzDocument> documents;
    NamedObjectMap map;
};

TOV_BEGIN_CLASS (JsonFuzzDocument)
    TOV_VARIABLE (boolean)
    TOV_VARIABLE (integer)
    TOV_VARIABLE (real)
    TOV_VARIABLE (string, { "jsonIdentifier", "\"text\"" })
    TOV_VARIABLE (trigger)
    TOV_VARIABLE (uuid)
    TOV_VARIABLE (classObject)
    TOV_VARIABLE (enumeration)
    TOV_VARIABLE (time)
    TOV_VARIABLE (handle)
    TOV_VARIABLE (percentage)
    TOV_VARIABLE (positiveInteger)
    TOV_VARIABLE (memorySize)
    TOV_VARIABLE (seconds)
    TOV_VARIABLE (nothing)
    TOV_VARIABLE (color)
    TOV_VARIABLE (shift)
    TOV_VARIABLE (version)
    TOV_VARIABLE (address)
    TOV_VARIABLE (strings)
    TOV_VARIABLE (pointer)
    TOV_VARIABLE (list)
    TOV_VARIABLE (documents)
    TOV_VARIABLE (map)
TOV_END_CLASS()

/** juce::JSON of JUCE 7.0.5 reads whole numbers into a 64-bit integer and exponents into a
    32-bit one without checking for overflow, which the sanitizer reports: texts with 19 digits
    in a row, or 9 behind an "e", are left to it (digits as JUCE tells them, "²" among them). */
bool overflowsJuceParser (const juce::String& text)
{
    int digits = 0;
    bool exponent = false;
    for (auto c = text.getCharPointer(); ! c.isEmpty(); ++c)
    {
        if (juce::CharacterFunctions::isDigit (*c))
        {
            if (++digits >= (exponent ? 9 : 19))
                return true;
            continue;
        }
        if (digits == 0 && exponent && (*c == '+' || *c == '-'))
            continue;
        exponent = (*c == 'e' || *c == 'E');
        digits = 0;
    }
    return false;
}

std::unique_ptr<Object, ObjectDeleter> makeDocument()
{
    return std::unique_ptr<Object, ObjectDeleter> (JsonFuzzDocument::staticClass.createObject());
}
} // namespace

extern "C" int LLVMFuzzerInitialize (int*, char***)
{
    auto* root = initializeTov();
    auto* library = new NamedLibrary ("JsonFuzzer", {});
    library->addClass<JsonFuzzDocument>();
    root->addLibrary (library);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput (const uint8_t* data, size_t size)
{
    // JSON text is UTF-8; juce::String takes only well-formed sequences.
    if (! isWellFormedUtf8 (data, size))
        return 0;
    const auto text = juce::String::fromUTF8 (reinterpret_cast<const char*> (data), (int) size);
    juce::var value;
    if (overflowsJuceParser (text) || juce::JSON::parse (text, value).failed())
        return 0;

    ExecutionContext context;
    auto document = makeDocument();
    juce::String error;
    loadObjectFromJson (value, *document, false, &error);

    // What a document saves, a fresh one loads.
    const auto saved = juce::JSON::toString (saveObjectToJson (*document, false, true), true);
    auto copy = makeDocument();
    check (loadObjectFromJson (juce::JSON::fromString (saved), *copy, false, &error));
    return 0;
}
