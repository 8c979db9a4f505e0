#include "BenchmarkDocument.h"
#include <Tov/Standard/ExecutionContext.h>
#include "MedianReporter.h"
#include "RandomInterleaving.h"
#include "RepeatedBenchmarks.h"
#include <benchmark/benchmark.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>
#include <cstdio>
#include <functional>
#include <limits>
#include <malloc.h>
#include <map>
#include <unistd.h>
#include <vector>

// State's text and binary forms against JSON libraries and juce::ValueTree, on
// the same content. Every contestant works in memory: parsers read a text
// already in memory, printers and writers fill a block allocated beforehand
// (except nlohmann::json, whose dump makes its own string). What a parse or
// read builds is freed outside the measure, as the time to free a tree is not
// the time to read it. Times are CPU times of the benchmark thread, which a
// shared machine disturbs less than wall-clock times; each case runs five
// times, interleaved at random with the others, and the table takes the
// median.

namespace
{

enum class Operation { textParse, textPrint, binaryWrite, binaryRead };
enum class Contestant { state, rapidJson, nlohmann, juceJson, valueTree };

const char* getName (Operation operation)
{
    static const char* const names[] = { "TextParse", "TextPrint", "BinaryWrite", "BinaryRead" };
    return names[(int) operation];
}

const char* getName (Contestant contestant)
{
    static const char* const names[] = { "State", "RapidJSON", "nlohmann", "juceJSON", "ValueTree" };
    return names[(int) contestant];
}

struct DocumentSize
{
    const char* name;
    size_t targetTextBytes;
    double minimumSeconds;
};

// The 20 MB runs dominate the whole run, which must stay well under five minutes.
const DocumentSize documentSizes[] = { { "1MB", 1000000, 0.5 }, { "20MB", 20000000, 1.0 } };
constexpr int numRepetitions = 5;

//==============================================================================
/** One measured operation: the work, and the size of the form it reads or writes. */
struct Case
{
    Operation operation;
    Contestant contestant;
    std::function<size_t (const BenchmarkDocument&)> getFormBytes;
    // Does the work once; what it returns is destroyed outside the measure.
    std::function<std::shared_ptr<void> (const BenchmarkDocument&)> run;
};

template <class Object>
std::shared_ptr<void> keep (Object&& object)
{
    return std::make_shared<std::decay_t<Object>> (std::forward<Object> (object));
}

std::shared_ptr<void> writeState (const BenchmarkDocument& document, bool binaryForm)
{
    auto output = std::make_shared<juce::MemoryOutputStream> (binaryForm ? document.stateBinary.getSize() : document.stateTextBytes + 1);
    if (binaryForm)
    {
        document.state->toBinary (*output);
    }
    else
    {
        juce::MemoryOutputStream buffers;
        document.state->print (*output, buffers);
    }
    return output;
}

std::vector<Case> makeCases()
{
    using Document = const BenchmarkDocument&;
    const auto stateTextBytes = [] (Document d) { return d.stateTextBytes; };
    const auto jsonTextBytes = [] (Document d) { return d.jsonText.size(); };
    const auto stateBinaryBytes = [] (Document d) { return d.stateBinary.getSize(); };
    const auto valueTreeBytes = [] (Document d) { return d.valueTreeBinary.getSize(); };

    return {
        { Operation::textParse, Contestant::state, stateTextBytes, [] (Document d)
          {
              tov::ExecutionContext context;
              auto state = tov::State::createFromStateString (context, d.stateText, "benchmark");
              jassert (state != nullptr);
              return std::shared_ptr<void> (state);
          } },
        { Operation::textParse, Contestant::rapidJson, jsonTextBytes, [] (Document d)
          {
              auto document = std::make_shared<rapidjson::Document>();
              document->Parse (d.jsonText.data(), d.jsonText.size());
              jassert (! document->HasParseError());
              return std::shared_ptr<void> (document);
          } },
        { Operation::textParse, Contestant::nlohmann, jsonTextBytes, [] (Document d) { return keep (nlohmann::json::parse (d.jsonText)); } },
        { Operation::textParse, Contestant::juceJson, jsonTextBytes, [] (Document d) { return keep (juce::JSON::parse (d.jsonTextForJuce)); } },

        { Operation::textPrint, Contestant::state, stateTextBytes, [] (Document d) { return writeState (d, false); } },
        { Operation::textPrint, Contestant::rapidJson, jsonTextBytes, [] (Document d)
          {
              auto buffer = std::make_shared<rapidjson::StringBuffer> (nullptr, d.jsonText.size() + 1);
              rapidjson::Writer<rapidjson::StringBuffer> writer (*buffer);
              d.rapidJson.Accept (writer);
              return std::shared_ptr<void> (buffer);
          } },
        { Operation::textPrint, Contestant::nlohmann, [] (Document d) { return d.nlohmannTextBytes; },
          [] (Document d) { return keep (d.nlohmannJson.dump()); } },
        { Operation::textPrint, Contestant::juceJson, [] (Document d) { return d.juceJsonTextBytes; }, [] (Document d)
          {
              auto output = std::make_shared<juce::MemoryOutputStream> (d.juceJsonTextBytes + 1);
              juce::JSON::writeToStream (*output, d.juceJson, true);
              return std::shared_ptr<void> (output);
          } },

        { Operation::binaryWrite, Contestant::state, stateBinaryBytes, [] (Document d) { return writeState (d, true); } },
        { Operation::binaryWrite, Contestant::valueTree, valueTreeBytes, [] (Document d)
          {
              auto output = std::make_shared<juce::MemoryOutputStream> (d.valueTreeBinary.getSize());
              d.valueTree.writeToStream (*output);
              return std::shared_ptr<void> (output);
          } },

        { Operation::binaryRead, Contestant::state, stateBinaryBytes, [] (Document d)
          {
              juce::MemoryInputStream input (d.stateBinary, false);
              auto state = std::make_shared<tov::State>();
              juce::String error;
              const bool read = state->loadFromBinary (input, error);
              jassert (read);
              juce::ignoreUnused (read);
              return std::shared_ptr<void> (state);
          } },
        { Operation::binaryRead, Contestant::valueTree, valueTreeBytes, [] (Document d)
          {
              juce::MemoryInputStream input (d.valueTreeBinary, false);
              return keep (juce::ValueTree::readFromStream (input));
          } },
    };
}

juce::String getBenchmarkName (Operation operation, Contestant contestant, const DocumentSize& size)
{
    return juce::String (getName (operation)) + "/" + getName (contestant) + "/" + size.name;
}

void registerBenchmarks()
{
    for (const auto& size : documentSizes)
    {
        for (const auto& testCase : makeCases())
        {
            const auto name = getBenchmarkName (testCase.operation, testCase.contestant, size);
            tov::benchmarks::registerRepeated (name.toStdString(), [testCase, size] (benchmark::State& state)
            {
                const auto& document = BenchmarkDocument::get (size.targetTextBytes);
                for (auto _ : state)
                {
                    auto result = testCase.run (document);
                    state.PauseTiming();
                    result.reset();
                    state.ResumeTiming();
                }
                const auto bytes = (double) testCase.getFormBytes (document);
                state.counters["bytes"] = bytes;
                state.counters["MB/s"] = benchmark::Counter ((double) state.iterations() * bytes / 1e6, benchmark::Counter::kIsRate);
                state.counters["docs/s"] = benchmark::Counter ((double) state.iterations(), benchmark::Counter::kIsRate);
            }, numRepetitions, benchmark::kMillisecond, size.minimumSeconds);
        }
    }
}

//==============================================================================
/** For each size and operation, State's time divided by each peer's, from the medians of the run:
    below 1 State is faster. */
void printRatioTable (const tov::benchmarks::MedianReporter& reporter)
{
    auto find = [&reporter] (Operation operation, Contestant contestant, const DocumentSize& size)
    {
        return reporter.getMedianSeconds (getBenchmarkName (operation, contestant, size).toStdString());
    };
    const Contestant peers[] = { Contestant::rapidJson, Contestant::nlohmann, Contestant::juceJson, Contestant::valueTree };
    std::printf ("\nState's CPU time per document divided by each peer's (below 1: State is faster)\n");
    std::printf ("%-5s %-12s %10s %10s %10s %10s %10s %10s\n", "Size", "Operation", "State ms", "State MB/s",
                 "RapidJSON", "nlohmann", "juceJSON", "ValueTree");
    for (const auto& size : documentSizes)
    {
        for (const auto operation : { Operation::textParse, Operation::textPrint, Operation::binaryWrite, Operation::binaryRead })
        {
            const double stateSeconds = find (operation, Contestant::state, size);
            if (stateSeconds <= 0)
                continue;
            const double stateBytes = reporter.getMedianCounter (getBenchmarkName (operation, Contestant::state, size).toStdString(), "bytes", 0.0);
            std::printf ("%-5s %-12s %10.2f %10.0f", size.name, getName (operation), stateSeconds * 1000, stateBytes / stateSeconds / 1e6);
            for (const auto peer : peers)
            {
                const double peerSeconds = find (operation, peer, size);
                if (peerSeconds > 0)
                    std::printf (" %10.2f", stateSeconds / peerSeconds);
                else
                    std::printf (" %10s", "-");
            }
            std::printf ("\n");
        }
    }
    std::fflush (stdout);
}

/** Settles glibc's allocator, so that each run measures its own work.

    By default glibc keeps small freed blocks apart and merges them all at the
    next large allocation: the tree that one run frees, millions of blocks for
    a 20 MB document, is then merged inside the next run, whichever it is, at a
    cost above that of the parse. Without fast bins, blocks merge when they are
    freed, outside the measure. Memory also stays with the process, so that
    runs after the first do not fault its pages in again.
*/
void settleAllocator()
{
   #if defined (__GLIBC__)
    mallopt (M_MXFAST, 0);
    mallopt (M_TRIM_THRESHOLD, std::numeric_limits<int>::max());
    mallopt (M_MMAP_THRESHOLD, 32 << 20);
   #endif
}

} // namespace

// The documents are made before the runs, which then interleave at random.
int main (int argc, char** argv)
{
    settleAllocator();
    if (! tov::benchmarks::initializeWithRandomInterleaving (argc, argv))
        return 1;

    for (const auto& size : documentSizes)
        BenchmarkDocument::get (size.targetTextBytes);
    registerBenchmarks();
    tov::benchmarks::runWithMedianReporter (printRatioTable);
    return 0;
}
