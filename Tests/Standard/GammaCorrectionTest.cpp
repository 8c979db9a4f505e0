#include "Atomic/AtomicTestSupport.h"
#include <Tov/Standard/GammaCorrection.h>

using namespace tov;
using namespace tov::test;

TEST (GammaCorrectionTest, DefaultsAreUniform22)
{
    Owned<GammaCorrection> gamma (create<GammaCorrection>());
    EXPECT_EQ (gamma->getRed(), 2.2);
    EXPECT_EQ (gamma->getGreen(), 2.2);
    EXPECT_EQ (gamma->getBlue(), 2.2);
    EXPECT_TRUE (gamma->isUniform());
    EXPECT_EQ (gamma->makeState (true)->getType(), StateType::voidType);
    EXPECT_EQ (gamma->getVariableSignature ((size_t) 0)->getAttribute ("default")->toString(), "2.2");
}

TEST (GammaCorrectionTest, UniformChannelEditCopiesToTheOthers)
{
    Owned<GammaCorrection> gamma (create<GammaCorrection>());
    ChangeCounter changes (*gamma);
    gamma->getGreenVariable().set (1.8);
    EXPECT_EQ (gamma->getRed(), 1.8);
    EXPECT_EQ (gamma->getGreen(), 1.8);
    EXPECT_EQ (gamma->getBlue(), 1.8);
    EXPECT_EQ (changes.count, 3);
}

TEST (GammaCorrectionTest, SettingUniformTakesTheMean)
{
    Owned<GammaCorrection> gamma (create<GammaCorrection>());
    gamma->setUniform (false);
    gamma->getRedVariable().set (1.0);
    gamma->getGreenVariable().set (2.0);
    gamma->getBlueVariable().set (4.5);
    EXPECT_EQ (gamma->getRed(), 1.0);
    gamma->setUniform (true);
    EXPECT_EQ (gamma->getRed(), 2.5);
    EXPECT_EQ (gamma->getGreen(), 2.5);
    EXPECT_EQ (gamma->getBlue(), 2.5);
}

TEST (GammaCorrectionTest, LoadingKeepsDifferentChannels)
{
    // Loading runs under the constraints mark: the channels are taken as saved.
    Owned<GammaCorrection> gamma (create<GammaCorrection>());
    const auto outcome = loadFromText (*gamma, "{red = 1.0, green = 2.0, blue = 3.0}");
    EXPECT_TRUE (outcome.result);
    EXPECT_EQ (gamma->getRed(), 1.0);
    EXPECT_EQ (gamma->getGreen(), 2.0);
    EXPECT_EQ (gamma->getBlue(), 3.0);
    EXPECT_TRUE (gamma->isUniform());
}

TEST (GammaCorrectionTest, NoConstraintWhileApplyingConstraints)
{
    Owned<GammaCorrection> gamma (create<GammaCorrection>());
    gamma->startApplyingVariableConstraints();
    gamma->getRedVariable().set (3.0);
    gamma->finishApplyingVariableConstraints();
    EXPECT_EQ (gamma->getRed(), 3.0);
    EXPECT_EQ (gamma->getGreen(), 2.2);
}
