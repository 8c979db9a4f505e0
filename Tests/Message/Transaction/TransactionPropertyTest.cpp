#include "TransactionTestSupport.h"
#include <Tov/Message/RemoteCall/ThreadAwareEnvelopQueueMessageTarget.h>
#include <Tov/Core/StateObjectExporter.h>
#include <Tov/Message/Transaction/ScopedTransaction.h>

namespace tov::test
{
namespace
{
/** Random edits of a document, each step one transaction: numbers, strings, items created,
    deleted and moved between the two lists, the owned item replaced or removed, and scopes
    opened inside scopes. */
class RandomEditor
{
public:
    RandomEditor (Document& document, juce::int64 seed) : document (document), random (seed) {}

    void step()
    {
        ScopedTransaction transaction ("Step", document, true);
        edit();
        if (random.nextInt (4) == 0)
        {
            ScopedTransaction inner ("Inner", document, true);
            edit();
        }
    }

private:
    Document& document;
    juce::Random random;
    int nextName = 0;

    OwnedVector<Item>& pickList()                    { return random.nextBool() ? document.items : document.archive; }

    void edit()
    {
        auto& list = pickList();
        switch (random.nextInt (9))
        {
            case 0: document.count.set (random.nextInt (5)); break;
            case 1: document.title.set (juce::String::charToString ((juce::juce_wchar) ('a' + random.nextInt (3)))); break;
            case 2: if (list.size() > 0) list[(size_t) random.nextInt ((int) list.size())]->value.set (random.nextInt (4)); break;
            case 3: if (list.size() > 0) list[(size_t) random.nextInt ((int) list.size())]->name.set ("n" + juce::String (random.nextInt (3))); break;
            case 4: list.append (makeItem()); break;
            case 5: if (list.size() > 0) list.remove ((size_t) random.nextInt ((int) list.size())); break;
            case 6: document.featured.set (random.nextBool() ? makeItem() : nullptr); break;
            case 7: if (auto* featured = document.featured.get()) featured->value.set (random.nextInt (4)); break;
            default: move (list); break;
        }
    }

    // To the other list, as a copy of the same content: the source object goes.
    void move (OwnedVector<Item>& from)
    {
        if (from.size() == 0)
            return;
        auto& to = &from == &document.items ? document.archive : document.items;
        const size_t index = (size_t) random.nextInt ((int) from.size());
        auto* copy = makeItem();
        from[index]->copyTo (*copy);
        from.remove (index);
        to.append (copy);
    }

    Item* makeItem()
    {
        auto* item = static_cast<Item*> (Item::staticClass.createObject());
        item->name.set ("i" + juce::String (nextName++), false);
        return item;
    }
};
} // namespace

using TransactionPropertyTest = TransactionTest;

TEST_F (TransactionPropertyTest, UndoingEverythingGivesBackTheFirstStateAndRedoingTheLast)
{
    constexpr int numSequences = 1000, numSteps = 12;
    for (int sequence = 0; sequence < numSequences; ++sequence)
    {
        const juce::int64 seed = 0x5eed0000 + sequence;
        SCOPED_TRACE ("seed " + juce::String::toHexString (seed).toStdString());
        space().deleteRootObject();
        document = static_cast<Document*> (Document::staticClass.createObject());
        space().setRootObject (document, true);
        history.clear ("Start");

        RandomEditor editor (*document, seed);
        std::vector<std::shared_ptr<State>> states { documentState() };
        std::vector<uint64_t> hashes { document->computeHash() };
        for (int i = 0; i < numSteps; ++i)
        {
            editor.step();
            if (history.getNumTransactions() == states.size() + 1)
            {
                states.push_back (documentState());
                hashes.push_back (document->computeHash());
            }
        }
        ASSERT_EQ (history.getNumTransactions(), states.size()) << "failing seed " << seed;

        while (history.canUndo())
        {
            history.undo();
            ASSERT_TRUE (State::equals (documentState(), states[history.getPosition()]))
                << "failing seed " << seed << " after undo to " << history.getPosition() << "\n"
                << documentState()->toString() << "\n" << states[history.getPosition()]->toString();
            ASSERT_EQ (document->computeHash(), hashes[history.getPosition()]) << "failing seed " << seed;
        }
        while (history.canRedo())
        {
            history.redo();
            ASSERT_TRUE (State::equals (documentState(), states[history.getPosition()]))
                << "failing seed " << seed << " after redo to " << history.getPosition();
        }
        ASSERT_EQ (document->computeHash(), hashes.back()) << "failing seed " << seed;
        receiver.clear();
    }
}

//==============================================================================
/** The same document on a second peer that receives what the editor sends. */
class TransactionEndToEndTest : public TransactionTest
{
protected:
    EditorPeer* executor = nullptr;

    void SetUp() override
    {
        executor = new EditorPeer (new Integer (2));
        TransactionTest::SetUp();
        space().disableTransactions();
        space().enableTransactions (*executor->getIncomingMessageTarget(), *editor->getIncomingMessageTarget());
        document->items.append (makeItem ("first", 1), false);
        auto* copy = Object::createFromState (service.context, documentState());
        ASSERT_NE (copy, nullptr);
        executor->document.setRootObject (copy, true);
        history.clear ("Start");
    }

    void TearDown() override
    {
        TransactionTest::TearDown();
        delete executor;
    }

    std::shared_ptr<State> executorState()
    {
        executor->processIncomingMessages (service.context);
        return StateObjectExporter::make (*executor->document.getRootObject(), 0, true);
    }
};

TEST_F (TransactionEndToEndTest, TheReceivingPeerFollowsEditsUndoAndRedo)
{
    ASSERT_TRUE (State::equals (executorState(), documentState()));
    {
        ScopedTransaction transaction ("Edit", *document, true);
        document->count.set (3);
        document->items[0]->value.set (9);
        document->items.append (makeItem ("second", 2));
        document->archive.append (makeItem ("third", 3));
    }
    const auto edited = documentState();
    EXPECT_TRUE (State::equals (executorState(), edited));
    {
        ScopedTransaction transaction ("Delete", *document, true);
        document->items.remove ((size_t) 0);
    }
    EXPECT_TRUE (State::equals (executorState(), documentState()));

    history.undo();
    EXPECT_TRUE (State::equals (executorState(), edited));
    history.undo();
    EXPECT_TRUE (State::equals (executorState(), documentState()));
    EXPECT_EQ (document->items.size(), 1u);
    history.redo();
    history.redo();
    EXPECT_TRUE (State::equals (executorState(), documentState()));
}

} // namespace tov::test
