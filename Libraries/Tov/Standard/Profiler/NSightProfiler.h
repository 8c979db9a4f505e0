#pragma once

#include "Profiler.h"

namespace tov
{

/** Hands scopes and marks to NVIDIA's NVTX library, for Nsight: a scope is a range pushed
    and popped on the calling thread, a mark a marker, a category name a named category.

    The library is loaded when the profiler is made. Without it the profiler says so once and
    stays installed, doing nothing. Every thread is recorded; NVTX keeps the stacks itself.

    It is made with the libraries to try, and has no default constructor: the class has no
    default object, which would load a library and speak whenever the class's defaults are made.
*/
class NSightProfiler : public Profiler
{
public:
    TOV_DECLARE_CLASS (NSightProfiler, Profiler)

    /** Loads the first of the libraries that opens: NVTX's are getDefaultLibraryNames(). */
    explicit NSightProfiler (const juce::StringArray& libraryNames);
    ~NSightProfiler() override;

    static juce::StringArray getDefaultLibraryNames();

    bool isLibraryLoaded() const noexcept           { return library != nullptr; }

    void beginFrame() override                      {}
    void endFrame() override                        {}
    void beginEvent (juce::StringRef name, int category) override;
    void endEvent() override;
    void markEvent (juce::StringRef name) override;
    void setCategoryName (int category, juce::StringRef name) override;

private:
    void* library = nullptr;

    bool load (const juce::String& libraryName);
};

} // namespace tov
