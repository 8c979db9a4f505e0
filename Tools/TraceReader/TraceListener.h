#pragma once

#include <cstdint>
#include <vector>

namespace tov
{

/** A TCP port on which a trace stream arrives, as a trace server would take it: one connection,
    read until its peer closes it. */
class TraceListener
{
public:
    ~TraceListener();

    /** Listens on the port of the loopback address, or of every address; port 0 picks a free one.
        False when the port cannot be had. */
    bool listen (uint16_t port, bool onlyLoopback = true);
    uint16_t getPort() const noexcept           { return port; }

    /** Waits for a connection and returns everything it sends until it closes; empty when no
        connection came within the time-out. */
    std::vector<uint8_t> receive (int timeoutMilliseconds = -1);
    /** Takes the next connection and closes it at once, as a refused one would be. False when none came in time. */
    bool acceptAndClose (int timeoutMilliseconds);

private:
    int descriptor = -1;
    uint16_t port = 0;

    int accept (int timeoutMilliseconds);
};

} // namespace tov
