#include "MessageTestSupport.h"
#include "Support/DeletionWatcher.h"
#include "Support/RecordingExecutionContext.h"
#include <Tov/Core/State.h>

using namespace tov;
using namespace tov::test;

namespace
{
class EnvelopWireTest : public MessageTest
{
protected:
    static Envelop* makeEnvelop (int64_t sender, int numMessages)
    {
        auto* envelop = new Envelop (makeIdentifier (sender), nullptr);
        for (int i = 0; i < numMessages; ++i)
            envelop->addMessage (new RecordingMessage ("m" + juce::String (i)));
        return envelop;
    }

    static juce::MemoryBlock save (const Envelop& envelop, int64_t receiver)
    {
        ObjectOwnedPointer receiverPointer;
        receiverPointer.set (makeIdentifier (receiver), false);
        juce::MemoryBlock block;
        EXPECT_TRUE (envelop.saveToMemoryBlock (receiverPointer, block));
        return block;
    }

    static juce::MemoryBlock blockOf (const State& root)
    {
        juce::MemoryBlock block;
        juce::MemoryOutputStream output (block, false);
        EXPECT_TRUE (root.toBinary (output));
        output.flush();
        return block;
    }
};
} // namespace

TEST_F (EnvelopWireTest, AnEnvelopComesBackWithItsSenderMessagesAndReceiver)
{
    Owned<Envelop> sent (makeEnvelop (9, 3));
    sent->stampPostingTime();
    const auto block = save (*sent, 4);

    tov::testing::RecordingExecutionContext context;
    ObjectOwnedPointer receiver;
    Owned<Envelop> received (Envelop::createFromMemoryBlock (context, block, receiver));
    ASSERT_NE (received, nullptr);
    EXPECT_EQ (received->getSenderIdentifier()->toString(), "9");
    EXPECT_EQ (received->getSenderIdentifier()->getClass(), &Integer::staticClass);
    EXPECT_DOUBLE_EQ (received->getPostingTimeInMs(), sent->getPostingTimeInMs());
    ASSERT_EQ (received->getNumMessages(), 3u);
    for (size_t i = 0; i < 3; ++i)
        EXPECT_EQ (static_cast<RecordingMessage*> (received->getMessage (i))->text.get(), "m" + juce::String ((int) i));
    ASSERT_NE (receiver.get(), nullptr);
    EXPECT_EQ (receiver->toString(), "4");
}

TEST_F (EnvelopWireTest, TheBlockIsOneStateWithEnvelopThenReceiver)
{
    Owned<Envelop> sent (makeEnvelop (9, 1));
    const auto block = save (*sent, 4);

    juce::MemoryInputStream input (block, false);
    State root;
    juce::String error;
    ASSERT_TRUE (root.loadFromBinary (input, error)) << error;
    ASSERT_EQ (root.getNumVariables(), 2u);
    EXPECT_EQ (root.getVariableName (0), "envelop");
    EXPECT_EQ (root.getVariableName (1), "receiver");
    EXPECT_TRUE (State::equals (root.getVariableState (0), sent->makeState (false, true)));
}

TEST_F (EnvelopWireTest, SavingAppendsToTheBlock)
{
    Owned<Envelop> sent (makeEnvelop (9, 1));
    juce::MemoryBlock block ("head", 4);
    ObjectOwnedPointer receiver;
    ASSERT_TRUE (sent->saveToMemoryBlock (receiver, block));
    EXPECT_EQ (juce::String::fromUTF8 ((const char*) block.getData(), 4), "head");
    EXPECT_GT (block.getSize(), 4u);
}

TEST_F (EnvelopWireTest, AReceivedEnvelopWithoutSenderIsDropped)
{
    Owned<Envelop> sent (new Envelop (nullptr, new RecordingMessage ("a")));
    const auto block = save (*sent, 4);
    tov::testing::RecordingExecutionContext context;
    ObjectOwnedPointer receiver;
    EXPECT_EQ (Envelop::createFromMemoryBlock (context, block, receiver), nullptr);
}

TEST_F (EnvelopWireTest, AMissingReceiverIsAnError)
{
    State root;
    root.addVariable ("envelop", Owned<Envelop> (makeEnvelop (9, 1))->makeState (false, true));
    tov::testing::RecordingExecutionContext context;
    ObjectOwnedPointer receiver;
    EXPECT_EQ (Envelop::createFromMemoryBlock (context, blockOf (root), receiver), nullptr);
    EXPECT_EQ (context.errors, (std::vector<juce::String> { "Missing envelop or receiver state" }));
}

TEST_F (EnvelopWireTest, ADamagedBlockReportsTheParsersError)
{
    juce::MemoryBlock block ("garbage!", 8);
    tov::testing::RecordingExecutionContext context;
    Envelop envelop;
    ObjectOwnedPointer receiver;
    EXPECT_FALSE (envelop.loadFromMemoryBlock (context, block, receiver));
    EXPECT_EQ (context.errors.size(), 1u);
}

TEST_F (EnvelopWireTest, IncomingMessagesAreLoggedExceptTheFrequentKinds)
{
    Owned<Envelop> sent (makeEnvelop (9, 1));
    sent->addMessage (new RecordingDiffMessage ("document", "d"));
    const auto block = save (*sent, 4);
    StreamCapture capture (std::cerr);
    tov::testing::RecordingExecutionContext context;
    ObjectOwnedPointer receiver;
    Owned<Envelop> received (Envelop::createFromMemoryBlock (context, block, receiver));
    ASSERT_NE (received, nullptr);
    EXPECT_EQ (juce::String (capture.get()), "== NETWORK == Process incoming message Recording m0\n"
                                  "== NETWORK == Process incoming message " + received->getMessage (1)->toString() + "\n");
}

TEST_F (EnvelopWireTest, ANativePointerFromOutsideIsRefusedBeforeAnythingLoads)
{
    auto receiverState = std::make_shared<State>();
    receiverState->addVariable ("target", std::make_shared<State> ((const Object*) 0x1234));
    State root;
    root.addVariable ("envelop", Owned<Envelop> (makeEnvelop (9, 1))->makeState (false, true));
    root.addVariable ("receiver", receiverState);
    tov::testing::RecordingExecutionContext context;
    ObjectOwnedPointer receiver;
    EXPECT_EQ (Envelop::createFromMemoryBlock (context, blockOf (root), receiver), nullptr);
    EXPECT_EQ (context.errors, (std::vector<juce::String> { "Native pointer in an envelop from outside the process" }));
    EXPECT_EQ (receiver.get(), nullptr);
}
