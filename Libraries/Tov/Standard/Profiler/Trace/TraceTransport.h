#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <juce_core/juce_core.h>

namespace tov
{

/** Where the trace stream goes: a file or a TCP socket, as one handle (its descriptor plus 1, so
    that 0 means none).

    Any thread may open a handle; it waits as the pending one until the worker takes it
    (takePendingHandle), and is closed then if another is active. A write that fails closes the
    active handle: the recording ends without a word. Every failure is silent.
*/
class TraceTransport
{
public:
    ~TraceTransport();

    /** A new file, replacing one of the same name. False when it cannot be created. */
    bool openFile (const juce::File& file);
    /** A blocking TCP connection to the host's port. False when it cannot be made. */
    bool connect (const juce::String& host, uint16_t port);

    /** The worker's: makes the pending handle the active one. False without a pending handle, or
        when one is active already: the new one is then closed. */
    bool takePendingHandle();
    /** The worker's: writes all of it, or closes the active handle. */
    bool send (const void* data, size_t size);
    bool isConnected() const noexcept           { return activeHandle != 0; }
    void close();

    static constexpr uint16_t defaultPort = 1981;

private:
    std::atomic<int> pendingHandle { 0 };
    int activeHandle = 0;

    void setPending (int descriptor);
    static void closeHandle (int handle);
};

} // namespace tov
