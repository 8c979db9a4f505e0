#include "RecycledBlocks.h"

namespace tov
{

// Objects of static storage may still delete such objects after their thread's cache has
// gone: isOpen, cleared here, sends those blocks straight back.
RecycledBlocks::~RecycledBlocks()
{
    isOpen = false;
    while (numBlocks > 0)
        ::operator delete (blocks[--numBlocks]);
}

} // namespace tov
