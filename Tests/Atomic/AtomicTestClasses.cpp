#include "AtomicTestClasses.h"

namespace tov::test
{

TOV_BEGIN_CLASS (NumberHolder)
    TOV_VARIABLE (track, { "oneBased", "true" }, { "maximum", "99" })
    TOV_VARIABLE (huge, { "maximum", "-2" })
    TOV_VARIABLE (level, { "minimum", "-1.0" }, { "maximum", "10.0" }, { "unit", "\"V\"" })
    TOV_VARIABLE (limited, { "minimum", "-5" }, { "maximum", "5" })
    TOV_VARIABLE (cache, { "unit", "\"MB\"" })
    TOV_VARIABLE (download, { "rate", "true" })
    TOV_VARIABLE (plain)
    TOV_VARIABLE (quota, { "unit", "\"MB\"" })
    TOV_VARIABLE (mix)
    TOV_VARIABLE (heading)
TOV_END_CLASS()

TOV_BEGIN_CLASS (Timeline)
    TOV_VARIABLE (position)
TOV_END_CLASS()

TOV_BEGIN_CLASS (Interpolation)
TOV_END_CLASS()

TOV_BEGIN_CLASS (Permissions, { "bitFlags", "true" })
TOV_END_CLASS()

TOV_BEGIN_CLASS (Channels, { "bitFlags", "true" })
TOV_END_CLASS()

TOV_BEGIN_CLASS (AtomicDocument)
    TOV_VARIABLE (enabled, { "default", "true" })
    TOV_VARIABLE (count, { "default", "3" })
    TOV_VARIABLE (index, { "oneBased", "true" })
    TOV_VARIABLE (voices, { "default", "1" })
    TOV_VARIABLE (note, { "default", "60" })
    TOV_VARIABLE (velocity)
    TOV_VARIABLE (program)
    TOV_VARIABLE (pitchBend, { "default", "8192" })
    TOV_VARIABLE (cacheSize)
    TOV_VARIABLE (selection)
    TOV_VARIABLE (usedMemory)
    TOV_VARIABLE (ratio)
    TOV_VARIABLE (weight)
    TOV_VARIABLE (gain)
    TOV_VARIABLE (opacity, { "default", "1.0" })
    TOV_VARIABLE (balance)
    TOV_VARIABLE (rotation)
    TOV_VARIABLE (pan)
    TOV_VARIABLE (hue)
    TOV_VARIABLE (aperture)
    TOV_VARIABLE (altitude)
    TOV_VARIABLE (thickness)
    TOV_VARIABLE (distance)
    TOV_VARIABLE (focalLength, { "default", "50.0" })
    TOV_VARIABLE (offset)
    TOV_VARIABLE (width)
    TOV_VARIABLE (lineWidth, { "default", "1.0" })
    TOV_VARIABLE (start)
    TOV_VARIABLE (latency)
    TOV_VARIABLE (delay)
    TOV_VARIABLE (lumens)
    TOV_VARIABLE (lux, { "default", "1.0" })
    TOV_VARIABLE (peak)
    TOV_VARIABLE (rate, { "default", "440.0" })
    TOV_VARIABLE (volume, { "default", "1.0" })
    TOV_VARIABLE (timeout)
    TOV_VARIABLE (title, { "default", "\"untitled\"" })
    TOV_VARIABLE (mode)
    TOV_VARIABLE (notes)
    TOV_VARIABLE (script)
    TOV_VARIABLE (layout)
    TOV_VARIABLE (caption)
    TOV_VARIABLE (interpolation, { "default", "\"linear\"" })
    TOV_VARIABLE (permissions)
    TOV_VARIABLE (nothing)
    TOV_VARIABLE (reset)
    TOV_VARIABLE (identifier)
    TOV_VARIABLE (kind)
    TOV_VARIABLE (action)
    TOV_VARIABLE (owner)
TOV_END_CLASS()

void ensureAtomicTestLibrary()
{
    auto* root = Library::getRootLibrary();
    if (root == nullptr || root->getLibraryByName ("AtomicTests") != nullptr)
        return;
    auto* library = new NamedLibrary ("AtomicTests", {});
    library->addClass<NumberHolder>();
    library->addClass<Timeline>();
    library->addClass<Interpolation>();
    library->addClass<Permissions>();
    library->addClass<Channels>();
    library->addClass<AtomicDocument>();
    root->addLibrary (library);
}

} // namespace tov::test
