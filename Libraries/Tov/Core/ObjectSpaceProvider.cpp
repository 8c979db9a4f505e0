#include "ObjectSpaceProvider.h"
#include "CachedDynamicCast.h"
#include "Object.h"

namespace tov
{

ObjectSpace* ObjectSpaceProvider::getSpaceByName (const juce::String& name) const
{
    auto* object = dynamic_cast<const Object*> (this);
    if (object == nullptr)
        return nullptr;
    return getSpaceByName (get (*object, true), name);
}

ObjectSpaceProvider* ObjectSpaceProvider::get (const Object& object, bool skipSelf)
{
    // Asked at every address resolved, by a climb through messages, transactions and containers.
    const Object* level = skipSelf ? object.getParent() : &object;
    for (; level != nullptr; level = level->getParent())
        if (auto* provider = cachedDynamicCast<ObjectSpaceProvider> (*level))
            return const_cast<ObjectSpaceProvider*> (provider);
    return nullptr;
}

ObjectSpace* ObjectSpaceProvider::getSpaceByName (const Object& object, const juce::String& name)
{
    return getSpaceByName (get (object, false), name);
}

ObjectSpace* ObjectSpaceProvider::getSpaceByName (const ObjectSpaceProvider* provider, const juce::String& name)
{
    return provider != nullptr ? provider->getSpaceByName (name) : nullptr;
}

} // namespace tov
