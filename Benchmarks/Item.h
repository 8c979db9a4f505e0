#pragma once

#include <Tov/Core/Object.h>

namespace tov::benchmarks
{

/** A reflected class without variables: the objects of the benchmarks that measure what every
    object pays, in a space and through pointers. */
class Item : public Object
{
public:
    TOV_DECLARE_CLASS (Item, Object)
};

} // namespace tov::benchmarks
