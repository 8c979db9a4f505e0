#include "TraceTransport.h"
#include <fcntl.h>
#include <netdb.h>
#include <sys/socket.h>
#include <unistd.h>

namespace tov
{

TraceTransport::~TraceTransport()
{
    close();
    closeHandle (pendingHandle.exchange (0));
}

bool TraceTransport::openFile (const juce::File& file)
{
    const int descriptor = ::open (file.getFullPathName().toRawUTF8(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (descriptor < 0)
        return false;
    setPending (descriptor);
    return true;
}

bool TraceTransport::connect (const juce::String& host, uint16_t port)
{
    addrinfo hints {};
    hints.ai_family = AF_UNSPEC;
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_protocol = IPPROTO_TCP;
    addrinfo* addresses = nullptr;
    if (getaddrinfo (host.toRawUTF8(), juce::String (port).toRawUTF8(), &hints, &addresses) != 0)
        return false;

    int descriptor = -1;
    for (addrinfo* address = addresses; address != nullptr && descriptor < 0; address = address->ai_next)
    {
        descriptor = ::socket (address->ai_family, address->ai_socktype | SOCK_CLOEXEC, address->ai_protocol);
        if (descriptor >= 0 && ::connect (descriptor, address->ai_addr, address->ai_addrlen) != 0)
        {
            ::close (descriptor);
            descriptor = -1;
        }
    }
    freeaddrinfo (addresses);
    if (descriptor < 0)
        return false;
    setPending (descriptor);
    return true;
}

// A handle pending already stays: the new one is closed at once.
void TraceTransport::setPending (int descriptor)
{
    int none = 0;
    if (! pendingHandle.compare_exchange_strong (none, descriptor + 1))
        ::close (descriptor);
}

bool TraceTransport::takePendingHandle()
{
    const int handle = pendingHandle.exchange (0);
    if (handle == 0)
        return false;
    if (activeHandle != 0)
    {
        closeHandle (handle);
        return false;
    }
    activeHandle = handle;
    return true;
}

bool TraceTransport::send (const void* data, size_t size)
{
    if (activeHandle == 0)
        return false;
    const auto* bytes = static_cast<const char*> (data);
    const int descriptor = activeHandle - 1;
    while (size > 0)
    {
        // send() on a socket so that a closed peer gives an error rather than SIGPIPE.
        ssize_t written = ::send (descriptor, bytes, size, MSG_NOSIGNAL);
        if (written < 0 && errno == ENOTSOCK)
            written = ::write (descriptor, bytes, size);
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
        {
            close();
            return false;
        }
        bytes += written;
        size -= (size_t) written;
    }
    return true;
}

void TraceTransport::close()
{
    closeHandle (activeHandle);
    activeHandle = 0;
}

void TraceTransport::closeHandle (int handle)
{
    if (handle != 0)
        ::close (handle - 1);
}

} // namespace tov
