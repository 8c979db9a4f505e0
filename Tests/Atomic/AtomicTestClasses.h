#pragma once

#include "AtomicTestSupport.h"

// Classes whose members use the value classes, for the tests of the Atomic library.
namespace tov::test
{

/** Numbers whose member declarations change their attributes. */
class NumberHolder : public Object
{
public:
    TOV_DECLARE_CLASS (NumberHolder, Object)

    PositiveInteger track;
    PositiveInteger huge;
    Real level;
    Integer limited;
    MemorySize cache;
    MemorySize download;
    MemorySize plain;
    BoundedMemorySize quota;
    Percentage mix;
    Angle heading;
};

/** Gives the time values below it a time base. */
class Timeline : public Object, public TimeBaseProvider
{
public:
    TOV_DECLARE_CLASS (Timeline, Object)

    double getTimeBase() const override  { return timeBase; }

    double timeBase = 25.0;
    Seconds position;
};

/** An enumeration declared in C++, with an alternative name and descriptions. */
class Interpolation : public Enumeration
{
public:
    TOV_DECLARE_CLASS (Interpolation, Enumeration)
    TOV_ELEMENTS ((nearest, 0, alternativeName ("closest")),
                  (linear, 1, description ("us-en", "Straight line"), description ("fr-fr", "Ligne droite")),
                  (cubicSpline, 5))
};

/** Bit flags with an element for none. */
class Permissions : public Enumeration
{
public:
    TOV_DECLARE_CLASS (Permissions, Enumeration)
    TOV_ELEMENTS ((none, 0), (read, 1), (write, 2), (execute, 4))
};

/** Bit flags without an element for none. */
class Channels : public Enumeration
{
public:
    TOV_DECLARE_CLASS (Channels, Enumeration)
    TOV_ELEMENTS ((left, 1), (right, 2))
};

/** A document with a member of each value class, some with declared defaults. */
class AtomicDocument : public Object
{
public:
    TOV_DECLARE_CLASS (AtomicDocument, Object)

    Boolean enabled;
    Integer count;
    PositiveInteger index;
    StrictlyPositiveInteger voices;
    PositiveInteger7Bits note;
    PositiveInteger8Bits velocity;
    PositiveInteger9Bits program;
    PositiveInteger14Bits pitchBend;
    MemorySize cacheSize;
    BoundedPositiveInteger selection;
    BoundedMemorySize usedMemory;
    Real ratio;
    PositiveReal weight;
    UnboundedPercentage gain;
    Percentage opacity;
    SignedPercentage balance;
    Angle rotation;
    SignedAngle pan;
    SingleTurnAngle hue;
    PositiveAngle aperture;
    Meters altitude;
    Millimeters thickness;
    PositiveMeters distance;
    PositiveMillimeters focalLength;
    Pixels offset;
    PositivePixels width;
    StrictlyPositivePixels lineWidth;
    Seconds start;
    Milliseconds latency;
    SignedMilliseconds delay;
    LuminousPower lumens;
    Illuminance lux;
    Brightness peak;
    Frequency rate;
    Decibel volume;
    RelativeTime timeout;
    String title;
    StringWithChoices mode;
    MultiLineString notes;
    SourceCode script;
    XmlElement layout;
    FriendlyNameString caption;
    Interpolation interpolation;
    Permissions permissions;
    Void nothing;
    Trigger reset;
    Uuid identifier;
    ClassObject kind;
    Triggerable action;
    NameableObject owner;
};

/** Enters the classes above in a library "AtomicTests", once per start of the library tree. */
void ensureAtomicTestLibrary();

/** A fixture whose tests use the classes above. */
class AtomicTestClassesFixture : public ::testing::Test
{
protected:
    void SetUp() override  { ensureAtomicTestLibrary(); }
};

} // namespace tov::test
