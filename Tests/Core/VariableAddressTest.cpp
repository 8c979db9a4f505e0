#include "Pointer/PointerTestSupport.h"
#include <Tov/Core/StateObjectExporter.h>

using namespace tov;
using namespace tov::test;

namespace
{
class VariableAddressTest : public PointerTest
{
protected:
    Node* root = makeNode ("root");
    NamedSpaces::Space& space = makeSpace ("scene", root);

    std::shared_ptr<State> parse (const juce::String& text)
    {
        ToStringExecutionContext context;
        return State::createFromStateString (context, text, "test");
    }
};

/** Saves the address alone, as the variables of a weak pointer would hold it. */
class AddressHolder : public Object
{
public:
    TOV_DECLARE_CLASS (AddressHolder, Object)
    VariableAddress address;
    void save (ObjectExporter& exporter) const override  { address.save (exporter); }
    bool load (ObjectImporter& importer) override        { return address.load (importer); }
};

TOV_BEGIN_CLASS (AddressHolder)
TOV_END_CLASS()
} // namespace

TEST_F (VariableAddressTest, AnAddressWithOnlyASpaceIsNotNull)
{
    VariableAddress address;
    EXPECT_TRUE (address.isNull());
    address.setSpace ("scene");
    EXPECT_FALSE (address.isNull());
    address.reset();
    EXPECT_TRUE (address.isNull());
}

TEST_F (VariableAddressTest, AnUnknownIdentifierGivesNullAndAMessageEndingInTheAddress)
{
    VariableAddress address;
    address.setSpace ("scene");
    address.setRootUniqueIdentifier (UniqueIdentifier (0xabc));
    juce::String reason;
    EXPECT_EQ (address.getObject (root, nullptr, &reason), nullptr);
    EXPECT_EQ (reason, "Could not find object @abc when resolving address scene @abc");
    EXPECT_TRUE (reason.endsWith (address.toString()));
}

TEST_F (VariableAddressTest, AddressesAMemberThroughItsRoot)
{
    Node* child = makeNode ("child");
    root->child.set (child);
    VariableAddress address;
    ASSERT_TRUE (address.setObject (&child->value, nullptr));
    EXPECT_EQ (address.getSpace(), "scene");
    EXPECT_EQ (address.getRootUniqueIdentifier(), child->getUniqueIdentifier());
    EXPECT_EQ (address.getPath().toString(), "value");
    EXPECT_EQ (address.getObject (root), &child->value);
}

TEST_F (VariableAddressTest, AnObjectOutsideASpaceHasNoAddress)
{
    Owned<Node> loose (makeNode ("loose"));
    VariableAddress address;
    EXPECT_FALSE (address.setObject (&loose->value, nullptr));
    EXPECT_TRUE (address.isNull());
    loose->setUniqueIdentifier (UniqueIdentifier (5));
    EXPECT_TRUE (address.setObject (&loose->value, &space));
    EXPECT_EQ (address.toString(), "scene @5.value");
}

TEST_F (VariableAddressTest, AnUnknownSpaceIsReported)
{
    VariableAddress address;
    address.setSpace ("elsewhere");
    address.setRootUniqueIdentifier (UniqueIdentifier (0x10));
    juce::String reason;
    EXPECT_EQ (address.getObject (root, nullptr, &reason), nullptr);
    EXPECT_EQ (reason, "Could not find space elsewhere when resolving address elsewhere @10");
}

TEST_F (VariableAddressTest, WithoutACurrentServiceNothingResolves)
{
    VariableAddress address (root);
    juce::String reason;
    EXPECT_EQ (address.getObject (root), root);
    std::thread other ([&] { address.getObject (root, nullptr, &reason); });
    other.join();
    EXPECT_EQ (reason, "Could not find current service");
}

TEST_F (VariableAddressTest, SavesAsSpaceIdentifierAndPath)
{
    Node* child = makeNode ("child");
    root->child.set (child);
    AddressHolder holder;
    holder.address.setObject (&child->value, nullptr);
    const auto identifier = child->getUniqueIdentifier().to64BitsHexadecimalString();
    auto state = StateObjectExporter::make (holder, 0, false);
    EXPECT_EQ (state->saveToString(), "{\"scene\", -> " + identifier + ", \"value\"}\n");

    AddressHolder loaded;
    ToStringExecutionContext context;
    ASSERT_TRUE (loaded.loadFromState (context, state));
    EXPECT_EQ (loaded.address, holder.address);
}

TEST_F (VariableAddressTest, ALoneIdentifierSavesAsItself)
{
    AddressHolder holder;
    holder.address.setRootUniqueIdentifier (UniqueIdentifier (0x42));
    EXPECT_EQ (StateObjectExporter::make (holder, 0, false)->saveToString(), "-> @42\n");
    AddressHolder loaded;
    ToStringExecutionContext context;
    ASSERT_TRUE (loaded.loadFromState (context, parse ("-> @42")));
    EXPECT_EQ (loaded.address.getRootUniqueIdentifier(), UniqueIdentifier (0x42));
}

TEST_F (VariableAddressTest, LoadingAnEmptyListFails)
{
    AddressHolder loaded;
    juce::String messages;
    ToStringExecutionContext context (messages);
    EXPECT_FALSE (loaded.loadFromState (context, parse ("{}")));
    EXPECT_EQ (messages, "Error: No variables (in VariableAddress::load)\n");
}

TEST_F (VariableAddressTest, AClonedAddressMasksItsIdentifier)
{
    VariableAddress source;
    source.setSpace ("scene");
    source.setRootUniqueIdentifier (UniqueIdentifier (0xf0));
    source.getPath().addChildPath ("value");
    auto& copySpace = spaces.add ("copy");
    VariableAddress clone;
    clone.setCloned (source, copySpace, 0xff);
    EXPECT_EQ (clone.toString(), "copy @f.value");
}

TEST_F (VariableAddressTest, OrdersBySpaceThenIdentifierThenPath)
{
    VariableAddress a, b;
    a.setSpace ("a");
    b.setSpace ("b");
    a.setRootUniqueIdentifier (UniqueIdentifier (9));
    b.setRootUniqueIdentifier (UniqueIdentifier (1));
    EXPECT_TRUE (a < b);
    b.setSpace ("a");
    EXPECT_TRUE (b < a);
}

TEST_F (VariableAddressTest, NothingResolvesOnceTheProgramStopped)
{
    VariableAddress address (root);
    ASSERT_TRUE (program.startProgram());
    program.stopProgram();
    EXPECT_EQ (address.getObject (root), nullptr);
}
