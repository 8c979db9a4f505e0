#pragma once

#include "../Atomic/PositiveInteger.h"

namespace tov
{

/** The size of an image or a screen, in whole pixels. */
class PixelSize : public Object
{
public:
    TOV_DECLARE_CLASS (PixelSize, Object)

    explicit PixelSize (int64_t width = 0, int64_t height = 0);
    PixelSize (const PixelSize& other);
    PixelSize& operator= (const PixelSize& other)         { other.copyTo (*this); return *this; }

    int64_t getWidth() const noexcept                     { return width.get(); }
    int64_t getHeight() const noexcept                    { return height.get(); }
    void set (int64_t newWidth, int64_t newHeight, bool notify = true);
    /** No pixel: a width or a height of 0. */
    bool isEmpty() const noexcept                         { return getWidth() == 0 || getHeight() == 0; }
    int64_t getNumPixels() const noexcept                 { return getWidth() * getHeight(); }

    /** Older documents nested the whole size in a variable "size": it loads in place. */
    bool loadVariable (ObjectImporter& importer, juce::StringRef name) override;

private:
    PositiveInteger width;
    PositiveInteger height;
};

} // namespace tov
