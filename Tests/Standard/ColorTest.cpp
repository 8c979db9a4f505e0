#include "Atomic/AtomicTestSupport.h"
#include <Tov/Core/Class.h>
#include <Tov/Standard/ColorWithAlpha.h>
#include <juce_graphics/juce_graphics.h>

using namespace tov;
using namespace tov::test;

// Expected values were worked out by hand from the conversion formulas (python3 doubles).

TEST (ColorTest, ClassAttributes)
{
    auto& colorClass = Color::getStaticClass();
    EXPECT_EQ (colorClass.getAttribute ("friendlyName")->toString(), "\"RGB Color\"");
    EXPECT_EQ (colorClass.getAttribute ("learnable")->toString(), "true");
    EXPECT_EQ (colorClass.getAttribute ("presets")->getVariableStateByName ("gray")->toShortString(),
               "{red = 0.5, green = 0.5, blue = 0.5}");
    auto& alphaClass = ColorWithAlpha::getStaticClass();
    EXPECT_EQ (alphaClass.getAttribute ("friendlyName")->toString(), "\"RGBA Color\"");
    EXPECT_EQ (alphaClass.getAttribute ("presets")->getVariableStateByName ("red")->toShortString(),
               "{red = 1., green = 0., blue = 0., alpha = 1.}");
    EXPECT_EQ (alphaClass.getAttribute ("presets")->getNumVariables(), 6u);
}

TEST (ColorTest, IsBlackOnlyWhenAllChannelsAreExactlyZero)
{
    EXPECT_TRUE (Color().isBlack());
    EXPECT_FALSE (Color (0.0, 0.0, 1e-12).isBlack());
}

TEST (ColorTest, LerpPerChannel)
{
    const auto color = Color::lerp (Color (0.2, 0.4, 0.6), Color (1.0, 0.0, 0.6), 0.25);
    EXPECT_DOUBLE_EQ (color.getRed(), 0.4);
    EXPECT_DOUBLE_EQ (color.getGreen(), 0.30000000000000004);
    EXPECT_EQ (color.getBlue(), 0.6);
}

TEST (ColorTest, GrayUsesFloatWeights)
{
    // 0.31f, 0.61f and 0.08f are 0.3100000023841858, 0.6100000143051147 and 0.07999999821186066.
    EXPECT_EQ (Color (1.0, 0.0, 0.0).convertToGray(), 0.3100000023841858);
    EXPECT_DOUBLE_EQ (Color (0.2, 0.4, 0.6).convertToGray(), 0.35400000512599944);
}

TEST (ColorTest, ConvertToHSL)
{
    double hue, saturation, lightness;
    Color (0.2, 0.4, 0.6).convertToHSL (hue, saturation, lightness);
    EXPECT_DOUBLE_EQ (hue, 0.5833333333333334);
    EXPECT_DOUBLE_EQ (saturation, 0.5);
    EXPECT_DOUBLE_EQ (lightness, 0.4);

    // Red at its maximum with blue above green: a negative sextant, brought into [0, 1).
    Color (1.0, 0.0, 0.5).convertToHSL (hue, saturation, lightness);
    EXPECT_DOUBLE_EQ (hue, 0.9166666666666666);
    EXPECT_DOUBLE_EQ (saturation, 1.0);

    // Lightness above 0.5 divides by 2 - max - min.
    Color (0.9, 0.3, 0.2).convertToHSL (hue, saturation, lightness);
    EXPECT_DOUBLE_EQ (hue, 0.023809523809523805);
    EXPECT_DOUBLE_EQ (saturation, 0.7777777777777776);
    EXPECT_DOUBLE_EQ (lightness, 0.55);
}

TEST (ColorTest, NearGreyHasNoHueNorSaturation)
{
    double hue = -1.0, saturation = -1.0, lightness = -1.0;
    Color (0.5, 0.500009, 0.5).convertToHSL (hue, saturation, lightness);
    EXPECT_EQ (hue, 0.0);
    EXPECT_EQ (saturation, 0.0);
    EXPECT_DOUBLE_EQ (lightness, 0.5000045);
}

