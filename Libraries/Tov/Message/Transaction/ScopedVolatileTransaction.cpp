#include "ScopedVolatileTransaction.h"
#include "TransactionBuilderImplementation.h"
#include "../../Core/ObjectSpace.h"

namespace tov
{

ScopedVolatileTransaction::ScopedVolatileTransaction (const Object& object)
    : ScopedVolatileTransaction (object.getSpace())
{
}

ScopedVolatileTransaction::ScopedVolatileTransaction (ObjectSpace* space)
    : space (space)
{
    if (space != nullptr)
        builder = space->startVolatileTransaction();
}

ScopedVolatileTransaction::~ScopedVolatileTransaction()
{
    if (builder != nullptr)
        space->finishTransaction (builder);
}

bool ScopedVolatileTransaction::checkThatAllChangedObjectsAreChildOf (const Object& object) const
{
    return builder == nullptr || builder->checkThatAllChangedObjectsAreChildOf (object);
}

} // namespace tov
