#include "TraceBuffer.h"
#include <cstdlib>
#include <new>

namespace tov
{

TraceBufferPool::~TraceBufferPool()
{
    for (void* block = blocks.load(); block != nullptr;)
    {
        void* before = *static_cast<void**> (block);
        std::free (block);
        block = before;
    }
}

TraceBuffer* TraceBufferPool::take()
{
    for (;;)
    {
        uint64_t head = freeHead.load (std::memory_order_acquire);
        TraceBuffer* buffer = getPointer (head);
        if (buffer == nullptr)
        {
            addBlock();
            continue;
        }
        TraceBuffer* next = buffer->nextFree.load (std::memory_order_relaxed);
        if (freeHead.compare_exchange_weak (head, makeHead (next, head), std::memory_order_acq_rel))
            return buffer;
    }
}

void TraceBufferPool::giveBack (TraceBuffer* buffer) noexcept
{
    uint64_t head = freeHead.load (std::memory_order_relaxed);
    do
        buffer->nextFree.store (getPointer (head), std::memory_order_relaxed);
    while (! freeHead.compare_exchange_weak (head, makeHead (buffer, head), std::memory_order_acq_rel));
}

// The block's first buffer gives its first bytes to the list of blocks, and is not handed out.
void TraceBufferPool::addBlock()
{
    void* block = std::aligned_alloc (TraceBuffer::size, blockSize);
    if (block == nullptr)
        throw std::bad_alloc();
    void* before = blocks.load();
    do
        *static_cast<void**> (block) = before;
    while (! blocks.compare_exchange_weak (before, block));
    ++numBlocks;

    auto* buffers = static_cast<TraceBuffer*> (block);
    for (size_t i = 1; i < blockSize / TraceBuffer::size; ++i)
    {
        new (&buffers[i]) TraceBuffer();
        giveBack (&buffers[i]);
    }
}

} // namespace tov
