#include "BenchmarkDocument.h"
#include "BenchmarkLibrary.h"
#include "MedianReporter.h"
#include "RandomInterleaving.h"
#include "RepeatedBenchmarks.h"
#include <Tov/Atomic/Atomic.h>
#include <Tov/Container/OwnedVector.h>
#include <Tov/Container/StringVector.h>
#include <Tov/Core/Json.h>
#include <Tov/Core/Library.h>
#include <Tov/Standard/ExecutionContext.h>
#include <benchmark/benchmark.h>
#include <cstdio>

// The JSON bridge against nlohmann::json on the State benchmark's document. The document's
// State tree is made into objects of the classes below; the bridge saves them to JSON text
// (saveObjectToJson, then juce::JSON's one-line text) and loads that text into fresh objects
// (juce::JSON::parse, then loadObjectFromJson). nlohmann::json dumps and parses the same text.
// The bridge does more than its peer, which builds no objects: the ratio says what objects
// with reflected variables cost over a plain JSON tree. Times are CPU times of the benchmark
// thread; each case runs five times, interleaved at random, and the table takes the median.

namespace
{
using namespace tov;

class Route : public Object
{
public:
    TOV_DECLARE_CLASS (Route, Object)
    Integer bus;
    String name;
    Real level;
};

class Clip : public Object
{
public:
    TOV_DECLARE_CLASS (Clip, Object)
    String name;
    Integer start, length;
    Real offset;
    OwnedVector<Real> fades;
};

class Track : public Object
{
public:
    TOV_DECLARE_CLASS (Track, Object)
    String name;
    Integer index;
    Real gain, pan;
    StringVector tags;
    Route output;
    OwnedVector<Clip> clips;
};

class Folder : public Object
{
public:
    TOV_DECLARE_CLASS (Folder, Object)
    String name;
    OwnedVector<Real> colour;
    OwnedVector<Track> tracks;
};

class Session : public Object
{
public:
    TOV_DECLARE_CLASS (Session, Object)
    String name;
    Integer sampleRate;
    Real tempo;
    OwnedVector<Folder> folders;
};

TOV_BEGIN_CLASS (Route)
    TOV_VARIABLE (bus)
    TOV_VARIABLE (name)
    TOV_VARIABLE (level)
TOV_END_CLASS()

TOV_BEGIN_CLASS (Clip)
    TOV_VARIABLE (name)
    TOV_VARIABLE (start)
    TOV_VARIABLE (length)
    TOV_VARIABLE (offset)
    TOV_VARIABLE (fades)
TOV_END_CLASS()

TOV_BEGIN_CLASS (Track)
    TOV_VARIABLE (name)
    TOV_VARIABLE (index)
    TOV_VARIABLE (gain)
    TOV_VARIABLE (pan)
    TOV_VARIABLE (tags)
    TOV_VARIABLE (output)
    TOV_VARIABLE (clips)
TOV_END_CLASS()

TOV_BEGIN_CLASS (Folder)
    TOV_VARIABLE (name)
    TOV_VARIABLE (colour)
    TOV_VARIABLE (tracks)
TOV_END_CLASS()

TOV_BEGIN_CLASS (Session)
    TOV_VARIABLE (name)
    TOV_VARIABLE (sampleRate)
    TOV_VARIABLE (tempo)
    TOV_VARIABLE (folders)
TOV_END_CLASS()

using Owned = std::unique_ptr<Object, ObjectDeleter>;

//==============================================================================
// The benchmark's tree holds its lists as plain lists of objects, which State loading takes
// only as owned pointers: the objects are filled from the tree here, variable by variable.
void fill (Object& object, const State& node);

void fillList (ObjectOwnedVector& list, const State& node)
{
    for (size_t i = 0; i < node.getNumVariables(); ++i)
    {
        Object* element = list.getTargetClass()->createObject();
        fill (*element, node.getVariableStateRef (i));
        list.append (element, false);
    }
}

void fill (Object& object, const State& node)
{
    if (auto* list = dynamic_cast<ObjectOwnedVector*> (&object))
        return fillList (*list, node);
    if (node.getType() != StateType::variablesType)
    {
        object.loadFromState (ExecutionContext::get(), std::make_shared<State> (node));
        return;
    }
    for (size_t i = 0; i < node.getNumVariables(); ++i)
        if (Object* variable = object.getVariableByName (node.getVariableName (i)))
            fill (*variable, node.getVariableStateRef (i));
}

struct JsonDocument
{
    Owned session;
    std::string text;
    juce::String textForJuce;
    nlohmann::json nlohmannJson;

