// A document of 256 MB of buffers saved to and loaded from a state file and its ".bin"
// sibling, against the same bytes written with one write() (and fsync, as a save flushes to
// the disk) and read with one read(); then the peak memory of a load, measured in a fresh
// process.
#include "MedianReporter.h"
#include "RandomInterleaving.h"
#include "RepeatedBenchmarks.h"
#include <Tov/Core/Library.h>
#include <Tov/Standard/BufferArray.h>
#include <Tov/Standard/ConsoleProcess.h>
#include <Tov/Standard/ExecutionContext.h>
#include <Tov/Standard/Float32Buffer.h>
#include <fcntl.h>
#include <unistd.h>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

namespace
{
constexpr int numBuffers = 4;
constexpr uint64_t bytesPerBuffer = (uint64_t) 64 << 20;
constexpr uint64_t documentBytes = numBuffers * bytesPerBuffer;
constexpr double megabyte = 1024.0 * 1024.0;

const char* const loadMemoryMode = "--measure-load-memory";
const char* const readMemoryMode = "--measure-read-memory";

juce::File getDirectory()
{
    return juce::File::getSpecialLocation (juce::File::tempDirectory).getChildFile ("BufferBenchmark-" + juce::String (getpid()));
}

juce::File getDocumentFile()   { return getDirectory().getChildFile ("document.txt"); }
juce::File getPlainFile()      { return getDirectory().getChildFile ("plain.bin"); }

/** Four Float32Buffers of 64 MB, each an entry of the array, filled with varied bytes. */
tov::BufferArray* makeDocument()
{
    auto* array = static_cast<tov::BufferArray*> (tov::BufferArray::staticClass.createObject());
    juce::Random random (1981);
    for (int i = 0; i < numBuffers; ++i)
    {
        auto* buffer = static_cast<tov::Float32Buffer*> (tov::Float32Buffer::staticClass.createObject());
        buffer->resize ((int64_t) (bytesPerBuffer / sizeof (float)));
        random.fillBitsRandomly (buffer->getData(), (size_t) bytesPerBuffer);
        auto* entry = static_cast<tov::BufferWithLayout*> (tov::BufferWithLayout::staticClass.createObject());
        entry->getBuffer().set (buffer, false);
        array->append (entry, false);
    }
    return array;
}

/** The same bytes in one block, as the peers write them. */
juce::HeapBlock<char> makePlainCopy (const tov::BufferArray& document)
{
    juce::HeapBlock<char> block ((size_t) documentBytes);
    for (int i = 0; i < numBuffers; ++i)
        std::memcpy (block + (size_t) i * bytesPerBuffer, document.get ((size_t) i)->getBuffer()->readLock(), (size_t) bytesPerBuffer);
    return block;
}

tov::BufferArray* document = nullptr;
juce::HeapBlock<char> plainCopy;

/** Writes out what earlier runs left in the page cache, outside the measure, so that no run
    waits for the writeback of another's bytes. */
void writeBackEarlierRuns (benchmark::State& state)
{
    state.PauseTiming();
    const int directory = ::open (getDirectory().getFullPathName().toRawUTF8(), O_RDONLY | O_DIRECTORY);
    if (directory >= 0)
    {
        ::syncfs (directory);
        ::close (directory);
    }
    state.ResumeTiming();
}

void checkSucceeded (benchmark::State& state, bool succeeded, const juce::String& messages)
{
    if (! succeeded)
        state.SkipWithError (messages.toRawUTF8());
}

void saveStateFilePair (benchmark::State& state)
{
    juce::String messages;
    tov::ToStringExecutionContext context (messages);
    for (auto _ : state)
    {
        writeBackEarlierRuns (state);
        checkSucceeded (state, document->saveToFile (context, getDocumentFile(), true), messages);
    }
    state.SetBytesProcessed ((int64_t) (state.iterations() * documentBytes));
}

void saveOneWrite (benchmark::State& state)
{
    for (auto _ : state)
    {
        writeBackEarlierRuns (state);
        const int file = ::open (getPlainFile().getFullPathName().toRawUTF8(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        // A state file's streams flush with fsync (juce::FileOutputStream::flush), so the peer's
        // bytes reach the disk too.
        const bool written = file >= 0 && ::write (file, plainCopy, (size_t) documentBytes) == (ssize_t) documentBytes
                             && ::fsync (file) == 0;
        checkSucceeded (state, ::close (file) == 0 && written, "write failed");
    }
    state.SetBytesProcessed ((int64_t) (state.iterations() * documentBytes));
}

/** A new array loaded from the state file pair, as opening a document makes it; null on failure. */
tov::BufferArray* loadDocument (const juce::File& file, juce::String& messages)
{
    tov::ToStringExecutionContext context (messages);
    auto* loaded = static_cast<tov::BufferArray*> (tov::BufferArray::staticClass.createObject());
    if (loaded->loadFromFile (context, file) && loaded->size() == (size_t) numBuffers)
        return loaded;
    loaded->deleteThis();
    return nullptr;
}

/** The file's bytes in a block allocated for them with one read(), as a load must allocate its
    buffers too; null on failure. */
char* readPlainFile (const juce::File& plainFile)
{
    auto* block = static_cast<char*> (std::malloc ((size_t) documentBytes));
    const int file = ::open (plainFile.getFullPathName().toRawUTF8(), O_RDONLY);
    const bool read = block != nullptr && file >= 0 && ::read (file, block, (size_t) documentBytes) == (ssize_t) documentBytes;
    if (file >= 0)
        ::close (file);
    if (read)
        return block;
    std::free (block);
    return nullptr;
}

// What was loaded is freed outside the measure.
void loadStateFilePair (benchmark::State& state)
{
    juce::String messages;
    for (auto _ : state)
    {
        writeBackEarlierRuns (state);
        auto* loaded = loadDocument (getDocumentFile(), messages);
        checkSucceeded (state, loaded != nullptr, messages);
        state.PauseTiming();
        if (loaded != nullptr)
            loaded->deleteThis();
        state.ResumeTiming();
    }
    state.SetBytesProcessed ((int64_t) (state.iterations() * documentBytes));
}

void loadOneRead (benchmark::State& state)
{
    for (auto _ : state)
    {
        writeBackEarlierRuns (state);
        auto* block = readPlainFile (getPlainFile());
        checkSucceeded (state, block != nullptr, "read failed");
        state.PauseTiming();
        std::free (block);
        state.ResumeTiming();
    }
    state.SetBytesProcessed ((int64_t) (state.iterations() * documentBytes));
}

const char* const operationNames[] = { "Save", "Load" };

void registerBenchmarks()
{
    using Function = void (*) (benchmark::State&);
    const Function contestants[2][2] = { { saveStateFilePair, saveOneWrite }, { loadStateFilePair, loadOneRead } };
    for (int operation = 0; operation < 2; ++operation)
        for (int contestant = 0; contestant < 2; ++contestant)
            tov::benchmarks::registerRepeated (std::string (operationNames[operation]) + (contestant == 0 ? "/StateFilePair" : "/OneCall"),
                                               contestants[operation][contestant], 5, benchmark::kMillisecond)
                ->Iterations (1)->UseRealTime();
}

void printRatioTable (const tov::benchmarks::MedianReporter& reporter)
{
    std::printf ("\n%u MB of buffers through the state file pair against one write() and fsync() / one read() of the same bytes\n"
                 "(median wall-clock times; ratio = state file pair / one call, goal at most 1.5)\n",
                 (unsigned) (documentBytes >> 20));
    std::printf ("%-10s %14s %14s %14s %14s %8s\n", "Operation", "pair ms", "pair MB/s", "one call ms", "one call MB/s", "Ratio");
    for (auto* operation : operationNames)
    {
        const double pair = reporter.getMedianRealSeconds (std::string (operation) + "/StateFilePair");
        const double peer = reporter.getMedianRealSeconds (std::string (operation) + "/OneCall");
        if (pair > 0 && peer > 0)
            std::printf ("%-10s %14.1f %14.1f %14.1f %14.1f %8.2f\n", operation, pair * 1e3, (double) documentBytes / megabyte / pair,
                         peer * 1e3, (double) documentBytes / megabyte / peer, pair / peer);
    }
    std::fflush (stdout);
}

//==============================================================================
// Memory of a load: this program started again in a mode that loads once and prints its
// resident set before and its high-water mark after, in kB, from /proc/self/status.
int64_t readStatusKilobytes (const char* field)
{
    const auto status = juce::File ("/proc/self/status").loadFileAsString();
    const auto line = status.fromFirstOccurrenceOf (juce::String (field) + ":", false, false).upToFirstOccurrenceOf ("\n", false, false);
    return line.trim().getLargeIntValue();
}

int measureInThisProcess (const char* mode, const juce::File& directory)
{
    const int64_t before = readStatusKilobytes ("VmRSS");
    juce::String messages;
    if (std::strcmp (mode, loadMemoryMode) == 0)
    {
        auto* loaded = loadDocument (directory.getChildFile (getDocumentFile().getFileName()), messages);
        std::printf ("%lld %lld\n", (long long) before, (long long) readStatusKilobytes ("VmHWM"));
        if (loaded == nullptr)
            return 1;
        loaded->deleteThis();
    }
    else
    {
        auto* block = readPlainFile (directory.getChildFile (getPlainFile().getFileName()));
        std::printf ("%lld %lld\n", (long long) before, (long long) readStatusKilobytes ("VmHWM"));
        if (block == nullptr)
            return 1;
        std::free (block);
    }
    return 0;
}

/** Runs this program in a measuring mode and reads its two numbers; false on failure. */
bool measureInFreshProcess (const char* programPath, const char* mode, int64_t& before, int64_t& peak)
{
    // A load of the document takes seconds: the time-out only keeps a stuck child from holding
    // the run, and such a child is killed.
    constexpr int timeOutMilliseconds = 600000;
    const auto arguments = juce::String (mode) + " " + getDirectory().getFullPathName().quoted();
    std::unique_ptr<tov::ConsoleProcess> child (tov::ConsoleProcess::create (programPath, arguments, {}));
    if (child == nullptr)
        return false;
    const auto output = child->readAllOutput (timeOutMilliseconds);
    const int exitCode = child->waitForExit (timeOutMilliseconds);
    child->kill();
    long long first = 0, second = 0;
    const bool parsed = std::sscanf (output.toRawUTF8(), "%lld %lld", &first, &second) == 2;
    before = first;
    peak = second;
    return exitCode == 0 && parsed;
}

void printMemoryTable (const char* programPath)
{
    std::printf ("\nPeak memory of one load in a fresh process (VmHWM after the load minus VmRSS before it; data %u MB)\n",
                 (unsigned) (documentBytes >> 20));
    std::printf ("%-22s %12s %12s %12s %8s\n", "Contestant", "before MB", "peak MB", "growth MB", "x data");
    const std::pair<const char*, const char*> modes[] = { { "State file pair", loadMemoryMode }, { "One read()", readMemoryMode } };
    for (const auto& [name, mode] : modes)
    {
        int64_t before = 0, peak = 0;
        if (! measureInFreshProcess (programPath, mode, before, peak))
        {
            std::printf ("%-22s failed\n", name);
            continue;
        }
        const double growth = (double) (peak - before) / 1024.0;
        std::printf ("%-22s %12.1f %12.1f %12.1f %8.2f\n", name, (double) before / 1024.0, (double) peak / 1024.0, growth,
                     growth / (double) (documentBytes >> 20));
    }
    std::fflush (stdout);
}

/** Writes the files that the measures read, once, before anything is timed. */
bool prepareFiles()
{
    if (! getDirectory().createDirectory().wasOk())
        return false;
    juce::String messages;
    tov::ToStringExecutionContext context (messages);
    if (! document->saveToFile (context, getDocumentFile(), true) || ! getPlainFile().replaceWithData (plainCopy, (size_t) documentBytes))
        return false;
    auto* loaded = loadDocument (getDocumentFile(), messages);
    auto* block = readPlainFile (getPlainFile());
    const bool readBack = loaded != nullptr && block != nullptr
                          && std::memcmp (loaded->get (0)->getBuffer()->readLock(), block, (size_t) bytesPerBuffer) == 0;
    if (loaded != nullptr)
        loaded->deleteThis();
    std::free (block);
    return readBack;
}
} // namespace

int main (int argc, char** argv)
{
    if (argc == 3 && (std::strcmp (argv[1], loadMemoryMode) == 0 || std::strcmp (argv[1], readMemoryMode) == 0))
    {
        tov::initializeTov();
        const int result = measureInThisProcess (argv[1], juce::File (argv[2]));
        tov::deinitializeTov();
        return result;
    }

    if (! tov::benchmarks::initializeWithRandomInterleaving (argc, argv))
        return 1;
    tov::initializeTov();
    document = makeDocument();
    plainCopy = makePlainCopy (*document);
    int result = 0;
    if (prepareFiles())
    {
        registerBenchmarks();
        tov::benchmarks::runWithMedianReporter ([argv] (const tov::benchmarks::MedianReporter& reporter)
        {
            printRatioTable (reporter);
            printMemoryTable (argv[0]);
        });
    }
    else
    {
        std::printf ("could not write the files in %s\n", getDirectory().getFullPathName().toRawUTF8());
        result = 1;
    }
    // 512 MB of files: never leave them behind.
    getDirectory().deleteRecursively();
    document->deleteThis();
    tov::deinitializeTov();
    return result;
}
