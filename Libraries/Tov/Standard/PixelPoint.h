#pragma once

#include "../Atomic/Integer.h"

namespace tov
{

/** A position on an image or a screen, in whole pixels from the top left corner. */
class PixelPoint : public Object
{
public:
    TOV_DECLARE_CLASS (PixelPoint, Object)

    explicit PixelPoint (int64_t x = 0, int64_t y = 0);
    PixelPoint (const PixelPoint& other);
    PixelPoint& operator= (const PixelPoint& other)       { other.copyTo (*this); return *this; }

    int64_t getX() const noexcept                         { return x.get(); }
    int64_t getY() const noexcept                         { return y.get(); }
    void set (int64_t newX, int64_t newY, bool notify = true);

private:
    Integer x;
    Integer y;
};

} // namespace tov
