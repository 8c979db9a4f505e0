#include "MirroringTestSupport.h"
#include "Support/TestValues.h"
#include <Tov/Core/StateObjectExporter.h>
#include <mutex>

using namespace tov;
using namespace tov::test;

// A source and its mirror on two service threads, with the real period: each space is touched
// by its own thread only, and what the test compares is the text each thread writes down.
namespace
{
/** A service on a thread of its own whose one peer holds a document space; after each pass it
    writes down the text of its document. */
class DocumentService : public HistoryService
{
public:
    DocumentService (const juce::String& name, int64_t identifier) : peer (new Integer (identifier))
    {
        this->name.set (name, false);
        peers = { &peer };
        onPostUpdated = [this] { writeDownText(); };
    }

    ~DocumentService() override                     { stopService (5000); peers.clear(); }

    juce::String getText() const
    {
        const std::lock_guard<std::mutex> scopedLock (lock);
        return text;
    }

    EditorPeer peer;

private:
    mutable std::mutex lock;
    juce::String text;

    void writeDownText()
    {
        auto* root = peer.document.getRootObject();
        const auto newText = root != nullptr ? StateObjectExporter::make (*root, 0, true)->saveToString() : juce::String();
        const std::lock_guard<std::mutex> scopedLock (lock);
        text = newText;
    }
};

class MirroringThreadTest : public ::testing::Test
{
protected:
    TestProgram program;
    bool libraryIsThere = (ensureMirroringTestLibrary(), true);
    DocumentService source { "Source", 1 };
    DocumentService mirror { "Mirror", 2 };
    std::atomic<int> numEditsLeft { 0 };
    juce::Random random { 7 };

    /** Some edits in each pass of the source's thread until none is left. */
    void editOnSourceThread()
    {
        source.onUpdated = [this]
        {
            auto& space = source.peer.document;
            if (space.getRootObject() == nullptr)
            {
                auto* document = static_cast<Document*> (Document::staticClass.createObject());
                space.setRootObject (document, true);
            }
            auto& document = *static_cast<Document*> (space.getRootObject());
            for (int i = 0; i < 5 && numEditsLeft > 0; ++i, --numEditsLeft)
                edit (document);
            return true;
        };
    }

    void edit (Document& document)
    {
        switch (random.nextInt (5))
        {
            case 0:  document.count.set (random.nextInt (1000)); break;
            case 1:  document.title.set ("title " + juce::String (random.nextInt (100))); break;
            case 2:  document.items.append (TransactionTest::makeItem ("item", random.nextInt (50))); break;
            case 3:  if (document.items.size() > 0) document.items.remove ((size_t) random.nextInt ((int) document.items.size())); break;
            default: if (document.items.size() > 0) document.items.get ((size_t) random.nextInt ((int) document.items.size()))->value.set (random.nextInt (50)); break;
        }
    }
};
} // namespace

TEST_F (MirroringThreadTest, AMirrorOnAnotherThreadConvergesOnTheSourceAfterTheEditsStop)
{
    numEditsLeft = 2000;
    editOnSourceThread();
    // Asked on the mirror's thread, which its peer belongs to, once the source has a document:
    // the request travels through the peers' queues, and the snapshot is loaded there too.
    std::atomic<int> requests { 0 };
    mirror.onUpdated = [this, &requests]
    {
        if (requests == 0 && source.getText().isNotEmpty())
            requests = mirror.peer.asyncRequestMirroringFrom (*source.peer.getIncomingMessageTarget()) ? 1 : -1;
        return true;
    };
    ASSERT_TRUE (source.startService (false));
    ASSERT_TRUE (mirror.startService (false));
    ASSERT_TRUE (mirror.waitFor ([&requests] { return requests != 0; }));
    ASSERT_EQ (requests, 1);
    EXPECT_TRUE (mirror.waitFor ([this] { return numEditsLeft == 0 && mirror.getText() == source.getText(); }, 60000))
        << "source:\n" << source.getText() << "\nmirror:\n" << mirror.getText();
    EXPECT_TRUE (mirror.getText().contains ("'Document @1"));
}
