#include <Tov/Atomic/Atomic.h>
#include <Tov/Container/OwnedVector.h>
#include <Tov/Core/Library.h>
#include <Tov/Core/ObjectExporter.h>
#include <Tov/Core/ObjectSpace.h>
#include <Tov/Core/StateObjectExporter.h>
#include <Tov/Message/Envelop.h>
#include <Tov/Message/InterprocessConnectionMessageTarget.h>
#include <Tov/Message/Mirroring/DiffObjectSpaceMessage.h>
#include <Tov/Message/Mirroring/MirrorerObjectSpaceView.h>
#include <Tov/Message/Mirroring/MirroringRequestAsyncCompletionRoutine.h>
#include <Tov/Message/Peer.h>
#include <Tov/Message/RemoteCall/ThreadAwareEnvelopQueueMessageTarget.h>
#include <Tov/Network/FrameReader.h>
#include <Tov/Standard/Program.h>
#include <Tov/Standard/StateObject.h>
#include "BenchmarkService.h"
#include "FarProcess.h"
#include "MedianReporter.h"
#include "PacedPeerService.h"
#include "PairedBenchmarks.h"
#include "Percentile.h"
#include "RawSocketPair.h"
#include <benchmark/benchmark.h>
#include <juce_data_structures/juce_data_structures.h>
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <utility>

// Mirroring of a document of 10,000 objects (a session of folders of tracks of clips), against
// juce::ValueTreeSynchroniser on a juce::ValueTree of the same shape, in the same run.
//
// - Latency over loopback: this program started again with --source owns the document and,
//   once mirrored, makes 2,000 edits at about 100 a second (10 ms apart, give or take 5). An
//   edit writes the time it is made (juce::Time::getMillisecondCounterHiRes, the monotonic clock
//   that both processes share) into the gain of one of 64 probe tracks in turn, so that each
//   edit survives the coalescing of a period as its own number; the source also writes the
//   time into the session's postedAt just before a pass sends a diff. This process mirrors the
//   document on a service thread of its own and, after each of its passes, reads
//   the probes: per edit, edit to application, edit to post (the wait for the period) and post
//   to application. Both services wait on their thread's event between passes; the source
//   wakes for its next edit and for the end of the mirroring period, never spins.
// - The first deep snapshot over loopback: the time from the request to the copy in place on
//   the mirror, for the first request and for five more after the edits.
// - In process, CPU times (Google Benchmark, interleaved at random): a period of 1 or 100
//   changed numbers, made into a diff, written and read in binary as a connection does, and
//   applied to a mirror space, against the same property changes sent by a
//   ValueTreeSynchroniser and applied with applyChange to a mirror tree; a deep snapshot made
//   as a mirroring request makes it, written and read in binary, and loaded as the request's
//   completion loads it, against ValueTree::writeToStream and readFromData.
// - Bytes on the wire: the frame (header included) of a diff of k changed numbers against the
//   frame of an empty diff, and the frames of the synchroniser's messages for the same changes.

namespace
{

constexpr int numFolders = 99, numTracksPerFolder = 20, numClipsPerTrack = 4;
constexpr int numTracks = numFolders * numTracksPerFolder;
constexpr int numProbes = 64;
constexpr int numEdits = 2000;
constexpr double editIntervalMilliseconds = 10.0, editJitterMilliseconds = 5.0;
constexpr double editsStartAfterMilliseconds = 1000.0;
constexpr int numLaterSnapshots = 5;
/** The period of Service::serviceUpdated. */
constexpr double mirroringPeriodSeconds = 0.05;
const char* const spaceName = "Document";
const char* const sourceName = "source";
const char* const mirrorName = "mirror";

using tov::benchmarks::makeName;
using tov::benchmarks::percentile;

double now()                                       { return juce::Time::getMillisecondCounterHiRes(); }

//==============================================================================
// The document: 1 session, 99 folders, 1,980 tracks and 7,920 clips, 10,000 objects.
class Clip : public tov::Object
{
public:
    TOV_DECLARE_CLASS (Clip, Object)

