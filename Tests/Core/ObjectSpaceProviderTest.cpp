#include "Support/TestValues.h"
#include <Tov/Core/ObjectSpace.h>
#include <Tov/Core/ObjectSpaceProvider.h>
#include <gtest/gtest.h>

using namespace tov;
using namespace tov::test;

namespace
{
/** An object that holds spaces and answers for them by name, as a peer does. */
class SpaceHolder : public Object, public ObjectSpaceProvider
{
public:
    std::vector<ObjectSpace*> spaces;

    ObjectSpace* getSpaceByName (const juce::String& name) const override
    {
        for (auto* space : spaces)
            if (space->getName() == name)
                return space;
        return nullptr;
    }
};

/** A provider that keeps the default answer: the next provider above it answers. */
class ForwardingProvider : public Object, public ObjectSpaceProvider
{
};

/** A provider that is no object. */
class DetachedProvider : public ObjectSpaceProvider
{
};
} // namespace

TEST (ObjectSpaceProviderTest, AnObjectThatIsAProviderIsItsOwnUnlessSkipped)
{
    SpaceHolder outer, inner;
    inner.setParent (&outer);
    EXPECT_EQ (ObjectSpaceProvider::get (inner, false), &inner);
    EXPECT_EQ (ObjectSpaceProvider::get (inner, true), &outer);
}

TEST (ObjectSpaceProviderTest, TheNearestProviderAboveWins)
{
    SpaceHolder outer, inner;
    Shape middle;
    TestInteger leaf;
    inner.setParent (&outer);
    middle.setParent (&inner);
    leaf.setParent (&middle);
    EXPECT_EQ (ObjectSpaceProvider::get (leaf, false), &inner);
    EXPECT_EQ (ObjectSpaceProvider::get (leaf, true), &inner);
}

TEST (ObjectSpaceProviderTest, NoProviderAboveGivesNull)
{
    Shape top;
    TestInteger leaf;
    leaf.setParent (&top);
    EXPECT_EQ (ObjectSpaceProvider::get (leaf, false), nullptr);
    EXPECT_EQ (ObjectSpaceProvider::getSpaceByName (leaf, "Scene"), nullptr);
}

TEST (ObjectSpaceProviderTest, SpaceByNameAsksTheNearestProviderOfTheObject)
{
    ObjectSpace scene ("Scene"), settings ("Settings");
    SpaceHolder holder;
    holder.spaces = { &scene, &settings };
    Shape child;
    child.setParent (&holder);
    EXPECT_EQ (ObjectSpaceProvider::getSpaceByName (child, "Settings"), &settings);
    EXPECT_EQ (ObjectSpaceProvider::getSpaceByName (holder, "Scene"), &scene);
    EXPECT_EQ (ObjectSpaceProvider::getSpaceByName (child, "Missing"), nullptr);
}

TEST (ObjectSpaceProviderTest, TheDefaultAnswerIsTheNextProviderAbove)
{
    ObjectSpace scene ("Scene");
    SpaceHolder holder;
    holder.spaces = { &scene };
    Shape middle;
    ForwardingProvider forwarding;
    middle.setParent (&holder);
    forwarding.setParent (&middle);
    EXPECT_EQ (ObjectSpaceProvider::get (forwarding, false), &forwarding);
    EXPECT_EQ (forwarding.getSpaceByName ("Scene"), &scene);
    EXPECT_EQ (ObjectSpaceProvider::getSpaceByName (forwarding, "Scene"), &scene);
}

TEST (ObjectSpaceProviderTest, TheDefaultAnswerAtTheTopIsNull)
{
    ForwardingProvider top;
    EXPECT_EQ (top.getSpaceByName ("Scene"), nullptr);
}

TEST (ObjectSpaceProviderTest, AProviderThatIsNoObjectFindsNothingByDefault)
{
    DetachedProvider provider;
    EXPECT_EQ (provider.getSpaceByName ("Scene"), nullptr);
    EXPECT_EQ (ObjectSpaceProvider::getSpaceByName (&provider, "Scene"), nullptr);
}

TEST (ObjectSpaceProviderTest, ANullProviderGivesANullSpace)
{
    EXPECT_EQ (ObjectSpaceProvider::getSpaceByName (static_cast<const ObjectSpaceProvider*> (nullptr), "Scene"), nullptr);
}
