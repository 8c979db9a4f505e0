#include "OperatingSystemType.h"

namespace tov
{

TOV_BEGIN_CLASS (OperatingSystemType)
TOV_END_CLASS()

// JUCE's values are a family flag and a version number below it.
int32_t OperatingSystemType::fromJuce (int juceType) noexcept
{
    const int version = juceType & 0xff;
    if ((juceType & juce::SystemStats::Linux) != 0)
        return linuxOS;
    if ((juceType & juce::SystemStats::Android) != 0)
        return android;
    if ((juceType & juce::SystemStats::iOS) != 0)
        return iOS;
    if ((juceType & juce::SystemStats::MacOSX) != 0)
        return version >= 4 && version <= 16 ? macOSX104 + (version - 4) : macOSX;
    if ((juceType & juce::SystemStats::Windows) != 0)
        return version >= 1 && version <= 7 ? win2000 + (version - 1) : windows;
    return unknownOS;
}

} // namespace tov
