#include "PointerTestSupport.h"

using namespace tov;
using namespace tov::test;

namespace
{
/** A document of nodes that own each other as a tree (first child, next sibling) and point
    at each other at random, cycles included. */
class WeakPointerRoundTripTest : public PointerTest
{
protected:
    static constexpr int numNodes = 400;

    juce::TemporaryFile file { ".txt" };

    Node* buildDocument (NamedSpaces::Space& space)
    {
        juce::Random random (1234);
        Node* root = static_cast<Node*> (space.getRootObject());
        std::vector<Node*> nodes { root };
        while ((int) nodes.size() < numNodes)
        {
            Node* parent = nodes[(size_t) random.nextInt ((int) nodes.size())];
            Node* node = makeNode ("node " + juce::String ((int) nodes.size()), random.nextInt (100));
            // The new node becomes the parent's first child; the former first child its sibling.
            Object* former = parent->child.release();
            node->sibling.set (static_cast<Node*> (former));
            parent->child.set (node);
            nodes.push_back (node);
        }
        for (auto* node : nodes)
            node->link.set (nodes[(size_t) random.nextInt (numNodes)]);
        return root;
    }

    /** Every node of the space by identifier, with the identifier of what its link points at. */
    static std::map<UniqueIdentifier, UniqueIdentifier> linksOf (const ObjectSpace& space)
    {
        std::vector<ObjectSpace::ObjectDescription> descriptions;
        space.getObjectDescriptions (descriptions, &Node::staticClass, true);
        std::map<UniqueIdentifier, UniqueIdentifier> links;
        for (auto& description : descriptions)
        {
            auto* node = static_cast<Node*> (space.getObject (std::get<0> (description)));
            auto* target = node->link.get();
            links[std::get<0> (description)] = target != nullptr ? target->getUniqueIdentifier() : UniqueIdentifier();
        }
        return links;
    }
};
} // namespace

TEST_F (WeakPointerRoundTripTest, EveryWeakPointerFindsTheObjectOfTheSameIdentifierAfterLoading)
{
    auto& original = makeSpace ("document", makeNode ("root"));
    buildDocument (original);
    const auto links = linksOf (original);
    ASSERT_EQ (links.size(), (size_t) numNodes);
    ASSERT_EQ (std::count_if (links.begin(), links.end(), [] (auto& entry) { return entry.second.isNotNull(); }), numNodes);
    const auto text = original.getRootObject()->makeState()->saveToString();
    const auto hash = original.getRootObject()->computeHash();

    ToStringExecutionContext saving;
    ASSERT_TRUE (original.getRootObject()->saveToFile (saving, file.getFile()));
    spaces.remove ("document");

    juce::String messages;
    ToStringExecutionContext loading (messages);
    Node* root = makeNode ("");
    auto& loaded = makeSpace ("document", root);
    ASSERT_TRUE (root->loadFromFile (loading, file.getFile()));
    EXPECT_EQ (messages, "");

    EXPECT_EQ (linksOf (loaded), links);
    EXPECT_EQ (root->makeState()->saveToString(), text);
    EXPECT_EQ (root->computeHash(), hash);
}

TEST_F (WeakPointerRoundTripTest, PointersLoadedBeforeTheirSpaceResolveOnceItExists)
{
    auto& original = makeSpace ("document", makeNode ("root"));
    buildDocument (original);
    const auto links = linksOf (original);
    auto state = original.getRootObject()->makeState();
    spaces.remove ("document");

    Node* root = makeNode ("");
    ToStringExecutionContext loading;
    ASSERT_TRUE (root->loadFromState (loading, state));
    EXPECT_EQ (root->link.getIfAlreadyCached(), nullptr);
    auto& loaded = makeSpace ("document", root);
    EXPECT_EQ (linksOf (loaded), links);
}