    tov::String name;
    tov::Integer start, length;
    tov::Real offset;
};

class Track : public tov::Object
{
public:
    TOV_DECLARE_CLASS (Track, Object)

    tov::String name;
    tov::Integer index;
    tov::Real gain, pan;
    tov::OwnedVector<Clip> clips;
};

class Folder : public tov::Object
{
public:
    TOV_DECLARE_CLASS (Folder, Object)

    tov::String name;
    tov::OwnedVector<Track> tracks;
};

class Session : public tov::Object
{
public:
    TOV_DECLARE_CLASS (Session, Object)

    tov::String name;
    tov::Real tempo;
    /** When the source last sent a diff, in milliseconds of the shared clock. */
    tov::Real postedAt;
    tov::OwnedVector<Folder> folders;
};

/** A peer whose one space holds the document. */
class DocumentPeer : public tov::Peer
{
public:
    TOV_DECLARE_CLASS (DocumentPeer, Peer)

    explicit DocumentPeer (Object* identifier = nullptr) : Peer (identifier)  { document.setParent (this); }

    tov::ObjectSpace document { spaceName };
};

TOV_BEGIN_CLASS (Clip)
    TOV_VARIABLE (name)
    TOV_VARIABLE (start)
    TOV_VARIABLE (length)
    TOV_VARIABLE (offset)
TOV_END_CLASS()

TOV_BEGIN_CLASS (Track)
    TOV_VARIABLE (name)
    TOV_VARIABLE (index)
    TOV_VARIABLE (gain)
    TOV_VARIABLE (pan)
    TOV_VARIABLE (clips)
TOV_END_CLASS()

TOV_BEGIN_CLASS (Folder)
    TOV_VARIABLE (name)
    TOV_VARIABLE (tracks)
TOV_END_CLASS()

TOV_BEGIN_CLASS (Session)
    TOV_VARIABLE (name)
    TOV_VARIABLE (tempo)
    TOV_VARIABLE (postedAt)
    TOV_VARIABLE (folders)
TOV_END_CLASS()

TOV_BEGIN_CLASS (DocumentPeer)
    TOV_VARIABLE (document)
TOV_END_CLASS()

// The values of both forms of the document.
juce::String trackName (int track)                  { return "Track " + juce::String (track + 1); }
juce::String clipName (int clip)                    { return "Take " + juce::String (clip % 9 + 1); }
double trackGain (int track)                        { return (track % 97 - 48) / 4.0; }
double trackPan (int track)                         { return (track % 129 - 64) / 64.0; }
int64_t clipStart (int clip)                        { return (int64_t) clip * 48000; }
int64_t clipLength (int clip)                       { return 1000 + clip % 4096; }
double clipOffset (int clip)                        { return (clip % 1000) / 1000.0; }

template <class ObjectClass>
ObjectClass* create()                               { return static_cast<ObjectClass*> (ObjectClass::staticClass.createObject()); }

Session* makeSession()
{
    auto* session = create<Session>();
    session->name.set ("Benchmark session", false);
    session->tempo.set (120.5, false);
    for (int f = 0, t = 0, c = 0; f < numFolders; ++f)
    {
        auto* folder = create<Folder>();
        folder->name.set ("Folder " + juce::String (f + 1), false);
        for (int i = 0; i < numTracksPerFolder; ++i, ++t)
        {
            auto* track = create<Track>();
            track->name.set (trackName (t), false);
            track->index.set (t, false);
            track->gain.set (trackGain (t), false);
            track->pan.set (trackPan (t), false);
            for (int j = 0; j < numClipsPerTrack; ++j, ++c)
            {
                auto* clip = create<Clip>();
                clip->name.set (clipName (c), false);
                clip->start.set (clipStart (c), false);
                clip->length.set (clipLength (c), false);
                clip->offset.set (clipOffset (c), false);
                track->clips.append (clip, false);
            }
            folder->tracks.append (track, false);
        }
        session->folders.append (folder, false);
    }
    return session;
}

/** An object is a node of its class, a scalar a property, a list of objects a node named after
    the list that holds their nodes. */
juce::ValueTree makeSessionTree()
{
    juce::ValueTree session ("Session", { { "name", "Benchmark session" }, { "tempo", 120.5 }, { "postedAt", 0.0 } });
    juce::ValueTree folders ("folders");
    for (int f = 0, t = 0, c = 0; f < numFolders; ++f)
    {
        juce::ValueTree folder ("Folder", { { "name", "Folder " + juce::String (f + 1) } });
        juce::ValueTree tracks ("tracks");
        for (int i = 0; i < numTracksPerFolder; ++i, ++t)
        {
            juce::ValueTree track ("Track", { { "name", trackName (t) }, { "index", t }, { "gain", trackGain (t) }, { "pan", trackPan (t) } });
            juce::ValueTree clips ("clips");
            for (int j = 0; j < numClipsPerTrack; ++j, ++c)
                clips.appendChild (juce::ValueTree ("Clip", { { "name", clipName (c) }, { "start", (juce::int64) clipStart (c) },
                                                              { "length", (juce::int64) clipLength (c) }, { "offset", clipOffset (c) } }), nullptr);
            track.appendChild (clips, nullptr);
            tracks.appendChild (track, nullptr);
        }
        folder.appendChild (tracks, nullptr);
        folders.appendChild (folder, nullptr);
    }
    session.appendChild (folders, nullptr);
    return session;
}

/** The i'th track of a sequence that visits every track once, spread over the document. */
int spreadTrack (int i)                             { return (i * 31) % numTracks; }

Track& getTrack (Session& session, int track)
{
    return *session.folders.get ((size_t) (track / numTracksPerFolder))->tracks.get ((size_t) (track % numTracksPerFolder));
}

juce::ValueTree getTrackTree (const juce::ValueTree& session, int track)
{
    return session.getChild (0).getChild (track / numTracksPerFolder).getChild (0).getChild (track % numTracksPerFolder);
}

//==============================================================================
/** A diff is due in this pass, and has something to send. */
bool diffGoesOut (const tov::MirrorerObjectSpaceView& mirrorer, double milliseconds)
{
    const double last = mirrorer.getLastUpdateTime();
    const bool due = last == -1.0 || milliseconds / 1000.0 >= last + mirroringPeriodSeconds;
    const auto* pending = mirrorer.getDiffMessage();
    return due && (! mirrorer.getChangedObjects().empty() || (pending != nullptr && ! pending->isEmpty()));
}

/** The far process: owns the document, and once mirrored makes the edits, one per pass at
    most. Its passes are those of Service::serviceUpdated, with one reading of the clock for the
    edit, the post's time and the mirroring update, so that postedAt changes in exactly the
    passes that send a diff and goes out in that diff. */
class SourceService : public tov::benchmarks::PacedPeerService<DocumentPeer>
{
public:
    SourceService() : PacedPeerService (sourceName, makeName (sourceName)) {}

protected:
    bool serviceStarted() override
    {
        if (! PacedPeerService::serviceStarted())
            return false;
        session = makeSession();
        peer.document.setRootObject (session, true);
        return true;
    }

