#include "BenchmarkDocument.h"
#include <Tov/Core/ClassExpression.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>
#include <map>
#include <mutex>

using tov::State;
using tov::StateType;

namespace
{

//==============================================================================
// The content. Reals are fractions with a denominator of a power of two or of
// ten, so that every contestant prints them in a few digits and reads back the
// same values.
class SessionGenerator
{
public:
    std::shared_ptr<State> makeSession (size_t targetTextBytes)
    {
        auto session = makeObject ("Session");
        addString (*session, "name", "Benchmark session");
        addInteger (*session, "sampleRate", 48000);
        addReal (*session, "tempo", 120.5);

        auto folders = std::make_shared<State>();
        for (size_t textBytes = 0; textBytes < targetTextBytes;)
        {
            auto folder = makeFolder ((int) folders->getNumVariables() + 1);
            textBytes += getTextBytesInSession (folder);
            folders->addVariable (folder);
        }
        session->addVariable ("folders", folders);
        return session;
    }

private:
    juce::Random random { 20240611 };

    // A folder's share of the text, printed at the depth it has in the session.
    static size_t getTextBytesInSession (const std::shared_ptr<State>& folder)
    {
        auto folders = std::make_shared<State>();
        folders->addVariable (folder);
        State session;
        session.addVariable ("folders", folders);
        return session.saveToString().getNumBytesAsUTF8();
    }

    static std::shared_ptr<State> makeObject (const char* className)
    {
        auto object = std::make_shared<State>();
        object->setClassExpression (tov::createAtomicClassExpression (className));
        return object;
    }

    static void addInteger (State& object, const char* name, int64_t value) { object.addVariable (name, std::make_shared<State> ((long long) value)); }
    static void addReal (State& object, const char* name, double value)     { object.addVariable (name, std::make_shared<State> (value)); }
    static void addString (State& object, const char* name, const juce::String& value) { object.addVariable (name, std::make_shared<State> (value)); }

    double nextReal (int range, double denominator) { return (random.nextInt (2 * range + 1) - range) / denominator; }

    std::shared_ptr<State> makeRealList (int count, double denominator)
    {
        auto list = std::make_shared<State>();
        for (int i = 0; i < count; ++i)
            list->addVariable (std::make_shared<State> (nextReal (1000, denominator)));
        return list;
    }

    std::shared_ptr<State> makeTags()
    {
        static const char* const words[] = { "drums", "bass", "live", "synth", "vocal", "room", "dry", "wide" };
        auto tags = std::make_shared<State>();
        for (int i = 1 + random.nextInt (3); --i >= 0;)
            tags->addVariable (std::make_shared<State> (words[random.nextInt (8)]));
        return tags;
    }

    std::shared_ptr<State> makeFolder (int number)
    {
        auto folder = makeObject ("Folder");
        addString (*folder, "name", "Folder " + juce::String (number));
        folder->addVariable ("colour", makeRealList (3, 256));
        auto tracks = std::make_shared<State>();
        for (int i = 0; i < 20; ++i)
            tracks->addVariable (makeTrack (i + 1));
        folder->addVariable ("tracks", tracks);
        return folder;
    }

    // One name in seven carries quotes, which every text form must escape.
    std::shared_ptr<State> makeTrack (int number)
    {
        auto track = makeObject ("Track");
        const auto name = "Track " + juce::String (number);
        addString (*track, "name", number % 7 == 0 ? name + " \"lead\"" : name);
        addInteger (*track, "index", number);
        addReal (*track, "gain", nextReal (96, 4));
        addReal (*track, "pan", nextReal (64, 64));
        track->addVariable ("tags", makeTags());

        auto output = makeObject ("Route");
        addInteger (*output, "bus", random.nextInt (64));
        addString (*output, "name", "Bus " + juce::String (random.nextInt (64)));
        addReal (*output, "level", nextReal (100, 100));
        track->addVariable ("output", output);

        auto clips = std::make_shared<State>();
        for (int i = 1 + random.nextInt (4); --i >= 0;)
            clips->addVariable (makeClip());
        track->addVariable ("clips", clips);
        return track;
    }

