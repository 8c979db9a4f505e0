#pragma once

#include "../Core/Object.h"

namespace tov
{

/** An object that tells the time values below it how many frames make a second. */
class TimeBaseProvider
{
public:
    virtual ~TimeBaseProvider() = default;

    static constexpr double defaultTimeBase = 50.0;

    /** Frames per second; 0 or less leaves the answer to the objects above. */
    virtual double getTimeBase() const = 0;

    /** The answer of the nearest provider among the object's parents, or 50 when none answers. */
    static double getTimeBaseFromContext (const Object* object);
};

} // namespace tov
