#pragma once

#include "CrashText.h"
#include <csignal>
#include <cstdint>
#include <ucontext.h>

namespace tov
{

/** What the crash handler reports of a crash: the faulting module, the thread, the exception
    and the registers, in the text the logs have always shown.

    Signals are named by the exception codes of the platform the reports were first written
    on, so that the texts and their readers stay the same; see getExceptionCode. Everything
    here is safe to call from a signal handler.
*/
struct CrashReport
{
    using Text = CrashText<8192>;
    static constexpr int maxParameters = 15;

    struct Registers
    {
        uint64_t rax = 0, rbx = 0, rcx = 0, rdx = 0, rsi = 0, rdi = 0;
        uint64_t rip = 0, rsp = 0, rbp = 0, efl = 0;
        uint16_t cs = 0, ss = 0, ds = 0, es = 0, fs = 0, gs = 0;
    };

    uint32_t code = 0;
    int numParameters = 0;
    uint64_t parameters[maxParameters] = {};
    uint64_t threadId = 0;
    Registers registers;

    static constexpr uint32_t accessViolation = 0xC0000005;
    static constexpr uint32_t stackOverflow = 0xC00000FD;
    /** What an abort is reported with: no code of the table, so its name is "Unknown". */
    static constexpr uint32_t fatalApplicationExit = 0x40000015;

    /** The exception code of a signal and its si_code; a fault in a thread's stack guard is a stack overflow. */
    static uint32_t getExceptionCode (int signal, int signalCode, bool inStackGuard) noexcept;
    /** "ACCESS_VIOLATION", ..., "Unknown" for a code of no name. */
    static const char* getExceptionName (uint32_t code) noexcept;

    /** Fills the report from a signal handler's arguments, on the crashing thread. */
    void readSignal (int signal, const siginfo_t& info, const ucontext_t& context, bool inStackGuard) noexcept;

    /** The whole report, each part ending in a line end. */
    void write (Text& text) const noexcept;

    /** The "Unhandled exception in" line of the module holding the address; nothing when no module does. */
    static void writeModule (uint64_t address, Text& text) noexcept;
    /** The eight two-letter flag mnemonics, each followed by a blank. */
    static void writeFlags (uint64_t flags, Text& text) noexcept;
    static void writeRegisters (const Registers& registers, Text& text) noexcept;
};

} // namespace tov
