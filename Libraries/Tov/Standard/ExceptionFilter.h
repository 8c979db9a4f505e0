#pragma once

namespace tov
{

/** The process's crash handler, started first and stopped last by the program.

    For now it holds only its place in the program's start and stop: the crash report and
    dump come with the crash handling. What it does already is what every later step relies
    on: a write to a closed socket must not kill the process.
*/
class ExceptionFilter
{
public:
    ExceptionFilter() = default;
    ~ExceptionFilter()                       { stop(); }

    void start();
    void stop();
    bool isStarted() const noexcept          { return started; }

private:
    bool started = false;
    void (*previousPipeHandler) (int) = nullptr;

    ExceptionFilter (const ExceptionFilter&) = delete;
    ExceptionFilter& operator= (const ExceptionFilter&) = delete;
};

} // namespace tov