    bool serviceUpdated() override
    {
        auto& context = getExecutionContext();
        processIncomingMessagesFromAllPeers (context);
        passTime = now();
        edit();
        if (auto* mirrorer = peer.document.getMirrorer(); mirrorer != nullptr && diffGoesOut (*mirrorer, passTime))
            session->postedAt.set (passTime);
        updateMirroringToAllPeers (passTime / 1000.0, mirroringPeriodSeconds);
        flushAsyncTriggers (context);
        return true;
    }

    /** Waits for the next edit or the end of the period when there is something to send, 10 ms
        at the most; a post to the peer wakes it earlier. */
    void servicePostUpdated() override
    {
        double wakeTime = passTime + 10.0;
        if (nextEditTime >= 0.0 && numEditsMade < numEdits)
            wakeTime = std::min (wakeTime, nextEditTime);
        if (auto* mirrorer = peer.document.getMirrorer(); mirrorer != nullptr && ! mirrorer->getChangedObjects().empty())
            wakeTime = std::min (wakeTime, (mirrorer->getLastUpdateTime() + mirroringPeriodSeconds) * 1000.0);
        const int milliseconds = (int) std::ceil (wakeTime - now());
        if (milliseconds > 0)
            tov::Program::letCurrentThreadWaitAccordingToPowerSaveMode (milliseconds);
    }

private:
    Session* session = nullptr;
    double passTime = 0.0, nextEditTime = -1.0;
    int numEditsMade = 0;
    juce::Random random { 20261125 };

