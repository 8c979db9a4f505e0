#include "RecycledBlocks.h"

namespace tov
{

RecycledBlocks::~RecycledBlocks()
{
    while (numBlocks > 0)
        ::operator delete (blocks[--numBlocks]);
}

} // namespace tov
