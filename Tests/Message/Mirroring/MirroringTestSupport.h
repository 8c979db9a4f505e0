#pragma once

#include "Message/Transaction/TransactionTestSupport.h"
#include <Tov/Message/Mirroring/DiffObjectSpaceMessage.h>
#include <Tov/Message/Mirroring/MirrorerObjectSpaceView.h>
#include <memory>
#include <vector>

// A source space and its mirror, in one process and one service on the test's thread.
namespace tov::test
{

/** An item that holds items, and a list of items that is not mirrored. */
class Folder : public Item
{
public:
    TOV_DECLARE_CLASS (Folder, Item)

    OwnedVector<Item> children;
    OwnedVector<Item> scratch;
};

/** Makes the classes of these tests known to the library tree; safe to call more than once. */
void ensureMirroringTestLibrary();

/** The envelops taken out of a peer's queue, deleted with the list. */
class TakenEnvelops
{
public:
    ~TakenEnvelops();
    std::vector<Envelop*> envelops;

    size_t size() const noexcept                     { return envelops.size(); }
    /** The first message of the envelop as a diff, or null. */
    DiffObjectSpaceMessage* getDiff (size_t index) const;
};

/** A running program with a service on the test's thread and two peers: the source (identifier
    1), whose space "Document" holds a document, and the mirror (identifier 2), whose space of
    the same name is empty until it asks for a copy. The service's log lines are kept. */
class MirroringTestBase : public ::testing::Test
{
protected:
    TestProgram program;
    bool libraryIsThere = (ensureMirroringTestLibrary(), true);
    /** Before the service, which writes its last lines as it stops. */
    std::vector<juce::String> lines;
    HistoryService service;
    bool serviceRuns = service.startService (true);
    EditorPeer* source = nullptr;
    EditorPeer* mirror = nullptr;
    Document* document = nullptr;

    void SetUp() override;
    void TearDown() override;

    ObjectSpace& sourceSpace()                       { return source->document; }
    ObjectSpace& mirrorSpace()                       { return mirror->document; }
    MirrorerObjectSpaceView* mirrorer()              { return sourceSpace().getMirrorer(); }
    Document* mirrored()                             { return dynamic_cast<Document*> (mirrorSpace().getRootObject()); }

    /** The source's identifier, as mirrors see it. */
    static Integer& sourceIdentifier();
    /** The mirror's identifier, as a mirroring target. */
    static Integer& mirrorIdentifier();

    /** Makes the mirror peer a target of the source space, without a snapshot. */
    void addMirrorAsTarget();
    /** The diffs in the mirror's queue, taken out unprocessed. */
    std::unique_ptr<TakenEnvelops> takeMirrorEnvelops();

    /** The mirror asks for the copy, and both peers run what they were sent until it is there. */
    void requestMirror();
    /** The source sends what changed at once, and the mirror applies it. */
    void sync();
    /** The text of the space's root, deep, with identifiers, or "null". */
    static juce::String describe (const ObjectSpace& space);
    /** An item appended to a vector of the source document. */
    static Item& appendItem (OwnedVector<Item>& vector, const juce::String& name, int64_t value);
    /** A folder with that identifier appended to the document's items. */
    Folder& appendFolder (const juce::String& name, UniqueIdentifier identifier);
};

} // namespace tov::test