    static const JsonDocument& get()
    {
        static const JsonDocument document;
        return document;
    }

private:
    JsonDocument()
    {
        const auto& source = BenchmarkDocument::get (1000000);
        session.reset (Session::staticClass.createObject());
        fill (*session, *source.state);
        textForJuce = juce::JSON::toString (saveObjectToJson (*session), true);
        text = textForJuce.toStdString();
        nlohmannJson = nlohmann::json::parse (text);
    }
};

//==============================================================================
void saveBridge (benchmark::State& state)
{
    const auto& document = JsonDocument::get();
    for (auto _ : state)
        benchmark::DoNotOptimize (juce::JSON::toString (saveObjectToJson (*document.session), true));
}

void saveNlohmann (benchmark::State& state)
{
    const auto& document = JsonDocument::get();
    for (auto _ : state)
        benchmark::DoNotOptimize (document.nlohmannJson.dump());
}

void loadBridge (benchmark::State& state)
{
    const auto& document = JsonDocument::get();
    for (auto _ : state)
    {
        Owned session (Session::staticClass.createObject());
        const bool loaded = loadObjectFromJson (juce::JSON::parse (document.textForJuce), *session);
        benchmark::DoNotOptimize (loaded);
        state.PauseTiming();
        session.reset();
        state.ResumeTiming();
    }
}

void loadNlohmann (benchmark::State& state)
{
    const auto& document = JsonDocument::get();
    for (auto _ : state)
    {
        auto json = std::make_unique<nlohmann::json> (nlohmann::json::parse (document.text));
        benchmark::DoNotOptimize (json.get());
        state.PauseTiming();
        json.reset();
        state.ResumeTiming();
    }
}

void registerBenchmarks()
{
    tov::benchmarks::registerEachRepeated ({ { "JsonSave/Bridge", saveBridge }, { "JsonSave/nlohmann", saveNlohmann },
                                             { "JsonLoad/Bridge", loadBridge }, { "JsonLoad/nlohmann", loadNlohmann } },
                                           5, benchmark::kMillisecond, 0.5);
}

void printRatioTable (const tov::benchmarks::MedianReporter& reporter)
{
    const auto bytes = (double) JsonDocument::get().text.size();
    std::printf ("\nJSON text of %.0f bytes. The bridge's CPU time divided by nlohmann::json's (below 1: the bridge is faster)\n", bytes);
    std::printf ("%-10s %12s %12s %10s\n", "Operation", "Bridge ms", "nlohmann ms", "Ratio");
    for (const char* operation : { "JsonSave", "JsonLoad" })
    {
        const double bridge = reporter.getMedianSeconds (std::string (operation) + "/Bridge");
        const double peer = reporter.getMedianSeconds (std::string (operation) + "/nlohmann");
        std::printf ("%-10s %12.2f %12.2f %10.2f\n", operation, bridge * 1000, peer * 1000, peer > 0 ? bridge / peer : 0.0);
    }
    std::fflush (stdout);
}
} // namespace

int main (int argc, char** argv)
{
    if (! tov::benchmarks::initializeWithRandomInterleaving (argc, argv))
        return 1;
    initializeTov()->addLibrary (tov::benchmarks::createLibrary<Route, Clip, Track, Folder, Session> ("JsonBenchmark"));

    JsonDocument::get();
    registerBenchmarks();
    tov::benchmarks::runWithMedianReporter (printRatioTable);
    return 0;
}
