#include "TypedVariablePath.h"
#include "Object.h"
#include "../Container/ObjectOwnedVector.h"
#include "../Pointer/ObjectOwnedPointer.h"

namespace tov
{

bool TypedVariablePath::buildPath (Object* root, Object* leaf)
{
    path.clear();
    if (root == leaf)
    {
        path.push_back ({ {}, leaf->getClass() });
        return true;
    }
    for (Object* level = leaf; level != root; level = level->getParent())
        if (! addNodeToPath (level, level->getParent()))
            return false;
    std::reverse (path.begin(), path.end());
    return true;
}

bool TypedVariablePath::addNodeToPath (Object* object, Object* parent)
{
    if (parent == nullptr)
        return false;
    if (dynamic_cast<ObjectOwnedPointer*> (parent) != nullptr)
    {
        path.push_back ({ {}, object->getClass() });
        return true;
    }
    // Only the element of a vector of one has a place that another tree of the same shape shares.
    if (auto* vector = dynamic_cast<ObjectOwnedVector*> (parent))
    {
        if (vector->size() != 1)
            return false;
        path.push_back ({ {}, object->getClass() });
        return true;
    }
    auto* signature = object->getSignature();
    if (signature == nullptr)
        return false;
    path.push_back ({ signature->getName(), object->getClass() });
    return true;
}

Object* TypedVariablePath::findObjectFromPath (Object* root) const
{
    if (path.size() == 1 && path.front().objectClass == root->getClass())
        return root;

    Object* current = root;
    for (auto& node : path)
    {
        if (auto* pointer = dynamic_cast<ObjectOwnedPointer*> (current))
            current = pointer->get();
        else if (auto* vector = dynamic_cast<ObjectOwnedVector*> (current))
            current = vector->getFirst();
        else
            current = current->getVariableByName (node.name);
        if (current == nullptr || ! Class::inheritsFrom (current->getClass(), node.objectClass))
            return nullptr;
    }
    return current;
}

} // namespace tov
