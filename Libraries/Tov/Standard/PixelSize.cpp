#include "PixelSize.h"

namespace tov
{

TOV_BEGIN_CLASS (PixelSize)
    TOV_VARIABLE (width)
    TOV_VARIABLE (height)
TOV_END_CLASS()

PixelSize::PixelSize (int64_t newWidth, int64_t newHeight) : width (newWidth), height (newHeight)
{
}

PixelSize::PixelSize (const PixelSize& other) : Object (other), width (other.width), height (other.height)
{
}

void PixelSize::set (int64_t newWidth, int64_t newHeight, bool notify)
{
    width.set (newWidth, notify);
    height.set (newHeight, notify);
}

bool PixelSize::loadVariable (ObjectImporter& importer, juce::StringRef name)
{
    if (name == juce::StringRef ("size"))
        return importer.load (*this);
    return Object::loadVariable (importer, name);
}

} // namespace tov
