#pragma once

#include <Tov/Core/Library.h>
#include <Tov/Core/ObjectSpace.h>
#include <Tov/Message/Envelop.h>
#include <Tov/Message/MessageTarget.h>
#include <Tov/Message/Peer.h>
#include <Tov/Message/Transaction/History.h>
#include "BenchmarkProgram.h"
#include "BenchmarkService.h"
#include "MedianReporter.h"
#include "RandomInterleaving.h"

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

/** The whole of main for a benchmark of edits. It reads Google Benchmark's flags, adds a
    library of the document's classes and the classes above, and while a program of the name
    and the editing service exist (theService pointing to it), runs the benchmarks that
    registerBenchmarks adds and hands their medians to printTables. */
template <class... DocumentClasses, class RegisterBenchmarks, class PrintTables>
int runEditingBenchmarks (int argc, char** argv, const char* programName, EditingService*& theService,
                          RegisterBenchmarks&& registerBenchmarks, PrintTables&& printTables)
{
    if (! initializeWithRandomInterleaving (argc, argv))
        return 1;
    initializeTov()->addLibrary (createLibrary<DocumentClasses..., EditorPeer, DroppingTarget> ("Benchmark"));
    {
        BenchmarkProgram program (programName);
        EditingService service;
        theService = &service;
        registerBenchmarks();
        runWithMedianReporter (printTables);
        theService = nullptr;
    }
    deinitializeTov();
    return 0;
}

} // namespace tov::benchmarks