    // The edits start a while after the mirror asked, so that none of them lands in the same
    // pass of the mirror as the snapshot, where it could not be told apart.
    void edit()
    {
        if (peer.document.getMirrorer() == nullptr || numEditsMade >= numEdits)
            return;
        if (nextEditTime < 0.0)
            nextEditTime = passTime + editsStartAfterMilliseconds;
        if (passTime < nextEditTime)
            return;
        getTrack (*session, spreadTrack (numEditsMade % numProbes)).gain.set (passTime);
        ++numEditsMade;
        nextEditTime = passTime + editIntervalMilliseconds + (random.nextDouble() * 2.0 - 1.0) * editJitterMilliseconds;
    }
};

int runSource()
{
    SourceService source;
    source.start();
    return tov::benchmarks::serveUntilKilled();
}

//==============================================================================
struct LatencySample
{
    double total, periodWait, postToApplication;
};

/** This process's mirror of the document, on a thread of its own. After each pass it reads
    the probes: a probe whose time changed is an edit applied in that pass. */
class MirrorService : public tov::benchmarks::PacedPeerService<DocumentPeer>
{
public:
    MirrorService() : PacedPeerService (mirrorName, makeName (mirrorName)) {}

    /** Asks the source for a copy in the service's next pass; snapshotsApplied counts it once
        it has replaced the one before. */
    void requestMirror (tov::MessageTarget& target)
    {
        source = &target;
        mirrorRequested = true;
        peer.getIncomingMessageTarget()->getThread()->notify();
    }

    /** Read by other threads once editsSeen or snapshotsApplied say they are complete. */
    std::vector<LatencySample> samples;
    std::vector<double> snapshotMilliseconds;
    tov::benchmarks::ArrivalCounter editsSeen, snapshotsApplied;

protected:
    bool serviceUpdated() override
    {
        Service::serviceUpdated();
        const double applied = now();
        readProbes (applied);
        if (mirrorRequested.exchange (false))
        {
            requestTime = applied;
            peer.asyncRequestMirroringFrom (*source);
        }
        return true;
    }

private:
    tov::MessageTarget* source = nullptr;
    std::atomic<bool> mirrorRequested { false };
    double requestTime = -1.0;
    const Session* seenSession = nullptr;
    double seenEditTimes[numProbes] {};

    void readProbes (double applied)
    {
        auto* session = dynamic_cast<Session*> (peer.document.getRootObject());
        if (session == nullptr)
            return;
        const bool newCopy = session != seenSession;
        for (int i = 0; i < numProbes; ++i)
        {
            const double editTime = getTrack (*session, spreadTrack (i)).gain.get();
            if (editTime == seenEditTimes[i])
                continue;
            seenEditTimes[i] = editTime;
            if (newCopy)
                continue;
            const double postedAt = session->postedAt.get();
            samples.push_back ({ applied - editTime, postedAt - editTime, applied - postedAt });
            editsSeen.add();
        }
        if (newCopy)
            copyArrived (*session, applied);
    }

