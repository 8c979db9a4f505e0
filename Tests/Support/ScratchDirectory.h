#pragma once

#include <juce_core/juce_core.h>

namespace tov::test
{

/** A fresh, empty directory of the running test's own, made when this is made and removed with
    everything in it when this goes, so that a failed ASSERT leaves nothing behind. Its name holds
    the test's name and a random part that mkdtemp makes unique: CTest runs the tests of a suite
    side by side, each in a process of its own. */
class ScratchDirectory
{
public:
    /** A directory in the temporary directory. */
    ScratchDirectory();
    /** A directory in the given one, which must exist. */
    explicit ScratchDirectory (const juce::File& parent);
    ~ScratchDirectory();

    const juce::File& getFile() const noexcept                   { return directory; }
    juce::String getFullPathName() const                          { return directory.getFullPathName(); }
    juce::File getChildFile (juce::StringRef relativePath) const  { return directory.getChildFile (relativePath); }

private:
    juce::File directory;

    JUCE_DECLARE_NON_COPYABLE (ScratchDirectory)
};

} // namespace tov::test
