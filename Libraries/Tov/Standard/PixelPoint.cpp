#include "PixelPoint.h"

namespace tov
{

TOV_BEGIN_CLASS (PixelPoint)
    TOV_VARIABLE (x)
    TOV_VARIABLE (y)
TOV_END_CLASS()

PixelPoint::PixelPoint (int64_t newX, int64_t newY) : x (newX), y (newY)
{
}

PixelPoint::PixelPoint (const PixelPoint& other) : Object (other), x (other.x), y (other.y)
{
}

void PixelPoint::set (int64_t newX, int64_t newY, bool notify)
{
    x.set (newX, notify);
    y.set (newY, notify);
}

} // namespace tov
