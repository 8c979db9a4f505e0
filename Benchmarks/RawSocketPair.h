#pragma once

#include <Tov/Network/FrameReader.h>
#include <Tov/Network/TcpSocket.h>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>
#include <vector>
#include <fcntl.h>
#include <sys/socket.h>

namespace tov::benchmarks
{

/** Counts what arrives, and wakes the one thread that waits once the count it waits for is
    reached (not on every arrival, which would add a wake-up of the timing thread to each item). */
class ArrivalCounter
{
public:
    void add()
    {
        bool reached = false;
        {
            const std::lock_guard<std::mutex> lock (mutex);
            reached = ++count == wanted;
        }
        if (reached)
            arrived.notify_all();
    }

    /** False when the time-out passed first. */
    bool waitFor (int64_t awaited, std::chrono::milliseconds timeOut = std::chrono::hours (1))
    {
        std::unique_lock<std::mutex> lock (mutex);
        wanted = awaited;
        const bool reached = arrived.wait_for (lock, timeOut, [&] { return count >= wanted; });
        wanted = -1;
        return reached;
    }

    int64_t get()
    {
        const std::lock_guard<std::mutex> lock (mutex);
        return count;
    }

private:
    std::mutex mutex;
    std::condition_variable arrived;
    int64_t count = 0, wanted = -1;
};

inline bool sendAll (int handle, const char* data, size_t size)
{
    while (size > 0)
    {
        const auto sent = ::send (handle, data, size, MSG_NOSIGNAL);
        if (sent <= 0)
            return false;
        data += sent;
        size -= (size_t) sent;
    }
    return true;
}

/** The limit of any connection: a pair of blocking loopback sockets and a thread at the far end
    that reads frames of the given bytes (header included), counts them, and with echo set
    writes each one back. */
class RawSocketPair
{
public:
    RawSocketPair (std::string frameBytes, juce::uint32 magicNumber, bool echo)
        : frame (std::move (frameBytes)), magic (magicNumber)
    {
        auto listener = TcpSocket::listen ("127.0.0.1", 0);
        near = TcpSocket::connect ("127.0.0.1", listener->getBoundPort(), 1000);
        while ((far = listener->accept()) == nullptr)
            std::this_thread::yield();
        makeBlocking (near->getHandle());
        makeBlocking (far->getHandle());
        reader = std::thread ([this, echo] { readFrames (echo); });
    }

    ~RawSocketPair()
    {
        near->shutdown();
        reader.join();
    }

    void sendFrame()                                { sendAll (near->getHandle(), frame.data(), frame.size()); }

    /** Reads one echoed frame on the near end. */
    void readEcho()
    {
        std::string buffer (frame.size(), '\0');
        size_t have = 0;
        while (have < buffer.size())
        {
            const auto got = ::recv (near->getHandle(), buffer.data() + have, buffer.size() - have, 0);
            if (got <= 0)
                return;
            have += (size_t) got;
        }
    }

    ArrivalCounter frames;

private:
    const std::string frame;
    const juce::uint32 magic;
    std::unique_ptr<TcpSocket> near, far;
    std::thread reader;

    static void makeBlocking (int handle)
    {
        fcntl (handle, F_SETFL, fcntl (handle, F_GETFL, 0) & ~O_NONBLOCK);
    }

    void readFrames (bool echo)
    {
        std::vector<char> buffer (64 * 1024);
        FrameReader cutter (magic);
        const FrameReader::BlockCallback count = [&] (const juce::MemoryBlock&)
        {
            if (echo)
                sendAll (far->getHandle(), frame.data(), frame.size());
            frames.add();
        };
        for (;;)
        {
            const auto got = ::recv (far->getHandle(), buffer.data(), buffer.size(), 0);
            if (got <= 0)
                return;
            cutter.read (buffer.data(), (size_t) got, count);
        }
    }
};

/** The frame of a block as a connection of that magic number writes it. */
inline std::string frameOf (const juce::MemoryBlock& block, juce::uint32 magicNumber)
{
    std::string frame (FrameReader::headerSize, '\0');
    FrameReader::writeHeader (magicNumber, (juce::uint32) block.getSize(), frame.data());
    return frame + std::string (static_cast<const char*> (block.getData()), block.getSize());
}

} // namespace tov::benchmarks
