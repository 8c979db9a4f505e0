#include "TimeBaseProvider.h"

namespace tov
{

double TimeBaseProvider::getTimeBaseFromContext (const Object* object)
{
    for (const Object* level = object != nullptr ? object->getParent() : nullptr; level != nullptr; level = level->getParent())
        if (auto* provider = dynamic_cast<const TimeBaseProvider*> (level))
            if (const double timeBase = provider->getTimeBase(); timeBase > 0.0)
                return timeBase;
    return defaultTimeBase;
}

} // namespace tov
