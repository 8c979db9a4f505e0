#pragma once

#include "Real.h"

namespace tov
{

/** An angle in radians, whole turns included, shown in turns and degrees. */
class Angle : public Real
{
public:
    TOV_DECLARE_CLASS (Angle, Real)

    using Real::Real;

    static double degreesToRadians (double degrees) noexcept  { return degrees * juce::MathConstants<double>::pi / 180.0; }
    static double radiansToDegrees (double radians) noexcept  { return radians * 180.0 / juce::MathConstants<double>::pi; }
    /** The same direction in (-pi, pi]. */
    static double normalize (double radians) noexcept;

    /** The part within a turn: the value modulo 2 pi. */
    double getRadians() const noexcept;
    /** The whole turns, truncated towards zero. */
    int64_t getTurns() const noexcept;
    double getDegrees() const noexcept                        { return radiansToDegrees (getRadians()); }
    /** Keeps the turns. */
    void setDegrees (double degrees, bool notify = true)      { setTurnsAndDegrees (getTurns(), degrees, notify); }
    void setTurnsAndDegrees (int64_t turns, double degrees, bool notify = true)  { setTurnsAndRadians (turns, degreesToRadians (degrees), notify); }
    void setTurnsAndRadians (int64_t turns, double radians, bool notify = true);
    /** Keeps the part within a turn. */
    void updateTurns (int64_t turns, bool notify = true)      { setTurnsAndRadians (turns, getRadians(), notify); }

    double getMinimalStep() const override                    { return degreesToRadians (0.001); }
    double getSmallStep() const override                      { return degreesToRadians (0.1); }
    /** "2 turns and 90 deg", "1 turn", "45 deg", or "0 deg". */
    juce::String toString() const override;
    /** A number of degrees, optionally followed by "deg". */
    bool parseNumber (const juce::String& text, juce::String& error, const MemberSignature* signature = nullptr) override;
    /** Also reads a string of degrees ending in "deg". */
    bool load (ObjectImporter& importer) override;

protected:
    /** The angle's degrees as one number, for angles of one turn at most. */
    juce::String toDegreesString() const                      { return juce::String (radiansToDegrees (value)); }
};

} // namespace tov
