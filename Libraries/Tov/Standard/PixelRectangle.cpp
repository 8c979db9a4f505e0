#include "PixelRectangle.h"

namespace tov
{

TOV_BEGIN_CLASS (PixelRectangle)
    TOV_VARIABLE (position)
    TOV_VARIABLE (size)
TOV_END_CLASS()

PixelRectangle::PixelRectangle (int64_t x, int64_t y, int64_t width, int64_t height) : position (x, y), size (width, height)
{
}

PixelRectangle::PixelRectangle (const PixelRectangle& other) : Object (other), position (other.position), size (other.size)
{
}

void PixelRectangle::set (int64_t x, int64_t y, int64_t width, int64_t height, bool notify)
{
    position.set (x, y, notify);
    size.set (width, height, notify);
}

bool PixelRectangle::contains (int64_t x, int64_t y) const noexcept
{
    return x >= getX() && y >= getY() && x < getRight() && y < getBottom();
}

bool PixelRectangle::intersects (const PixelRectangle& other) const noexcept
{
    return ! isEmpty() && ! other.isEmpty()
        && getX() < other.getRight() && other.getX() < getRight()
        && getY() < other.getBottom() && other.getY() < getBottom();
}

} // namespace tov
