#pragma once

#include <condition_variable>
#include <iostream>
#include <mutex>
#include <streambuf>
#include <string>

namespace tov::test
{

/** Keeps what is written to std::cerr (where JUCE's debug output goes) while it lives, safe for
    writers on any thread, and lets a test wait for a text to appear. */
class DebugOutputCapture : private std::streambuf
{
public:
    DebugOutputCapture() : previous (std::cerr.rdbuf (this)) {}
    ~DebugOutputCapture() override { std::cerr.rdbuf (previous); }

    std::string getText() const
    {
        const std::lock_guard<std::mutex> lock (mutex);
        return text;
    }

    /** True once the text holds that part; false after the time-out. */
    bool waitFor (const std::string& part, int timeOutMilliseconds = 20000)
    {
        std::unique_lock<std::mutex> lock (mutex);
        return written.wait_for (lock, std::chrono::milliseconds (timeOutMilliseconds),
                                 [&] { return text.find (part) != std::string::npos; });
    }

private:
    std::streambuf* previous;
    mutable std::mutex mutex;
    std::condition_variable written;
    std::string text;

    int overflow (int c) override
    {
        if (c != EOF)
            append (std::string (1, (char) c));
        return c;
    }

    std::streamsize xsputn (const char* s, std::streamsize n) override
    {
        append (std::string (s, (size_t) n));
        return n;
    }

    void append (const std::string& more)
    {
        {
            const std::lock_guard<std::mutex> lock (mutex);
            text += more;
        }
        written.notify_all();
    }
};

} // namespace tov::test