    std::shared_ptr<State> makeClip()
    {
        auto clip = makeObject ("Clip");
        addString (*clip, "name", "Take " + juce::String (1 + random.nextInt (9)));
        addInteger (*clip, "start", (int64_t) random.nextInt (1 << 30) * 16);
        addInteger (*clip, "length", 1 + random.nextInt (1 << 22));
        addReal (*clip, "offset", nextReal (10000, 1000));
        clip->addVariable ("fades", makeRealList (2, 1024));
        return clip;
    }
};

//==============================================================================
// The other forms, from the tree. A list whose variables all have names is an
// object; any other list is an array.
bool isObject (const State& node)
{
    if (node.getType() != StateType::variablesType)
        return false;
    for (const auto& variable : node.getVariables())
        if (variable.first.isEmpty())
            return false;
    return true;
}

juce::String getClassName (const State& node)
{
    auto* expression = node.getClassExpression();
    return expression != nullptr ? expression->toString() : juce::String();
}

rapidjson::Value toRapidJson (const State& node, rapidjson::Document::AllocatorType& allocator)
{
    const auto makeString = [&] (const juce::String& text)
    {
        return rapidjson::Value (text.toRawUTF8(), (rapidjson::SizeType) text.getNumBytesAsUTF8(), allocator);
    };

    switch (node.getType())
    {
        case StateType::integerType: return rapidjson::Value ((int64_t) node.getInteger());
        case StateType::realType:    return rapidjson::Value (node.getReal());
        case StateType::stringType:  return makeString (node.getString());
        case StateType::booleanType: return rapidjson::Value (node.getBoolean());
        case StateType::variablesType: break;
        default:                     return rapidjson::Value();
    }

    if (! isObject (node))
    {
        rapidjson::Value array (rapidjson::kArrayType);
        for (const auto& variable : node.getVariables())
            array.PushBack (toRapidJson (*variable.second, allocator), allocator);
        return array;
    }

    rapidjson::Value object (rapidjson::kObjectType);
    if (node.getClassExpression() != nullptr)
        object.AddMember ("class", makeString (getClassName (node)), allocator);
    for (const auto& variable : node.getVariables())
        object.AddMember (makeString (variable.first), toRapidJson (*variable.second, allocator), allocator);
    return object;
}

juce::var toVar (const State& node)
{
    switch (node.getType())
    {
        case StateType::integerType: return (juce::int64) node.getInteger();
        case StateType::realType:    return node.getReal();
        case StateType::stringType:  return node.getString();
        case StateType::booleanType: return node.getBoolean();
        case StateType::variablesType:
        {
            juce::Array<juce::var> array;
            for (const auto& variable : node.getVariables())
                array.add (toVar (*variable.second));
            return array;
        }
        default: return {};
    }
}

juce::ValueTree toValueTree (const State& node, const juce::Identifier& type)
{
    juce::ValueTree tree (type);
    if (node.getClassExpression() != nullptr)
        tree.setProperty ("class", getClassName (node), nullptr);

    for (const auto& variable : node.getVariables())
    {
        const auto& value = *variable.second;
        const juce::Identifier name (variable.first.isEmpty() ? juce::String ("item") : variable.first);
        const bool holdsLists = value.getNumVariables() > 0 && value.getVariableStateRef (0).getType() == StateType::variablesType;
        if (isObject (value) || holdsLists)
            tree.appendChild (toValueTree (value, name), nullptr);
        else
            tree.setProperty (name, toVar (value), nullptr);
    }
    return tree;
}

std::string writeRapidJson (const rapidjson::Document& document)
{
    rapidjson::StringBuffer buffer;
    rapidjson::Writer<rapidjson::StringBuffer> writer (buffer);
    document.Accept (writer);
    return { buffer.GetString(), buffer.GetSize() };
}

} // namespace

//==============================================================================
BenchmarkDocument::BenchmarkDocument (size_t stateTextBytes)
{
    state = SessionGenerator().makeSession (stateTextBytes);
    stateText = state->saveToString();
    {
        juce::MemoryOutputStream binary (stateBinary, false);
        state->toBinary (binary);
    }

    rapidJson.SetObject();
    static_cast<rapidjson::Value&> (rapidJson) = toRapidJson (*state, rapidJson.GetAllocator());
    jsonText = writeRapidJson (rapidJson);
    jsonTextForJuce = juce::String::fromUTF8 (jsonText.data(), (int) jsonText.size());
    nlohmannJson = nlohmann::json::parse (jsonText);
    juceJson = juce::JSON::parse (jsonTextForJuce);
    juceJsonTextBytes = juce::JSON::toString (juceJson, true).getNumBytesAsUTF8();
    nlohmannTextBytes = nlohmannJson.dump().size();

    valueTree = toValueTree (*state, "document");
    juce::MemoryOutputStream binary (valueTreeBinary, false);
    valueTree.writeToStream (binary);
}

const BenchmarkDocument& BenchmarkDocument::get (size_t stateTextBytes)
{
    static std::mutex lock;
    static std::map<size_t, std::unique_ptr<BenchmarkDocument>> documents;
    std::lock_guard<std::mutex> guard (lock);
    auto& document = documents[stateTextBytes];
    if (document == nullptr)
        document.reset (new BenchmarkDocument (stateTextBytes));
    return *document;
}
