#include "NativeDirectory.h"
#include "ExecutionContext.h"

namespace tov
{

TOV_BEGIN_CLASS (NativeDirectory)
TOV_END_CLASS()

bool NativeDirectory::ensureDirectoryIsCreated (const juce::File& directory)
{
    if (directory.exists())
        return directory.isDirectory();
    // A root is its own parent.
    const auto parent = directory.getParentDirectory();
    if (parent != directory)
        ensureDirectoryIsCreated (parent);
    return directory.createDirectory().wasOk();
}

static bool deleteExistingDirectory (ExecutionContext& context, const juce::File& directory)
{
    if (! directory.exists())
    {
        context.error ("Directory does not exists");
        return false;
    }
    if (! directory.isDirectory())
    {
        context.error (directory.getFileName() + " is not a directory");
        return false;
    }
    if (directory.deleteRecursively())
        return true;
    context.error ("Could not delete directory");
    return false;
}

bool NativeDirectory::deleteDirectory (ExecutionContext& context, const juce::File& directory)
{
    context.enter ("Delete directory " + directory.getFullPathName());
    const bool result = deleteExistingDirectory (context, directory);
    context.leave();
    return result;
}

bool NativeDirectory::isDirectoryWritable (const juce::File& directory)
{
    return directory.isDirectory() && directory.hasWriteAccess();
}

} // namespace tov
