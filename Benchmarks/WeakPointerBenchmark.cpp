#include <Tov/Core/Library.h>
#include <Tov/Core/ObjectSpace.h>
#include <Tov/Core/ObjectSpaceProvider.h>
#include <Tov/Pointer/ObjectWeakPointer.h>
#include "BenchmarkLibrary.h"
#include "BenchmarkProgram.h"
#include "BenchmarkService.h"
#include "Item.h"
#include "MedianReporter.h"
#include "RandomInterleaving.h"
#include "RepeatedBenchmarks.h"
#include <benchmark/benchmark.h>
#include <cstdio>
#include <random>
#include <unordered_map>
#include <vector>

// Resolving 100,000 weak pointers after a load, against a plain hash lookup of the same
// identifiers in the same run. The pointers hold addresses, as loading leaves them; each
// get() finds the space through its provider, the object in the space's table, and attaches
// the pointer to it as a view. The peer looks each identifier up in a
// std::unordered_map<uint64_t, Object*>. Times are CPU times per pointer, medians of five
// repetitions interleaved at random.

namespace
{

constexpr size_t numPointers = 100000;
constexpr int numRepetitions = 5;

using tov::benchmarks::Item;

/** A space that answers for itself by name, as a service does for its spaces. */
class ProvidingSpace : public tov::ObjectSpace, public tov::ObjectSpaceProvider
{
public:
    using ObjectSpace::ObjectSpace;
    tov::ObjectSpace* getSpaceByName (const juce::String& spaceName) const override
    {
        return spaceName == getName() ? const_cast<ProvidingSpace*> (this) : nullptr;
    }
};

/** Targets in a space, and unresolved weak pointers to them in random order. */
struct Document
{
    ProvidingSpace space { "Document" };
    std::vector<Item*> items;
    std::vector<std::unique_ptr<tov::ObjectWeakPointer>> pointers;
    std::vector<tov::VariableAddress> addresses;
    std::unordered_map<uint64_t, tov::Object*> map;

    Document()
    {
        std::mt19937_64 random (1981);
        for (size_t i = 0; i < numPointers; ++i)
        {
            auto* item = static_cast<Item*> (Item::staticClass.createObject());
            item->setUniqueIdentifier (tov::UniqueIdentifier (random() | 2));
            item->incrementReferenceCounter();
            item->callInitializeObject (&space, nullptr, nullptr);
            items.push_back (item);
            map.emplace (item->getUniqueIdentifier().getInt64(), item);
        }
        std::vector<size_t> order (numPointers);
        for (size_t i = 0; i < numPointers; ++i)
            order[i] = i;
        std::shuffle (order.begin(), order.end(), random);
        for (auto index : order)
        {
            addresses.emplace_back (items[index]);
            auto pointer = std::make_unique<tov::ObjectWeakPointer>();
            pointer->setParent (&space);
            pointers.push_back (std::move (pointer));
        }
        unresolve();
    }

    ~Document()
    {
        pointers.clear();
        for (auto* item : items)
            item->decrementReferenceCounter (true);
    }

    /** Every pointer back to its address alone, as loading leaves it. */
    void unresolve()
    {
        for (size_t i = 0; i < numPointers; ++i)
        {
            pointers[i]->reset (false);
            pointers[i]->set (addresses[i], false);
        }
    }

    size_t resolve()
    {
        size_t found = 0;
        for (auto& pointer : pointers)
            found += pointer->get() != nullptr;
        return found;
    }

    size_t lookUp() const
    {
        size_t found = 0;
        for (auto& address : addresses)
            found += map.find (address.getRootUniqueIdentifier().getInt64()) != map.end();
        return found;
    }

    static Document& get()
    {
        static Document document;
        return document;
    }
};

void resolveWeakPointers (benchmark::State& state)
{
    auto& document = Document::get();
    for (auto _ : state)
    {
        state.PauseTiming();
        document.unresolve();
        state.ResumeTiming();
        if (document.resolve() != numPointers)
            state.SkipWithError ("a pointer did not resolve");
    }
}

void lookUpInUnorderedMap (benchmark::State& state)
{
    auto& document = Document::get();
    for (auto _ : state)
        if (document.lookUp() != numPointers)
            state.SkipWithError ("an identifier was not found");
}

/** The ratio of the medians. */
void printRatio (const tov::benchmarks::MedianReporter& reporter)
{
    const double resolve = reporter.getMedianSeconds ("ResolveWeakPointers") / numPointers * 1e9;
    const double lookUp = reporter.getMedianSeconds ("LookUpInUnorderedMap") / numPointers * 1e9;
    if (resolve > 0 && lookUp > 0)
        std::printf ("\nWeakPointer::get after a load: %.1f ns per pointer; unordered_map lookup: %.1f ns; ratio %.2f\n",
                     resolve, lookUp, resolve / lookUp);
    std::fflush (stdout);
}

} // namespace

int main (int argc, char** argv)
{
    if (! tov::benchmarks::initializeWithRandomInterleaving (argc, argv))
        return 1;

    tov::initializeTov()->addLibrary (tov::benchmarks::createLibrary<Item> ("Benchmark"));
    {
        // A running program and a current service: what resolving addresses needs.
        tov::benchmarks::BenchmarkProgram program ("WeakPointerBenchmark");
        tov::benchmarks::BenchmarkService service;
        Document::get();

        tov::benchmarks::registerEachRepeated ({ { "ResolveWeakPointers", resolveWeakPointers }, { "LookUpInUnorderedMap", lookUpInUnorderedMap } },
                                               numRepetitions, benchmark::kMillisecond, 0.5);
        tov::benchmarks::runWithMedianReporter (printRatio);
    }
    tov::deinitializeTov();
    return 0;
}
