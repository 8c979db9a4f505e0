#pragma once

#include "../Atomic/PositiveInteger.h"
#include "../Atomic/String.h"
#include "../Container/OwnedVector.h"

namespace tov
{

/** One processor socket of a machine, as its firmware describes it, with the ids of the
    logical processors it holds. The class keeps the name saved snapshots know it by. */
class ExtentedProcessorStats : public Object
{
public:
    TOV_DECLARE_CLASS (ExtentedProcessorStats, Object)

    String manufacturer;
    String version;
    String socketDesignation;
    String externalClockSpeed;
    String maxSpeed;
    String currentSpeed;
    OwnedVector<PositiveInteger> logicalProcessors;

    /** A "CPU ...: " line per text. */
    juce::String toString() const override;

    /** The ids of the logical processors of a socket, from the per-processor topology folders
        ("cpu0", "cpu1", ...) of the directory; in increasing order. */
    static std::vector<int> readLogicalProcessors (const juce::File& cpuDirectory, int socket);
};

} // namespace tov
