#include <Tov/Core/UniqueIdentifier.h>
#include <gtest/gtest.h>

using namespace tov;

TEST (UniqueIdentifierTest, NullPrintsAsNil)
{
    EXPECT_EQ (UniqueIdentifier().to64BitsHexadecimalString(), "nil");
}
