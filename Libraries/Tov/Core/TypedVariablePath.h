#pragma once

#include <juce_core/juce_core.h>
#include <vector>

namespace tov
{

class Class;
class Object;

/** A path from a root object down to one below it that carries, at each step, the name and
    the class met there, so that the same place can be found again in another tree of the
    same shape. A step through an owned pointer, or through a vector that holds exactly one
    element, has an empty name.
*/
class TypedVariablePath
{
public:
    struct Node
    {
        juce::String name;
        Class* objectClass = nullptr;
    };

    const std::vector<Node>& getPath() const noexcept    { return path; }

    /** The steps from root down to leaf; false, leaving the path partly built, when a level
        cannot be named. */
    bool buildPath (Object* root, Object* leaf);
    /** The object at the end of the path from root, or null when a step is missing or of
        another class. */
    Object* findObjectFromPath (Object* root) const;

private:
    std::vector<Node> path;

    bool addNodeToPath (Object* object, Object* parent);
};

} // namespace tov
