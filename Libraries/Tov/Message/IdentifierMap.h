#pragma once

#include "../Core/Object.h"
#include <unordered_map>

namespace tov
{

/** Hashes an identifier object by what it saves, for maps keyed by identifiers. */
struct IdentifierHash
{
    size_t operator() (const Object* identifier) const     { return (size_t) identifier->computeHash(); }
};

/** Compares identifier objects with their virtual equals. */
struct IdentifierEquality
{
    bool operator() (const Object* a, const Object* b) const { return a->equals (*b); }
};

/** A hash map whose keys are identifier objects (of peers, of calls), found by value. */
template <class Value>
using IdentifierMap = std::unordered_map<Object*, Value, IdentifierHash, IdentifierEquality>;

} // namespace tov
