#include "NSightProfiler.h"
#include <dlfcn.h>

namespace tov
{

TOV_BEGIN_CLASS (NSightProfiler)
TOV_END_CLASS()

// The entry points of NVTX, for the process, as the library of the last profiler that loaded
// one gives them.
namespace nvtx
{
static int (*rangePushA) (const char*) = nullptr;
static int (*rangePop)() = nullptr;
static void (*markA) (const char*) = nullptr;
static void (*nameCategoryA) (uint32_t, const char*) = nullptr;
static void (*nameCategoryW) (uint32_t, const wchar_t*) = nullptr;
static void (*nameOsThreadA) (uint32_t, const char*) = nullptr;
static void (*nameOsThreadW) (uint32_t, const wchar_t*) = nullptr;
} // namespace nvtx

juce::StringArray NSightProfiler::getDefaultLibraryNames()
{
    return { "libnvToolsExt.so.1", "libnvToolsExt.so" };
}

NSightProfiler::NSightProfiler (const juce::StringArray& libraryNames)
{
    for (const auto& name : libraryNames)
        if (load (name))
            break;
    juce::Logger::outputDebugString (library != nullptr ? "Nsight profiling support is enabled"
                                                         : "Could not find nvToolsExt64_1, NSight support is disabled");
}

// The library stays loaded: the entry points are the process's, and a scope may still be
// on its way into them from another thread.
NSightProfiler::~NSightProfiler() = default;

template <class Function>
static void resolve (void* library, const char* name, Function& function)
{
    function = reinterpret_cast<Function> (::dlsym (library, name));
}

bool NSightProfiler::load (const juce::String& libraryName)
{
    library = ::dlopen (libraryName.toRawUTF8(), RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr)
        return false;
    resolve (library, "nvtxRangePushA", nvtx::rangePushA);
    resolve (library, "nvtxRangePop", nvtx::rangePop);
    resolve (library, "nvtxMarkA", nvtx::markA);
    resolve (library, "nvtxNameCategoryA", nvtx::nameCategoryA);
    resolve (library, "nvtxNameCategoryW", nvtx::nameCategoryW);
    resolve (library, "nvtxNameOsThreadA", nvtx::nameOsThreadA);
    resolve (library, "nvtxNameOsThreadW", nvtx::nameOsThreadW);
    return true;
}

//==============================================================================
void NSightProfiler::beginEvent (juce::StringRef name, int)
{
    if (library != nullptr && nvtx::rangePushA != nullptr)
        nvtx::rangePushA (name.text.getAddress());
}

void NSightProfiler::endEvent()
{
    if (library != nullptr && nvtx::rangePop != nullptr)
        nvtx::rangePop();
}

void NSightProfiler::markEvent (juce::StringRef name)
{
    if (library != nullptr && nvtx::markA != nullptr)
        nvtx::markA (name.text.getAddress());
}

void NSightProfiler::setCategoryName (int category, juce::StringRef name)
{
    if (library != nullptr && nvtx::nameCategoryA != nullptr)
        nvtx::nameCategoryA ((uint32_t) category, name.text.getAddress());
}

} // namespace tov
