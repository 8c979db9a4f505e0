#pragma once

#include "Object.h"
#include <array>
#include <cstddef>
#include <cstdint>
#include <typeinfo>

namespace tov
{

/** dynamic_cast<const Target*> of an object, remembered for its dynamic type on each thread.

    Resolving an address climbs from a message through transactions and containers to the
    peer that provides the space, and asks at each level whether the object is a provider, a
    peer or a service. A dynamic_cast searches the class tree each time, while its answer
    depends on the dynamic type alone: where the target sits inside an object of that type
    (tov declares no virtual bases, so the distance is the same in every object of the type).
    Each thread keeps a small direct-mapped table of answers per type, where a collision only
    costs the dynamic_cast again.
*/
template <class Target>
const Target* cachedDynamicCast (const Object& object)
{
    struct Answer
    {
        const std::type_info* type = nullptr;
        std::ptrdiff_t offset = 0;
        bool isTarget = false;
    };
    thread_local std::array<Answer, 64> answers {};

    const auto* type = &typeid (object);
    auto& answer = answers[(reinterpret_cast<uintptr_t> (type) >> 4) % answers.size()];
    const auto* bytes = reinterpret_cast<const char*> (&object);
    if (answer.type == type)
        return answer.isTarget ? reinterpret_cast<const Target*> (bytes + answer.offset) : nullptr;

    const auto* target = dynamic_cast<const Target*> (&object);
    answer.type = type;
    answer.isTarget = target != nullptr;
    answer.offset = target != nullptr ? reinterpret_cast<const char*> (target) - bytes : 0;
    return target;
}

} // namespace tov
