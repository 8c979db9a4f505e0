#pragma once

#include "PixelPoint.h"
#include "PixelSize.h"

namespace tov
{

/** A rectangle of whole pixels: its top left corner and its size. The right and bottom
    edges are outside, as with juce::Rectangle. */
class PixelRectangle : public Object
{
public:
    TOV_DECLARE_CLASS (PixelRectangle, Object)

    PixelRectangle() = default;
    PixelRectangle (int64_t x, int64_t y, int64_t width, int64_t height);
    PixelRectangle (const PixelRectangle& other);
    PixelRectangle& operator= (const PixelRectangle& other)  { other.copyTo (*this); return *this; }

    const PixelPoint& getPosition() const noexcept        { return position; }
    const PixelSize& getSize() const noexcept             { return size; }
    int64_t getX() const noexcept                         { return position.getX(); }
    int64_t getY() const noexcept                         { return position.getY(); }
    int64_t getWidth() const noexcept                     { return size.getWidth(); }
    int64_t getHeight() const noexcept                    { return size.getHeight(); }
    int64_t getRight() const noexcept                     { return getX() + getWidth(); }
    int64_t getBottom() const noexcept                    { return getY() + getHeight(); }
    void set (int64_t x, int64_t y, int64_t width, int64_t height, bool notify = true);

    bool isEmpty() const noexcept                         { return size.isEmpty(); }
    /** The pixel at x, y lies inside. */
    bool contains (int64_t x, int64_t y) const noexcept;
    /** The two share at least one pixel. */
    bool intersects (const PixelRectangle& other) const noexcept;

private:
    PixelPoint position;
    PixelSize size;
};

} // namespace tov
