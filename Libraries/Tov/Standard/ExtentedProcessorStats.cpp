#include "ExtentedProcessorStats.h"
#include <algorithm>

namespace tov
{

TOV_BEGIN_CLASS (ExtentedProcessorStats)
    TOV_VARIABLE (manufacturer)
    TOV_VARIABLE (version)
    TOV_VARIABLE (socketDesignation)
    TOV_VARIABLE (externalClockSpeed)
    TOV_VARIABLE (maxSpeed)
    TOV_VARIABLE (currentSpeed)
    TOV_VARIABLE (logicalProcessors)
TOV_END_CLASS()

juce::String ExtentedProcessorStats::toString() const
{
    return "CPU Manufacturer: " + manufacturer.get() + "\n"
         + "CPU Version: " + version.get() + "\n"
         + "CPU Socket: " + socketDesignation.get() + "\n"
         + "CPU External Clock Speed: " + externalClockSpeed.get() + "\n"
         + "CPU Max Speed: " + maxSpeed.get() + "\n"
         + "CPU Current Speed: " + currentSpeed.get() + "\n";
}

std::vector<int> ExtentedProcessorStats::readLogicalProcessors (const juce::File& cpuDirectory, int socket)
{
    std::vector<int> result;
    for (const auto& folder : cpuDirectory.findChildFiles (juce::File::findDirectories, false, "cpu*"))
    {
        const auto number = folder.getFileName().substring (3);
        if (number.isEmpty() || ! number.containsOnly ("0123456789"))
            continue;
        const auto package = folder.getChildFile ("topology").getChildFile ("physical_package_id");
        if (package.existsAsFile() && package.loadFileAsString().trim().getIntValue() == socket)
            result.push_back (number.getIntValue());
    }
    std::sort (result.begin(), result.end());
    return result;
}

} // namespace tov
