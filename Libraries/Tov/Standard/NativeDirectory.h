#pragma once

#include "NativeFile.h"

namespace tov
{

/** A directory as a reflected value: a NativeFile, with the operations on directories. */
class NativeDirectory : public NativeFile
{
public:
    TOV_DECLARE_CLASS (NativeDirectory, NativeFile)

    using NativeFile::NativeFile;

    /** Creates the directory and its missing parents; true when it exists afterwards. */
    static bool ensureDirectoryIsCreated (const juce::File& directory);
    /** Deletes a directory and everything in it, never a file; false, with the reason on the
        context, when it fails. */
    static bool deleteDirectory (ExecutionContext& context, const juce::File& directory);
    /** True for an existing directory in which files may be created. */
    static bool isDirectoryWritable (const juce::File& directory);
};

} // namespace tov
