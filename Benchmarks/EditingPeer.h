#pragma once

#include <Tov/Core/Library.h>
#include <Tov/Core/ObjectSpace.h>
#include <Tov/Message/Envelop.h>
#include <Tov/Message/MessageTarget.h>
#include <Tov/Message/Peer.h>
#include <Tov/Message/Transaction/History.h>
#include "BenchmarkService.h"

// What the benchmarks of undoable edits share: a peer with one space, a receiver that drops
// what it is sent, and the service of main's thread that gives every edit one history.
namespace tov::benchmarks
{

/** The editing peer, with its one space, where the history's transactions find their peer. */
class EditorPeer : public Peer
{
public:
    TOV_DECLARE_CLASS (EditorPeer, Peer)

    EditorPeer() : Peer (new Integer (1))            { document.setParent (this); }

    ObjectSpace document { "Document" };
};

/** Where the edits go: dropped at once, as a connection would take them off the thread. */
class DroppingTarget : public MessageTarget
{
public:
    TOV_DECLARE_CLASS (DroppingTarget, MessageTarget)

    bool handleEnvelop (Envelop* envelop) override
    {
        envelop->deleteThis();
        return true;
    }
};

/** The service of main's thread, which gives every edit the one history. */
class EditingService : public BenchmarkService
{
public:
    History* getHistory (const Object&, const ObjectSpace*) const override  { return history; }
    void getPeers (std::vector<Peer*>& result) override                   { result.push_back (peer); }

    History* history = nullptr;
    Peer* peer = nullptr;
};

/** A peer whose space holds the root, with transactions sent to a dropping receiver and kept in
    a history that the service gives while this lives. */
struct EditedDocument
{
    EditorPeer peer;
    DroppingTarget receiver;
    History history;
    EditingService& service;

    EditedDocument (EditingService& service, Object* root);
    ~EditedDocument();
};

/** Adds the classes above to the library. */
void addEditingClasses (NamedLibrary& library);

} // namespace tov::benchmarks
