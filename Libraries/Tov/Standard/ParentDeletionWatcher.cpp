#include "ParentDeletionWatcher.h"

namespace tov
{

void ParentDeletionWatcher::deletedCallback (Object*)
{
    if (object != nullptr)
        object->setParent (nullptr);
}

} // namespace tov