    void copyArrived (const Session& session, double applied)
    {
        seenSession = &session;
        if (requestTime < 0.0)
            return;
        snapshotMilliseconds.push_back (applied - requestTime);
        requestTime = -1.0;
        snapshotsApplied.add();
    }
};

/** The mirror, connected to the far process. */
struct LoopbackMirror
{
    MirrorService mirror;
    tov::ProgramConnectionListener toProgram;
    tov::InterprocessConnection client;

    bool connect (int port)
    {
        mirror.start();
        if (port <= 0)
            return false;
        client.setListener (&toProgram);
        client.connect (tov::HostIdentifier ("127.0.0.1"), tov::NetworkAddress ("127.0.0.1", (unsigned int) port), 1000);
        return client.waitUntilIsConnected (20000);
    }

    ~LoopbackMirror()
    {
        mirror.stopService (5000);
        client.disconnect();
        client.setListener (nullptr);
    }

    tov::MessageTarget& getSource()
    {
        tov::String name;
        name.set (sourceName, false);
        return tov::InterprocessConnectionMessageTarget::getOrCreateThrough (client, name);
    }
};

void printLatencyRow (const char* title, const std::vector<LatencySample>& samples, double LatencySample::* part, const char* goal)
{
    std::vector<double> values;
    for (const auto& sample : samples)
        values.push_back (sample.*part);
    std::printf ("%-30s %8.2f %8.2f %8.2f   %s\n", title, percentile (values, 0.5), percentile (values, 0.99), percentile (values, 1.0), goal);
}

/** The edits' latencies and the snapshots' times over loopback; false when the far process
    could not be reached. */
bool runLoopback (int farPort)
{
    LoopbackMirror loopback;
    if (! loopback.connect (farPort))
    {
        std::printf ("Could not start the far process or connect to it\n");
        return false;
    }
    auto& mirror = loopback.mirror;
    auto& source = loopback.getSource();
    mirror.requestMirror (source);
    const bool mirrored = mirror.snapshotsApplied.waitFor (1, std::chrono::seconds (30));
    const bool allSeen = mirrored && mirror.editsSeen.waitFor (numEdits, std::chrono::seconds (120));
    for (int i = 0; allSeen && i < numLaterSnapshots; ++i)
    {
        mirror.requestMirror (source);
        if (! mirror.snapshotsApplied.waitFor (i + 2, std::chrono::seconds (30)))
            break;
    }
    mirror.stopService (5000);

    std::printf ("\nEdits over loopback, %zu of %d seen, about %.0f a second, %.0f ms period (ms)\n",
                 mirror.samples.size(), numEdits, 1000.0 / editIntervalMilliseconds, mirroringPeriodSeconds * 1000.0);
    std::printf ("%-30s %8s %8s %8s   %s\n", "", "median", "p99", "max", "goal");
    printLatencyRow ("edit to application", mirror.samples, &LatencySample::total, "median <= 35, p99 <= 60");
    printLatencyRow ("  wait for the period", mirror.samples, &LatencySample::periodWait, "");
    printLatencyRow ("  post to application", mirror.samples, &LatencySample::postToApplication, "median < 2");

    const auto& snapshots = mirror.snapshotMilliseconds;
    std::vector<double> later (snapshots.begin() + std::min<size_t> (1, snapshots.size()), snapshots.end());
    std::printf ("\nDeep snapshot of 10,000 objects over loopback, request to copy in place (ms)\n");
    std::printf ("first %.1f, then median of %zu: %.1f\n", snapshots.empty() ? 0.0 : snapshots[0], later.size(), percentile (later, 0.5));
    std::fflush (stdout);
    return true;
}

//==============================================================================
// In process: the main thread's service, where the source and the mirror take their
// identifiers; its peers are driven by hand.
constexpr int frameHeaderBytes = (int) tov::FrameReader::headerSize;

/** A source space and its mirror, on the calling thread. A period's diff goes through the
    binary form of its envelop, as a connection writes and reads it, and is applied by the
    mirror's peer. */
struct MirroringContestant
{
    DocumentPeer source { makeName (sourceName) }, mirror { makeName (mirrorName) };
    Session* session = makeSession();
    tov::ExecutionContext& context = tov::ExecutionContext::get();
    tov::ObjectOwnedPointer receiver;
    double value = 0.0;

