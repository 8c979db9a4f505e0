#pragma once

#include "UniqueIdentifier.h"
#include <memory>
#include <unordered_set>

namespace tov
{

class State;
class Object;
class ExecutionContext;

/** Makes deep copies of State trees with remapped identifiers.

    Every identifier that names a node of the tree becomes identifier XOR mask,
    both on the node and in weak pointers to it, so a clone keeps its inner
    references while weak pointers to objects outside the tree keep pointing
    at the originals. Applying the same mask twice gives the identifiers back.
*/
class StateCloner
{
public:
    StateCloner() noexcept = default;
    explicit StateCloner (UniqueIdentifier mask) : mask (mask) {}

    /** A new, fully separate tree: no node is shared with the source. */
    std::shared_ptr<State> clone (const State& source);

    /** A new object from the source's state, cloned with this mask; null with a report when its class is unknown. */
    Object* cloneObject (ExecutionContext& context, const Object& source, Object* parent);

private:
    UniqueIdentifier mask;
    std::unordered_set<UniqueIdentifier, UniqueIdentifierHash> identifiers;

    void getUniqueIdentifiersRecursively (const State& node);
    std::shared_ptr<State> cloneRecursively (const State& node) const;
    UniqueIdentifier cloneUniqueIdentifier (UniqueIdentifier identifier) const;
};

} // namespace tov
