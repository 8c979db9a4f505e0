#include <Tov/Core/CachedDynamicCast.h>
#include <Tov/Core/Object.h>
#include <Tov/Core/ObjectSpaceProvider.h>
#include <gtest/gtest.h>

using namespace tov;

namespace
{
/** The provider interface sits after Object in these objects, at a distance from it. */
class ProvidingObject : public Object, public ObjectSpaceProvider
{
};

class PlainObject : public Object
{
};
} // namespace

TEST (CachedDynamicCastTest, GivesWhatDynamicCastGivesAgainAndAgain)
{
    ProvidingObject first, second;
    for (int round = 0; round < 2; ++round)
    {
        EXPECT_EQ (cachedDynamicCast<ObjectSpaceProvider> (first), static_cast<const ObjectSpaceProvider*> (&first));
        EXPECT_EQ (cachedDynamicCast<ObjectSpaceProvider> (second), static_cast<const ObjectSpaceProvider*> (&second));
        EXPECT_NE (static_cast<const void*> (cachedDynamicCast<ObjectSpaceProvider> (first)), static_cast<const void*> (&first));
    }
}

TEST (CachedDynamicCastTest, ATypeThatIsNoTargetStaysNull)
{
    PlainObject plain;
    EXPECT_EQ (cachedDynamicCast<ObjectSpaceProvider> (plain), nullptr);
    EXPECT_EQ (cachedDynamicCast<ObjectSpaceProvider> (plain), nullptr);
    ProvidingObject providing;
    EXPECT_EQ (cachedDynamicCast<ObjectSpaceProvider> (providing), static_cast<const ObjectSpaceProvider*> (&providing));
}
