#pragma once

#include "Support/LogTestSupport.h"
#include "Support/TestService.h"
#include <Tov/Atomic/Atomic.h>
#include <Tov/Container/OwnedVector.h>
#include <Tov/Core/ObjectSpace.h>
#include <Tov/Message/Envelop.h>
#include <Tov/Message/MessageTarget.h>
#include <Tov/Message/Peer.h>
#include <Tov/Message/RemoteCall/ThreadAwareEnvelopQueueMessageTarget.h>
#include <Tov/Message/Transaction/History.h>
#include <Tov/Pointer/OwnedPointer.h>
#include <Tov/Pointer/WeakPointer.h>
#include <gtest/gtest.h>
#include <vector>

// Documents edited under transactions, by a peer that sends them to a recording target.
namespace tov::test
{

/** An element of a document. */
class Item : public Object
{
public:
    TOV_DECLARE_CLASS (Item, Object)

    String name;
    Integer value;
    Real amount;
};

/** A document: values, two lists of items, and an owned item. */
class Document : public Object
{
public:
    TOV_DECLARE_CLASS (Document, Object)

    String title;
    Integer count;
    Real level;
    OwnedVector<Item> items;
    OwnedVector<Item> archive;
    OwnedPointer<Item> featured;
    WeakPointer<Item> link;
    Integer hidden;
};

/** A peer holding one space, "Document". */
class EditorPeer : public Peer
{
public:
    TOV_DECLARE_CLASS (EditorPeer, Peer)

    explicit EditorPeer (Object* identifier = nullptr) : Peer (identifier)  { document.setParent (this); }

    ObjectSpace document { "Document" };
};

/** A target that keeps what it is sent. */
class RecordingTarget : public MessageTarget
{
public:
    TOV_DECLARE_CLASS (RecordingTarget, MessageTarget)

    RecordingTarget() = default;
    ~RecordingTarget() override                      { clear(); }

    bool handleEnvelop (Envelop* envelop) override   { envelops.push_back (envelop); return true; }
    void clear();
    /** The classes of the messages of every envelop, in order, "|" between envelopes. */
    juce::String describe() const;

    std::vector<Envelop*> envelops;
};

/** A test service that gives every edit its one history, when it has one. */
class HistoryService : public TestService
{
public:
    History* getHistory (const Object&, const ObjectSpace*) const override  { return history; }
    void getPeers (std::vector<Peer*>& result) override  { result.insert (result.end(), peers.begin(), peers.end()); }

    History* history = nullptr;
    std::vector<Peer*> peers;
};

/** Makes the classes of these tests known to the library tree; safe to call more than once. */
void ensureTransactionTestLibrary();

/** A running program with a service on the test's thread, and a peer whose space "Document"
    holds a document, with transactions sent to a recording target and kept in a history. */
class TransactionTest : public ::testing::Test
{
public:
    /** An item, not yet anywhere. */
    static Item* makeItem (const juce::String& name, int64_t value = 0);

protected:
    TestProgram program;
    bool libraryIsThere = (ensureTransactionTestLibrary(), true);
    HistoryService service;
    bool serviceRuns = service.startService (true);
    RecordingTarget receiver;
    History history;
    EditorPeer* editor = nullptr;
    Document* document = nullptr;

    void SetUp() override;
    void TearDown() override;

    ObjectSpace& space()                             { return editor->document; }
    /** The document's state, deep, with identifiers. */
    std::shared_ptr<State> documentState() const;
    /** The descriptions of the last history entry's children, "|" between them. */
    juce::String describeLastTransaction() const;
};

} // namespace tov::test
