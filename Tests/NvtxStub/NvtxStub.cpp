// NVTX's entry points, recorded: each call becomes a line such as "push PreciseSleep", "pop",
// "mark Tick", "category 3 Render" or "thread 1234 Render", kept in a ring of the last
// calls. Recording takes no lock and allocates nothing, so that the benchmark measures the
// profiler rather than the stub; the tests read the record once the calls are done.
#include <atomic>
#include <cstdint>
#include <cstring>
#include <cwchar>

namespace
{

constexpr int ringSize = 4096;
constexpr size_t lineSize = 128;

char lines[ringSize][lineSize];
std::atomic<int> numCalls { 0 };
thread_local int depth = 0;

void append (char*& cursor, const char* end, const char* text)
{
    while (*text != 0 && cursor < end)
        *cursor++ = *text++;
}

void appendNumber (char*& cursor, const char* end, uint32_t number)
{
    char digits[12];
    int count = 0;
    do
        digits[count++] = (char) ('0' + number % 10);
    while ((number /= 10) != 0);
    while (count > 0 && cursor < end)
        *cursor++ = digits[--count];
}

/** A record of the call: the verb, then the number and the text when there are any. */
void record (const char* verb, const char* text = nullptr, bool withNumber = false, uint32_t number = 0)
{
    char* cursor = lines[numCalls.fetch_add (1, std::memory_order_relaxed) % ringSize];
    const char* end = cursor + lineSize - 1;
    append (cursor, end, verb);
    if (withNumber)
    {
        append (cursor, end, " ");
        appendNumber (cursor, end, number);
    }
    if (text != nullptr)
    {
        append (cursor, end, " ");
        append (cursor, end, text);
    }
    *cursor = 0;
}

/** Wide texts are recorded by their ASCII characters. */
void recordWide (const char* verb, uint32_t number, const wchar_t* text)
{
    char narrow[lineSize];
    size_t i = 0;
    for (; text != nullptr && text[i] != 0 && i < lineSize - 1; ++i)
        narrow[i] = (char) text[i];
    narrow[i] = 0;
    record (verb, narrow, true, number);
}

} // namespace

extern "C"
{

__attribute__ ((visibility ("default"))) int nvtxRangePushA (const char* message)
{
    record ("push", message);
    return depth++;
}

__attribute__ ((visibility ("default"))) int nvtxRangePop()
{
    record ("pop");
    return depth > 0 ? --depth : -2;
}

__attribute__ ((visibility ("default"))) void nvtxMarkA (const char* message)              { record ("mark", message); }
__attribute__ ((visibility ("default"))) void nvtxNameCategoryA (uint32_t category, const char* name)     { record ("category", name, true, category); }
__attribute__ ((visibility ("default"))) void nvtxNameCategoryW (uint32_t category, const wchar_t* name)  { recordWide ("category", category, name); }
__attribute__ ((visibility ("default"))) void nvtxNameOsThreadA (uint32_t threadId, const char* name)     { record ("thread", name, true, threadId); }
__attribute__ ((visibility ("default"))) void nvtxNameOsThreadW (uint32_t threadId, const wchar_t* name)  { recordWide ("thread", threadId, name); }

/** For the tests: how many calls were made since the last reset, and the record of one of the
    last 4096 of them (null for others). */
__attribute__ ((visibility ("default"))) int tovNvtxStubGetNumCalls()           { return numCalls.load(); }
__attribute__ ((visibility ("default"))) const char* tovNvtxStubGetCall (int index)
{
    const int count = numCalls.load();
    return index >= 0 && index < count && index >= count - ringSize ? lines[index % ringSize] : nullptr;
}
__attribute__ ((visibility ("default"))) void tovNvtxStubReset()                { numCalls = 0; }

}