    MirroringContestant()
    {
        source.document.setRootObject (session, true);
        receiver.set (makeName (mirrorName), false);
        mirror.asyncRequestMirroringFrom (*source.getIncomingMessageTarget());
        source.processIncomingMessages (context);
        mirror.processIncomingMessages (context);
    }

    bool isMirrored() const                         { return mirror.document.getNumObjects() == source.document.getNumObjects(); }

    void changeNumbers (int count)
    {
        for (int i = 0; i < count; ++i)
            getTrack (*session, spreadTrack (i)).gain.set (++value);
    }

    /** The bytes of the frames that went out. */
    size_t sendAndApply()
    {
        source.updateObjectSpacesMirroring (-1.0, mirroringPeriodSeconds);
        std::vector<tov::Envelop*> sent;
        mirror.getIncomingMessageTarget()->takeEnvelops (sent);
        size_t numBytes = 0;
        for (auto* envelop : sent)
        {
            juce::MemoryBlock block;
            envelop->saveToMemoryBlock (receiver, block);
            envelop->deleteThis();
            numBytes += block.getSize() + frameHeaderBytes;
            tov::ObjectOwnedPointer readReceiver;
            mirror.getIncomingMessageTarget()->handleEnvelop (tov::Envelop::createFromMemoryBlock (context, block, readReceiver));
        }
        mirror.processIncomingMessages (context);
        return numBytes;
    }

    bool agrees (int count)
    {
        auto& copy = *static_cast<Session*> (mirror.document.getRootObject());
        for (int i = 0; i < count; ++i)
            if (getTrack (copy, spreadTrack (i)).gain.get() != getTrack (*session, spreadTrack (i)).gain.get())
                return false;
        return true;
    }
};

/** Sends each change of a tree as it is made, through a block as a connection would carry it,
    and applies it at once to the mirror tree. */
class Synchroniser : public juce::ValueTreeSynchroniser
{
public:
    Synchroniser (const juce::ValueTree& source, juce::ValueTree& mirrorTree) : ValueTreeSynchroniser (source), mirror (mirrorTree) {}

    /** The bytes of the frames sent since the last call. */
    size_t takeNumBytes()                           { return std::exchange (numBytes, 0); }

private:
    juce::ValueTree& mirror;
    juce::MemoryBlock wire;
    size_t numBytes = 0;

    void stateChanged (const void* change, size_t size) override
    {
        wire.replaceAll (change, size);
        numBytes += size + frameHeaderBytes;
        applyChange (mirror, wire.getData(), wire.getSize(), nullptr);
    }
};

struct SynchroniserContestant
{
    juce::ValueTree session = makeSessionTree(), mirror = session.createCopy();
    Synchroniser synchroniser { session, mirror };
    const juce::Identifier gain { "gain" };
    double value = 0.0;

    void changeNumbers (int count)
    {
        for (int i = 0; i < count; ++i)
            getTrackTree (session, spreadTrack (i)).setProperty (gain, ++value, nullptr);
    }

    /** The changes went out as they were made. */
    size_t sendAndApply()                           { return synchroniser.takeNumBytes(); }

