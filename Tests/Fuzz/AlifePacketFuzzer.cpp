// libFuzzer target for the reader of "Alife" packets, which any machine of the network may send.
//
// Each input is handed to a discoverer's packet reader as though its socket had read it. A
// hostile packet must be refused with a warning, or rebuilt into an object, never crash. Between
// inputs, a poll of the idle socket must answer false and allocate nothing. A failed property
// traps, so the fuzzer reports it. Run it with -malloc_limit_mb to bound what one packet may
// make the reader allocate.
#include <Tov/Core/Library.h>
#include <Tov/Network/LastNetworkServerFootprint.h>
#include <Tov/Network/NetworkDiscoverer.h>
#include <Tov/Standard/ExecutionContext.h>
#include <sanitizer/allocator_interface.h>
#include <cstddef>
#include <cstdint>

using namespace tov;

namespace
{
    void check (bool condition)
    {
        if (! condition)
            __builtin_trap();
    }

    // Counted only around the idle poll; the fuzzer runs its inputs on one thread.
    bool countingAllocations = false;
    size_t numAllocations = 0;

    void countAllocation (const volatile void*, size_t)
    {
        if (countingAllocations)
            ++numAllocations;
    }

    void ignoreFree (const volatile void*) {}

    struct Reader
    {
        NetworkDiscoverer discoverer;
        ExecutionContext context;
        LastNetworkServerFootprint footprint;
        // The reader parses its whole buffer: zeros before each input make a run independent
        // of the inputs before it.
        juce::MemoryBlock zeros { (size_t) NetworkDiscoverer::bufferSize, true };
    };

    Reader* reader = nullptr;
}

// Packets name their classes: the library tree must exist. The socket listens on a port of
// its own, at which nothing arrives.
extern "C" int LLVMFuzzerInitialize (int*, char***)
{
    initializeTov();
    reader = new Reader();
    check (reader->discoverer.startDiscovering (reader->context, LocalNetworkAddress ("127.0.0.1", 0), false));
    __sanitizer_install_malloc_and_free_hooks (countAllocation, ignoreFree);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput (const uint8_t* data, size_t size)
{
    auto& discoverer = reader->discoverer;
    discoverer.readPacket (reader->context, reader->footprint, reader->zeros.getData(), (int) reader->zeros.getSize(), "10.0.0.1", 1);

    const int packetSize = (int) std::min<size_t> (size, NetworkDiscoverer::bufferSize);
    if (discoverer.readPacket (reader->context, reader->footprint, data, packetSize, "10.0.0.7", 9000))
    {
        check (reader->footprint.getInformation() != nullptr);
        check (reader->footprint.getAddress().toString() == "10.0.0.7:9000");
    }

    numAllocations = 0;
    countingAllocations = true;
    const bool heard = discoverer.getNetworkServerFootPrint (reader->context, reader->footprint);
    countingAllocations = false;
    check (! heard);
    check (numAllocations == 0);
    return 0;
}
