#include "TcpSocket.h"
#include "../Standard/Deadline.h"
#include <arpa/inet.h>
#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>
#include <cerrno>

namespace tov
{

namespace
{
    bool setNonBlocking (int handle)
    {
        const int flags = fcntl (handle, F_GETFL, 0);
        return flags >= 0 && fcntl (handle, F_SETFL, flags | O_NONBLOCK) == 0;
    }

    void setNoDelay (int handle)
    {
        const int one = 1;
        setsockopt (handle, IPPROTO_TCP, TCP_NODELAY, &one, sizeof (one));
    }

    bool toText (const sockaddr_in& address, juce::String& ip, int& port)
    {
        char text[INET_ADDRSTRLEN] = {};
        if (inet_ntop (AF_INET, &address.sin_addr, text, sizeof (text)) == nullptr)
            return false;
        ip = text;
        port = ntohs (address.sin_port);
        return true;
    }

    /** Waits for a non-blocking connect to end; true when it connected. */
    bool waitForConnect (int handle, int timeOutMs)
    {
        pollfd descriptor { handle, POLLOUT, 0 };
        const Deadline deadline (timeOutMs);
        for (;;)
        {
            const int result = poll (&descriptor, 1, deadline.getRemainingMilliseconds());
            if (result > 0)
                break;
            if (result == 0 || errno != EINTR)
                return false;
        }
        int error = 0;
        socklen_t length = sizeof (error);
        return getsockopt (handle, SOL_SOCKET, SO_ERROR, &error, &length) == 0 && error == 0;
    }

    int connectTo (const addrinfo& address, int timeOutMs)
    {
        const int handle = socket (address.ai_family, address.ai_socktype | SOCK_CLOEXEC, address.ai_protocol);
        if (handle < 0)
            return -1;
        if (setNonBlocking (handle)
             && (::connect (handle, address.ai_addr, address.ai_addrlen) == 0
                  || (errno == EINPROGRESS && waitForConnect (handle, timeOutMs))))
            return handle;
        close (handle);
        return -1;
    }
}

TcpSocket::TcpSocket (int newHandle, const juce::String& newHostName)
    : handle (newHandle), hostName (newHostName)
{
}

TcpSocket::~TcpSocket()
{
    if (handle >= 0)
        close (handle);
}

std::unique_ptr<TcpSocket> TcpSocket::connect (const juce::String& host, int port, int timeOutMs)
{
    if (host.isEmpty() || port <= 0 || port > 65535)
        return nullptr;

    addrinfo hints {};
    hints.ai_family = AF_INET;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* addresses = nullptr;
    if (getaddrinfo (host.toRawUTF8(), juce::String (port).toRawUTF8(), &hints, &addresses) != 0)
        return nullptr;

    int handle = -1;
    for (auto* address = addresses; address != nullptr && handle < 0; address = address->ai_next)
        handle = connectTo (*address, timeOutMs);
    freeaddrinfo (addresses);
    if (handle < 0)
        return nullptr;

    setNoDelay (handle);
    return std::make_unique<TcpSocket> (handle, host);
}

std::unique_ptr<TcpSocket> TcpSocket::listen (const juce::String& ip, int port)
{
    sockaddr_in address {};
    address.sin_family = AF_INET;
    address.sin_port = htons ((uint16_t) port);
    if (ip.isEmpty())
        address.sin_addr.s_addr = htonl (INADDR_ANY);
    else if (inet_pton (AF_INET, ip.toRawUTF8(), &address.sin_addr) != 1)
        return nullptr;

    const int handle = socket (AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (handle < 0)
        return nullptr;
    const int one = 1;
    setsockopt (handle, SOL_SOCKET, SO_REUSEADDR, &one, sizeof (one));
    if (bind (handle, (const sockaddr*) &address, sizeof (address)) != 0 || ::listen (handle, SOMAXCONN) != 0)
    {
        close (handle);
        return nullptr;
    }
    return std::make_unique<TcpSocket> (handle, ip);
}

std::unique_ptr<TcpSocket> TcpSocket::accept() const
{
    sockaddr_in address {};
    socklen_t length = sizeof (address);
    const int accepted = accept4 (handle, (sockaddr*) &address, &length, SOCK_CLOEXEC | SOCK_NONBLOCK);
    if (accepted < 0)
        return nullptr;

    setNoDelay (accepted);
    juce::String ip;
    int port = 0;
    toText (address, ip, port);
    return std::make_unique<TcpSocket> (accepted, ip);
}

bool TcpSocket::getLocalEndpoint (juce::String& ip, int& port) const
{
    sockaddr_in address {};
    socklen_t length = sizeof (address);
    return getsockname (handle, (sockaddr*) &address, &length) == 0 && toText (address, ip, port);
}

bool TcpSocket::getRemoteEndpoint (juce::String& ip, int& port) const
{
    sockaddr_in address {};
    socklen_t length = sizeof (address);
    return getpeername (handle, (sockaddr*) &address, &length) == 0 && toText (address, ip, port);
}

int TcpSocket::getBoundPort() const
{
    juce::String ip;
    int port = -1;
    return getLocalEndpoint (ip, port) ? port : -1;
}

void TcpSocket::shutdown() noexcept
{
    ::shutdown (handle, SHUT_RDWR);
}

} // namespace tov
