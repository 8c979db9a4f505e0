#include "RecycledBlocks.h"

namespace tov
{

RecycledBlocks::RecycledBlocks (size_t wantedCapacity)
    : blocks (new (std::nothrow) void*[wantedCapacity])
{
    capacity = blocks != nullptr ? wantedCapacity : 0;
}

RecycledBlocks::~RecycledBlocks()
{
    while (numBlocks > 0)
        ::operator delete (blocks[--numBlocks]);
}

} // namespace tov
