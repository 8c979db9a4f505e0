// libFuzzer target for HostIdentifier's IPv4 texts, which come from files and users.
//
// Any text gives a number; the text of that number gives the same number back.
//
//   IpV4TextFuzzer work Corpus/IpV4Text -max_len=256
#include <Tov/Network/HostIdentifier.h>
#include <cstddef>
#include <cstdint>

using namespace tov;

extern "C" int LLVMFuzzerTestOneInput (const uint8_t* data, size_t size)
{
    const auto text = juce::String::fromUTF8 (reinterpret_cast<const char*> (data), (int) size);
    const unsigned int address = HostIdentifier::getNativeEndian32BitFromIpV4 (text);
    const auto dotted = HostIdentifier::getIpV4StringFromNativeEndian32Bit (address);
    if (HostIdentifier::getNativeEndian32BitFromIpV4 (dotted) != address)
        __builtin_trap();
    return 0;
}