TEST (ColorTest, FromHSLIsTheInverse)
{
    const auto color = Color::fromHSL (0.5833333333333334, 0.5, 0.4);
    EXPECT_NEAR (color.getRed(), 0.2, 1e-15);
    EXPECT_NEAR (color.getGreen(), 0.4, 1e-15);
    EXPECT_NEAR (color.getBlue(), 0.6, 1e-15);

    const auto grey = Color::fromHSL (0.3, 0.0, 0.25);
    EXPECT_EQ (grey.getRed(), 0.25);
    EXPECT_EQ (grey.getGreen(), 0.25);
    EXPECT_EQ (grey.getBlue(), 0.25);
}

TEST (ColorTest, FromHSLUsesTheFloatThird)
{
    // The third of a turn is 0.3333333432674408, a little more than a third: pure red keeps a
    // trace of blue.
    const auto red = Color::fromHSL (0.0, 1.0, 0.5);
    EXPECT_EQ (red.getRed(), 1.0);
    EXPECT_EQ (red.getGreen(), 0.0);
    EXPECT_DOUBLE_EQ (red.getBlue(), 5.960464455334602e-08);
}

TEST (ColorTest, ConvertToCMYK)
{
    double c, m, y, k;
    Color (0.2, 0.4, 0.6).convertToCMYK (c, m, y, k);
    EXPECT_DOUBLE_EQ (c, 0.6666666666666667);
    EXPECT_DOUBLE_EQ (m, 0.33333333333333326);
    EXPECT_EQ (y, 0.0);
    EXPECT_DOUBLE_EQ (k, 0.4);

    Color().convertToCMYK (c, m, y, k);
    EXPECT_EQ (c, 0.0);
    EXPECT_EQ (m, 0.0);
    EXPECT_EQ (y, 0.0);
    EXPECT_EQ (k, 1.0);
}

TEST (ColorTest, FromCMYK)
{
    const auto color = Color::fromCMYK (0.5, 0.0, 1.0, 0.2);
    EXPECT_DOUBLE_EQ (color.getRed(), 0.3999999999999999);
    EXPECT_DOUBLE_EQ (color.getGreen(), 0.8);
    EXPECT_EQ (color.getBlue(), 0.0);
}

TEST (ColorTest, ToStringIsJuceDisplayStringWithoutAlpha)
{
    EXPECT_EQ (Color (1.0, 0.5, 0.0).toString(), "FF8000");
    EXPECT_EQ (Color (1.0, 0.5, 0.0).getColour(), juce::Colour (0xffff8000));
}

TEST (ColorTest, StateFormRoundTrips)
{
    Color color (0.25, 0.5, 1.0), loaded;
    EXPECT_EQ (color.makeState (false)->toShortString(), "{red = 0.25, green = 0.5, blue = 1.}");
    EXPECT_TRUE (saveAndLoad (color, loaded).result);
    EXPECT_TRUE (loaded.equals (color));
}

TEST (ColorWithAlphaTest, NewColorIsOpaque)
{
    ColorWithAlpha color;
    EXPECT_EQ (color.getAlpha(), 1.0);
    Owned<ColorWithAlpha> created (create<ColorWithAlpha>());
    EXPECT_EQ (created->getAlpha(), 1.0);
    EXPECT_EQ (created->makeState (true)->getType(), StateType::voidType);
}

TEST (ColorWithAlphaTest, WithAlpha)
{
    const auto color = Color (0.1, 0.2, 0.3).withAlpha (0.5);
    EXPECT_EQ (color.getRed(), 0.1);
    EXPECT_EQ (color.getAlpha(), 0.5);
    EXPECT_EQ (color.getColourWithAlpha().getAlpha(), 128);
}

TEST (ColorWithAlphaTest, ConversionsAddAndDropAlpha)
{
    Color color (0.1, 0.2, 0.3);
    ColorWithAlpha withAlpha (0.0, 0.0, 0.0, 0.25);
    ASSERT_TRUE (color.isConvertibleTo (withAlpha));
    color.convertToObject (withAlpha);
    EXPECT_EQ (withAlpha.getBlue(), 0.3);
    EXPECT_EQ (withAlpha.getAlpha(), 1.0);

    ColorWithAlpha translucent (0.7, 0.8, 0.9, 0.25);
    ASSERT_TRUE (translucent.isConvertibleTo (color));
    translucent.convertToObject (color);
    EXPECT_EQ (color.getRed(), 0.7);
    EXPECT_EQ (color.makeState (false)->toShortString(), "{red = 0.7, green = 0.8, blue = 0.9}");
}
