#pragma once

#include "RandomGenerator.h"

namespace tov
{

/** Stands in for the random generator of the service that owns the calling code, until
    services have generators of their own.

    A service's generator belongs to the service's thread, so until then each thread has
    one RandomGenerator, seeded from the high-resolution clock the first time the thread
    asks. Object spaces draw the identifiers of new objects from it.
*/
class ServiceRandomGeneratorStandIn
{
public:
    /** The calling thread's generator. */
    static RandomGenerator& getRandomGenerator();

    /** 64 random bits of the calling thread's generator: two 32-bit samples, the first in the high half. */
    static uint64_t sampleInt64()                      { return (uint64_t) getRandomGenerator().sampleInt64(); }

    /** Sets the calling thread's generator to that state, with no step taken. */
    static void setSeed (int64_t seed)                 { getRandomGenerator().setSeed (seed); }
};

} // namespace tov
