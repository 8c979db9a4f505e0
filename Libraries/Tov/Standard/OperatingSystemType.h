#pragma once

#include "../Atomic/Enumeration.h"

namespace tov
{

/** The family and version of an operating system, as saved snapshots of machines name them. */
class OperatingSystemType : public Enumeration
{
public:
    TOV_DECLARE_CLASS (OperatingSystemType, Enumeration)
    TOV_ELEMENTS ((unknownOS, 0), (macOSX, 1), (macOSX104, 2), (macOSX105, 3), (macOSX106, 4), (macOSX107, 5),
                  (macOSX108, 6), (macOSX109, 7), (macOSX1010, 8), (macOSX1011, 9), (macOSX1012, 10),
                  (macOSX1013, 11), (macOSX1014, 12), (macOSX1015, 13), (macOSX1016, 14), (windows, 15),
                  (win2000, 16), (winXP, 17), (winVista, 18), (win7, 19), (win8_0, 20), (win8_1, 21), (win10, 22),
                  (linuxOS, 23), (android, 24), (iOS, 25))

    /** The element of one of juce::SystemStats::OperatingSystemType's values. */
    static int32_t fromJuce (int juceType) noexcept;
};

} // namespace tov
