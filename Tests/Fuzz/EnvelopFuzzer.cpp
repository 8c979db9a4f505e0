// libFuzzer target for the wire form of envelops, which arrives from the network.
//
// Each input is read as an envelop with its receiver. A damaged block must be refused, never
// crash; an envelop that reads has a sender, and writes a block that reads again.
// A failed property traps, so the fuzzer reports it.
#include <Tov/Core/Library.h>
#include <Tov/Message/Envelop.h>
#include <Tov/Standard/ExecutionContext.h>
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
}

// Messages and identifiers are made by their class names: the library tree must exist.
extern "C" int LLVMFuzzerInitialize (int*, char***)
{
    initializeTov();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput (const uint8_t* data, size_t size)
{
    const juce::MemoryBlock block (data, size);
    ExecutionContext context;
    ObjectOwnedPointer receiver;
    auto* envelop = Envelop::createFromMemoryBlock (context, block, receiver);
    if (envelop == nullptr)
        return 0;
    check (envelop->hasSenderIdentifier());

    juce::MemoryBlock written;
    check (envelop->saveToMemoryBlock (receiver, written));
    ObjectOwnedPointer rereadReceiver;
    auto* reread = Envelop::createFromMemoryBlock (context, written, rereadReceiver);
    check (reread != nullptr);
    check (reread->getNumMessages() == envelop->getNumMessages());
    reread->deleteThis();
    envelop->deleteThis();
    return 0;
}