    bool agrees (int count) const
    {
        for (int i = 0; i < count; ++i)
            if (getTrackTree (mirror, spreadTrack (i))[gain] != getTrackTree (session, spreadTrack (i))[gain])
                return false;
        return true;
    }
};

const int changesPerPeriod[] = { 1, 100 };
const char* const periodNames[] = { "Period1", "Period100" };

template <class Contestant>
void runPeriods (benchmark::State& state, int operation)
{
    Contestant contestant;
    const int count = changesPerPeriod[operation];
    for (auto _ : state)
    {
        contestant.changeNumbers (count);
        benchmark::DoNotOptimize (contestant.sendAndApply());
    }
    if (! contestant.agrees (count))
        state.SkipWithError ("the mirror differs");
}

//==============================================================================
/** The CPU time of the calling thread, in milliseconds. */
double threadMilliseconds()
{
    timespec time;
    clock_gettime (CLOCK_THREAD_CPUTIME_ID, &time);
    return (double) time.tv_sec * 1000.0 + (double) time.tv_nsec / 1.0e6;
}

/** Made as MirroringRequestRemoteCall makes it, written and read in binary, loaded as
    MirroringRequestAsyncCompletionRoutine loads it; each step's CPU time in a counter. */
void snapshotMirroring (benchmark::State& state)
{
    DocumentPeer source { makeName (sourceName) }, mirror { makeName (mirrorName) };
    source.document.setRootObject (makeSession(), true);
    tov::Integer callIdentifier (1);
    double makeTime = 0.0, wireTime = 0.0, applyTime = 0.0;
    size_t numBytes = 0;
    for (auto _ : state)
    {
        const double start = threadMilliseconds();
        auto snapshot = tov::StateObjectExporter::make (source.document.getRootObjectPointer(), tov::exportTransientVariables, true);
        const double made = threadMilliseconds();
        juce::MemoryBlock block;
        {
            juce::MemoryOutputStream output (block, false);
            tov::State::toBinary (snapshot.get(), output);
        }
        numBytes = block.getSize();
        juce::MemoryInputStream input (block, false);
        std::shared_ptr<tov::State> read;
        juce::String error;
        if (! tov::State::loadFromBinary (input, read, error))
            state.SkipWithError (error.toRawUTF8());
        const double wired = threadMilliseconds();
        (new tov::MirroringRequestAsyncCompletionRoutine (mirror.document))->complete (callIdentifier, new tov::StateObject (read));
        const double applied = threadMilliseconds();
        makeTime += made - start;
        wireTime += wired - made;
        applyTime += applied - wired;
    }
    if (mirror.document.getNumObjects() != source.document.getNumObjects())
        state.SkipWithError ("the mirror differs");
    state.counters["make_ms"] = benchmark::Counter (makeTime, benchmark::Counter::kAvgIterations);
    state.counters["wire_ms"] = benchmark::Counter (wireTime, benchmark::Counter::kAvgIterations);
    state.counters["apply_ms"] = benchmark::Counter (applyTime, benchmark::Counter::kAvgIterations);
    state.counters["bytes"] = (double) numBytes;
}

void snapshotValueTree (benchmark::State& state)
{
    const auto session = makeSessionTree();
    juce::ValueTree mirror;
    size_t numBytes = 0;
    for (auto _ : state)
    {
        juce::MemoryBlock block;
        {
            juce::MemoryOutputStream output (block, false);
            session.writeToStream (output);
        }
        numBytes = block.getSize();
        mirror = juce::ValueTree::readFromData (block.getData(), block.getSize());
    }
    state.counters["bytes"] = (double) numBytes;
    if (! mirror.isEquivalentTo (session))
        state.SkipWithError ("the mirror differs");
}

void registerBenchmarks()
{
    tov::benchmarks::registerPairedBenchmarks (periodNames, 2,
        "Mirroring", [] (benchmark::State& state, int operation) { runPeriods<MirroringContestant> (state, operation); },
        "ValueTreeSynchroniser", [] (benchmark::State& state, int operation) { runPeriods<SynchroniserContestant> (state, operation); });
    const char* const snapshotName[] = { "Snapshot" };
    tov::benchmarks::registerPairedBenchmarks (snapshotName, 1,
        "Mirroring", [] (benchmark::State& state, int) { snapshotMirroring (state); },
        "ValueTree", [] (benchmark::State& state, int) { snapshotValueTree (state); });
}

//==============================================================================
void printBytesTable()
{
    MirroringContestant mirroring;
    SynchroniserContestant synchroniser;
    tov::ObjectOwnedPointer receiver;
    receiver.set (makeName (mirrorName), false);
    juce::MemoryBlock empty;
    tov::Envelop (makeName (sourceName), new tov::DiffObjectSpaceMessage (spaceName)).saveToMemoryBlock (receiver, empty);
    const double emptyBytes = (double) (empty.getSize() + frameHeaderBytes);

    std::printf ("\nBytes on the wire, frames with their %d-byte header; an empty diff's frame is %.0f bytes\n", frameHeaderBytes, emptyBytes);
    std::printf ("%-16s %12s %14s %14s %14s %8s\n", "Changed numbers", "Diff B", "Diff B/number", "Synchr. B", "Synchr. B/num", "Ratio");
    for (const int count : { 1, 10, 100 })
    {
        mirroring.changeNumbers (count);
        synchroniser.changeNumbers (count);
        const double diffBytes = (double) mirroring.sendAndApply(), synchroniserBytes = (double) synchroniser.sendAndApply();
        const double perNumber = (diffBytes - emptyBytes) / count, synchroniserPerNumber = synchroniserBytes / count;
        std::printf ("%-16d %12.0f %14.1f %14.0f %14.1f %8.2f\n", count, diffBytes, perNumber, synchroniserBytes, synchroniserPerNumber,
                     perNumber / synchroniserPerNumber);
    }
    if (! mirroring.agrees (100) || ! synchroniser.agrees (100))
        std::printf ("A mirror differs from its source\n");
    std::fflush (stdout);
}

void printTables (const tov::benchmarks::MedianReporter& reporter)
{
    std::printf ("\nCPU time per changed number, a period's changes made, sent and applied (ratio below 1: Mirroring is faster)\n");
    tov::benchmarks::printPairedRatioTable (reporter, periodNames, 2, "Mirroring", "Mirroring ns", "ValueTreeSynchroniser", "Synchr. ns",
                                            [] (int operation) { return changesPerPeriod[operation]; });
    const double mirroring = reporter.getMedianSeconds ("Snapshot/Mirroring") * 1000.0;
    const double valueTree = reporter.getMedianSeconds ("Snapshot/ValueTree") * 1000.0;
    std::printf ("\nDeep snapshot of 10,000 objects made, written, read and applied, CPU time (goal: under 100 ms)\n");
    std::printf ("%-13s %16s %16s %8s\n", "", "Mirroring ms", "ValueTree ms", "Ratio");
    if (mirroring > 0 && valueTree > 0)
        std::printf ("%-13s %16.2f %16.2f %8.2f\n", "Snapshot", mirroring, valueTree, mirroring / valueTree);
    std::printf ("Mirroring's steps: make %.2f ms, binary write and read %.2f ms, apply %.2f ms\n",
                 reporter.getMedianCounter ("Snapshot/Mirroring", "make_ms"), reporter.getMedianCounter ("Snapshot/Mirroring", "wire_ms"),
                 reporter.getMedianCounter ("Snapshot/Mirroring", "apply_ms"));
    std::printf ("Binary forms: the snapshot's State %.0f bytes, the tree's stream %.0f bytes\n",
                 reporter.getMedianCounter ("Snapshot/Mirroring", "bytes"), reporter.getMedianCounter ("Snapshot/ValueTree", "bytes"));
    printBytesTable();
}

/** The loopback run, then the benchmarks in process on this thread's service, and the tables. */
int runMirror (int farPort)
{
    if (! runLoopback (farPort))
        return 1;
    tov::benchmarks::BenchmarkService service;
    registerBenchmarks();
    std::printf ("\n");
    tov::benchmarks::runWithMedianReporter (printTables);
    return 0;
}

} // namespace

int main (int argc, char** argv)
{
    return tov::benchmarks::runWithFarProcess (argc, argv, "MirroringBenchmark", tov::benchmarks::addClasses<Clip, Track, Folder, Session, DocumentPeer>,
                                               "--source", runSource, runMirror);
}
