#include "ObjectSpaceProvider.h"
#include "Object.h"
#include <array>
#include <cstdint>
#include <typeinfo>

namespace tov
{

ObjectSpace* ObjectSpaceProvider::getSpaceByName (const juce::String& name) const
{
    auto* object = dynamic_cast<const Object*> (this);
    if (object == nullptr)
        return nullptr;
    return getSpaceByName (get (*object, true), name);
}

// Addresses are resolved at every change that undo, redo and mirroring load, each by a climb
// through messages, transactions and containers, of which hardly any is a provider. A failing
// dynamic_cast across to this interface searches the whole class tree, while its answer
// depends on the dynamic type alone: each thread keeps a small direct-mapped table of types
// that are no provider, where a collision only costs the dynamic_cast again.
using TypesThatAreNoProvider = std::array<const std::type_info*, 64>;

static const ObjectSpaceProvider* asProvider (const Object& object, TypesThatAreNoProvider& typesThatAreNoProvider)
{
    const auto* type = &typeid (object);
    auto& slot = typesThatAreNoProvider[(reinterpret_cast<uintptr_t> (type) >> 4) % typesThatAreNoProvider.size()];
    if (slot == type)
        return nullptr;
    auto* provider = dynamic_cast<const ObjectSpaceProvider*> (&object);
    if (provider == nullptr)
        slot = type;
    return provider;
}

ObjectSpaceProvider* ObjectSpaceProvider::get (const Object& object, bool skipSelf)
{
    thread_local TypesThatAreNoProvider typesThatAreNoProvider {};
    const Object* level = skipSelf ? object.getParent() : &object;
    for (; level != nullptr; level = level->getParent())
        if (auto* provider = asProvider (*level, typesThatAreNoProvider))
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
