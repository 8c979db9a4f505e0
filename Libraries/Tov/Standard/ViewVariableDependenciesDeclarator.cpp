#include "ViewVariableDependenciesDeclarator.h"

namespace tov
{

void ViewVariableDependenciesDeclarator::add (Object* object)
{
    if (object != nullptr)
        attachObject (object);
}

} // namespace tov
