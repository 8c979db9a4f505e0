#include "Atomic/AtomicTestSupport.h"
#include <Tov/Standard/PixelRectangle.h>

using namespace tov;
using namespace tov::test;

TEST (PixelSizeTest, OldSizeVariableLoadsInPlace)
{
    PixelSize size;
    const auto outcome = loadFromText (size, "{size = {width = 1920, height = 1080}}");
    EXPECT_TRUE (outcome.result);
    EXPECT_EQ (outcome.messages, "");
    EXPECT_EQ (size.getWidth(), 1920);
    EXPECT_EQ (size.getHeight(), 1080);
}

TEST (PixelSizeTest, StateForm)
{
    PixelSize size (640, 480), loaded;
    EXPECT_EQ (size.makeState (false)->toShortString(), "{width = 640, height = 480}");
    EXPECT_TRUE (saveAndLoad (size, loaded).result);
    EXPECT_TRUE (loaded.equals (size));
    EXPECT_EQ (size.getNumPixels(), 307200);
    EXPECT_TRUE (PixelSize (0, 10).isEmpty());
}

TEST (PixelPointTest, SignedCoordinates)
{
    PixelPoint point (-4, 7);
    EXPECT_EQ (point.getX(), -4);
    EXPECT_EQ (point.getVariable (0)->getClassName(), "Integer");
    EXPECT_EQ (point.makeState (false)->toShortString(), "{x = -4, y = 7}");
}

TEST (PixelRectangleTest, EdgesAndContainment)
{
    PixelRectangle rectangle (10, 20, 30, 40);
    EXPECT_EQ (rectangle.getRight(), 40);
    EXPECT_EQ (rectangle.getBottom(), 60);
    EXPECT_TRUE (rectangle.contains (10, 20));
    EXPECT_TRUE (rectangle.contains (39, 59));
    EXPECT_FALSE (rectangle.contains (40, 59));
    EXPECT_FALSE (rectangle.contains (9, 30));
}

TEST (PixelRectangleTest, Intersections)
{
    PixelRectangle rectangle (0, 0, 10, 10);
    EXPECT_TRUE (rectangle.intersects (PixelRectangle (9, 9, 5, 5)));
    EXPECT_FALSE (rectangle.intersects (PixelRectangle (10, 0, 5, 5)));
    EXPECT_FALSE (rectangle.intersects (PixelRectangle (2, 2, 0, 5)));
}

TEST (PixelRectangleTest, StateFormNestsPositionAndSize)
{
    PixelRectangle rectangle (1, 2, 3, 4), loaded;
    EXPECT_EQ (rectangle.makeState (false)->toShortString(), "{position = {x = 1, y = 2}, size = {width = 3, height = 4}}");
    EXPECT_TRUE (saveAndLoad (rectangle, loaded).result);
    EXPECT_TRUE (loaded.equals (rectangle));
}
