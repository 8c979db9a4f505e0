#include "TraceListener.h"
#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace tov
{

TraceListener::~TraceListener()
{
    if (descriptor >= 0)
        ::close (descriptor);
}

bool TraceListener::listen (uint16_t portToUse, bool onlyLoopback)
{
    descriptor = ::socket (AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (descriptor < 0)
        return false;
    const int yes = 1;
    setsockopt (descriptor, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof (yes));
    sockaddr_in address {};
    address.sin_family = AF_INET;
    address.sin_port = htons (portToUse);
    address.sin_addr.s_addr = htonl (onlyLoopback ? INADDR_LOOPBACK : INADDR_ANY);
    socklen_t length = sizeof (address);
    if (::bind (descriptor, reinterpret_cast<sockaddr*> (&address), sizeof (address)) != 0 || ::listen (descriptor, 4) != 0
        || getsockname (descriptor, reinterpret_cast<sockaddr*> (&address), &length) != 0)
    {
        ::close (descriptor);
        descriptor = -1;
        return false;
    }
    port = ntohs (address.sin_port);
    return true;
}

int TraceListener::accept (int timeoutMilliseconds)
{
    pollfd waiting { descriptor, POLLIN, 0 };
    if (descriptor < 0 || ::poll (&waiting, 1, timeoutMilliseconds) <= 0)
        return -1;
    return ::accept4 (descriptor, nullptr, nullptr, SOCK_CLOEXEC);
}

std::vector<uint8_t> TraceListener::receive (int timeoutMilliseconds)
{
    std::vector<uint8_t> stream;
    const int connection = accept (timeoutMilliseconds);
    if (connection < 0)
        return stream;
    uint8_t chunk[65536];
    for (;;)
    {
        const ssize_t received = ::recv (connection, chunk, sizeof (chunk), 0);
        if (received <= 0)
            break;
        stream.insert (stream.end(), chunk, chunk + received);
    }
    ::close (connection);
    return stream;
}

bool TraceListener::acceptAndClose (int timeoutMilliseconds)
{
    const int connection = accept (timeoutMilliseconds);
    if (connection < 0)
        return false;
    ::close (connection);
    return true;
}

} // namespace tov
