#pragma once

#include <juce_core/juce_core.h>

namespace tov
{

class Object;
class ObjectSpace;

/** Finds an object space by name for code that holds only an object.

    An object that implements this interface answers for the objects below it:
    the statics climb the parent chain to the nearest provider. By default a
    provider hands the question on to the next provider above itself.
*/
class ObjectSpaceProvider
{
public:
    virtual ~ObjectSpaceProvider() = default;

    /** The space of that name; by default the answer of the next provider above this one, null at the top. */
    virtual ObjectSpace* getSpaceByName (const juce::String& name) const;

    /** The object itself when it is a provider and skipSelf is false; otherwise the nearest
        provider among its ancestors; null when there is none. */
    static ObjectSpaceProvider* get (const Object& object, bool skipSelf);

    /** The space as the nearest provider of the object, the object included, names it. */
    static ObjectSpace* getSpaceByName (const Object& object, const juce::String& name);

    /** The space as that provider names it; null for a null provider. */
    static ObjectSpace* getSpaceByName (const ObjectSpaceProvider* provider, const juce::String& name);
};

} // namespace tov
