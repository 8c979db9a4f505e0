#include "CrashReport.h"
#include <link.h>
#include <unistd.h>

namespace tov
{

//==============================================================================
// Signals keep the names the reports had when they were structured exceptions: a reader of
// old and new logs meets the same words. Codes a signal does not tell apart take the most
// common one of that signal.
uint32_t CrashReport::getExceptionCode (int signal, int signalCode, bool inStackGuard) noexcept
{
    switch (signal)
    {
        case SIGSEGV:
            return inStackGuard ? stackOverflow : accessViolation;
        case SIGBUS:
            return signalCode == BUS_ADRALN ? 0x80000002 : 0xC0000006;
        case SIGILL:
            return signalCode == ILL_PRVOPC ? 0xC0000096 : 0xC000001D;
        case SIGFPE:
            switch (signalCode)
            {
                case FPE_INTOVF: return 0xC0000095;
                case FPE_FLTDIV: return 0xC000008E;
                case FPE_FLTOVF: return 0xC0000091;
                case FPE_FLTUND: return 0xC0000093;
                case FPE_FLTRES: return 0xC000008F;
                case FPE_FLTINV: return 0xC0000090;
                case FPE_FLTSUB: return 0xC000008C;
                default:         return 0xC0000094;
            }
        case SIGTRAP:
            return signalCode == TRAP_TRACE ? 0x80000004 : 0x80000003;
        default:
            return fatalApplicationExit;
    }
}

const char* CrashReport::getExceptionName (uint32_t code) noexcept
{
    struct Name { uint32_t code; const char* name; };
    static const Name names[] = {
        { 0xC0000005, "ACCESS_VIOLATION" },       { 0xC0000006, "IN_PAGE_ERROR" },
        { 0xC0000008, "INVALID_HANDLE" },         { 0xC000001D, "ILLEGAL_INSTRUCTION" },
        { 0xC0000025, "NONCONTINUABLE_EXCEPTION" }, { 0xC0000026, "INVALID_DISPOSITION" },
        { 0xC000008C, "ARRAY_BOUNDS_EXCEEDED" },  { 0xC000008D, "FLT_DENORMAL_OPERAND" },
        { 0xC000008E, "FLT_DIVIDE_BY_ZERO" },     { 0xC000008F, "FLT_INEXACT_RESULT" },
        { 0xC0000090, "FLT_INVALID_OPERATION" },  { 0xC0000091, "FLT_OVERFLOW" },
        { 0xC0000092, "FLT_STACK_CHECK" },        { 0xC0000093, "FLT_UNDERFLOW" },
        { 0xC0000094, "INT_DIVIDE_BY_ZERO" },     { 0xC0000095, "INT_OVERFLOW" },
        { 0xC0000096, "PRIV_INSTRUCTION" },       { 0xC00000FD, "STACK_OVERFLOW" },
        { 0x80000001, "GUARD_PAGE" },             { 0x80000002, "DATATYPE_MISALIGNMENT" },
        { 0x80000003, "BREAKPOINT" },             { 0x80000004, "SINGLE_STEP" },
    };
    for (const auto& name : names)
        if (name.code == code)
            return name.name;
    return "Unknown";
}

//==============================================================================
void CrashReport::readSignal (int signal, const siginfo_t& info, const ucontext_t& context, bool inStackGuard) noexcept
{
    code = getExceptionCode (signal, info.si_code, inStackGuard);
    threadId = (uint64_t) ::gettid();

    const auto* g = context.uc_mcontext.gregs;
    registers.rax = (uint64_t) g[REG_RAX];  registers.rbx = (uint64_t) g[REG_RBX];  registers.rcx = (uint64_t) g[REG_RCX];
    registers.rdx = (uint64_t) g[REG_RDX];  registers.rsi = (uint64_t) g[REG_RSI];  registers.rdi = (uint64_t) g[REG_RDI];
    registers.rip = (uint64_t) g[REG_RIP];  registers.rsp = (uint64_t) g[REG_RSP];  registers.rbp = (uint64_t) g[REG_RBP];
    registers.efl = (uint64_t) g[REG_EFL];
    // cs, gs, fs and (on kernels that save it) ss share one word; ds and es are not saved.
    const auto segments = (uint64_t) g[REG_CSGSFS];
    registers.cs = (uint16_t) segments;
    registers.gs = (uint16_t) (segments >> 16);
    registers.fs = (uint16_t) (segments >> 32);
    registers.ss = (uint16_t) (segments >> 48);

    // Faults on memory say how and where, as access violations always did: 0 read, 1 write, 8 execute.
    numParameters = 0;
    if (signal == SIGSEGV || signal == SIGBUS)
    {
        const auto error = (uint64_t) g[REG_ERR];
        parameters[0] = (error & 0x10) != 0 ? 8 : ((error & 0x2) != 0 ? 1 : 0);
        parameters[1] = (uint64_t) info.si_addr;
        numParameters = 2;
    }
}

//==============================================================================
namespace
{
struct ModuleSearch
{
    uint64_t address;
    bool found = false;
    uint64_t base = 0;
    char name[1024] = {};
};

// The executable has no name of its own in the loader's list.
void readModuleName (const char* loaderName, char* name, size_t capacity)
{
    if (loaderName != nullptr && loaderName[0] != 0)
    {
        size_t i = 0;
        for (; loaderName[i] != 0 && i + 1 < capacity; ++i)
            name[i] = loaderName[i];
        name[i] = 0;
        return;
    }
    const auto length = ::readlink ("/proc/self/exe", name, capacity - 1);
    name[length > 0 ? length : 0] = 0;
}

int findModule (dl_phdr_info* info, size_t, void* data)
{
    auto& search = *static_cast<ModuleSearch*> (data);
    uint64_t low = UINT64_MAX, high = 0;
    for (int i = 0; i < info->dlpi_phnum; ++i)
    {
        const auto& header = info->dlpi_phdr[i];
        if (header.p_type != PT_LOAD)
            continue;
        low = header.p_vaddr < low ? header.p_vaddr : low;
        high = header.p_vaddr + header.p_memsz > high ? header.p_vaddr + header.p_memsz : high;
    }
    if (low == UINT64_MAX)
        return 0;

    const uint64_t start = info->dlpi_addr + (low & ~(uint64_t) 0xfff), end = info->dlpi_addr + high;
    if (search.address < start || search.address >= end)
        return 0;

    search.found = true;
    search.base = start;
    readModuleName (info->dlpi_name, search.name, sizeof (search.name));
    return 1;
}

const char* getBaseName (const char* path)
{
    const char* name = path;
    for (const char* c = path; *c != 0; ++c)
        if (*c == '/')
            name = c + 1;
    return name;
}
} // namespace

void CrashReport::writeModule (uint64_t address, Text& text) noexcept
{
    ModuleSearch search { address };
    ::dl_iterate_phdr (&findModule, &search);
    if (! search.found)
        return;

    const char* name = getBaseName (search.name);
    text.append ("Unhandled exception in ").append (*name != 0 ? name : "Unknown")
        .append ("+").appendHex (address - search.base)
        .append (" (Rip=").appendHex (address, 16)
        .append (") (image=").appendHex (search.base, 16).append (")\n");
}

// Carry, parity, auxiliary, zero, sign, interrupt, direction, overflow: the bits of the
// flags register from the lowest up, each shown by one of its two mnemonics.
void CrashReport::writeFlags (uint64_t flags, Text& text) noexcept
{
    struct Flag { uint64_t bit; const char* set; const char* clear; };
    static const Flag table[] = {
        { 1u << 0, "cy", "nc" }, { 1u << 2, "pe", "po" }, { 1u << 4, "ac", "na" }, { 1u << 6, "zr", "nz" },
        { 1u << 7, "ng", "pl" }, { 1u << 9, "ei", "di" }, { 1u << 10, "dn", "up" }, { 1u << 11, "ov", "nv" },
    };
    for (const auto& flag : table)
        text.append ((flags & flag.bit) != 0 ? flag.set : flag.clear).append (" ");
}

void CrashReport::writeRegisters (const Registers& r, Text& text) noexcept
{
    text.append ("rax=").appendHex (r.rax, 16).append (" rbx=").appendHex (r.rbx, 16).append (" rcx=").appendHex (r.rcx, 16)
        .append ("\nrdx=").appendHex (r.rdx, 16).append (" rsi=").appendHex (r.rsi, 16).append (" rdi=").appendHex (r.rdi, 16).append ("\n");
    text.append ("rip=").appendHex (r.rip, 16).append (" rsp=").appendHex (r.rsp, 16).append (" rbp=").appendHex (r.rbp, 16)
        .append ("\niopl=").appendHex ((r.efl >> 12) & 3).append (" ");
    writeFlags (r.efl, text);
    text.append ("cs=").appendHex (r.cs, 4).append ("  ss=").appendHex (r.ss, 4).append ("  ds=").appendHex (r.ds, 4)
        .append ("  es=").appendHex (r.es, 4).append ("  fs=").appendHex (r.fs, 4).append ("  gs=").appendHex (r.gs, 4)
        .append ("  efl=").appendHex (r.efl & 0xffffffff, 8).append ("\n");
}

// Hexadecimal numbers outside the fixed formats are written as the library writes them
// elsewhere: lower case, without padding.
void CrashReport::write (Text& text) const noexcept
{
    writeModule (registers.rip, text);
    text.append ("exception on thread: ").appendHex (threadId, 1, false).append ("X (").appendDecimal (threadId).append (")\n");
    text.append (getExceptionName (code)).append (" Code ").appendHex (code, 1, false).append ("\n");
    for (int i = 0; i < numParameters && i < maxParameters; ++i)
        text.append ("EXCEPTION_PARAMETER").appendDecimal ((uint64_t) i).append (": ").appendHex (parameters[i], 1, false).append ("\n");
    writeRegisters (registers, text);
}

} // namespace tov
