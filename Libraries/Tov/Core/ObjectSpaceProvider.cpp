#include "ObjectSpaceProvider.h"
#include "Object.h"
#include <typeinfo>
#include <unordered_set>

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
// depends on the dynamic type alone: types known to be no provider are passed at once.
static const ObjectSpaceProvider* asProvider (const Object& object)
{
    thread_local std::unordered_set<const std::type_info*> typesThatAreNoProvider;
    const auto* type = &typeid (object);
    if (typesThatAreNoProvider.count (type) != 0)
        return nullptr;
    auto* provider = dynamic_cast<const ObjectSpaceProvider*> (&object);
    if (provider == nullptr)
        typesThatAreNoProvider.insert (type);
    return provider;
}

ObjectSpaceProvider* ObjectSpaceProvider::get (const Object& object, bool skipSelf)
{
    const Object* level = skipSelf ? object.getParent() : &object;
    for (; level != nullptr; level = level->getParent())
        if (auto* provider = asProvider (*level))
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
