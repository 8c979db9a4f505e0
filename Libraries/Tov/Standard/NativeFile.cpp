#include "NativeFile.h"
#include "ExecutionContext.h"

namespace tov
{

TOV_BEGIN_CLASS (NativeFile)
TOV_END_CLASS()

void NativeFile::save (ObjectExporter& exporter) const
{
    exporter.writeString (value.getFullPathName());
}

// A relative path counts from the working directory; an empty one is no file.
static juce::File fileFromPath (const juce::String& path)
{
    return path.isEmpty() ? juce::File() : juce::File::getCurrentWorkingDirectory().getChildFile (path);
}

bool NativeFile::load (ObjectImporter& importer)
{
    juce::String path;
    if (! importer.readString (path))
        return false;
    set (fileFromPath (path));
    return true;
}

juce::String NativeFile::getFileNameExtension (const juce::String& path)
{
    return juce::File::createFileWithoutCheckingPath (path).getFileExtension();
}

//==============================================================================
static bool copyExistingFile (ExecutionContext& context, const juce::File& source, const juce::File& target)
{
    if (! source.exists())
    {
        context.error ("Source file does not exists");
        return false;
    }
    if (source.isDirectory())
    {
        if (source.copyDirectoryTo (target))
            return true;
        context.error ("Could not copy directory");
        return false;
    }
    target.getParentDirectory().createDirectory();
    if (source.copyFileTo (target))
        return true;
    context.error ("Could not copy file");
    return false;
}

bool NativeFile::copyFile (ExecutionContext& context, const juce::File& source, const juce::File& target)
{
    context.enter ("Copy " + source.getFullPathName() + " to " + target.getFullPathName());
    const bool result = copyExistingFile (context, source, target);
    context.leave();
    return result;
}

static bool deleteExistingFile (ExecutionContext& context, const juce::File& file)
{
    if (! file.exists())
    {
        // The wording is the one users know.
        context.error ("Files does not exists");
        return false;
    }
    if (file.isDirectory())
    {
        context.error (file.getFileName() + " is a directory");
        return false;
    }
    if (file.deleteFile())
        return true;
    context.error ("Could not delete file");
    return false;
}

bool NativeFile::deleteFile (ExecutionContext& context, const juce::File& file)
{
    context.enter ("Delete file " + file.getFullPathName());
    const bool result = deleteExistingFile (context, file);
    context.leave();
    return result;
}

bool NativeFile::ensureExistingFileIsOverwritable (const juce::File& file)
{
    if (! file.existsAsFile() || ! file.hasWriteAccess())
        return false;
    // Opened and closed again: whether it opens is the answer, and nothing is written.
    juce::FileOutputStream stream (file);
    return stream.openedOk();
}

//==============================================================================
static juce::String makeCandidate (const juce::String& name, const juce::String& extension, int64_t number, bool withBlank)
{
    juce::String candidate = name;
    if (number > 0)
        candidate << (withBlank ? " " : "") << juce::String (number);
    if (extension.isNotEmpty())
        candidate << "." << extension;
    return candidate;
}

juce::String NativeFile::makeUniqueFileName (const juce::String& name, const juce::String& extension, const SubFileExistsFunction& function)
{
    const auto cleanExtension = extension.startsWithChar ('.') ? extension.substring (1) : extension;
    auto baseName = name;
    if (cleanExtension.isNotEmpty() && baseName.endsWith ("." + cleanExtension))
        baseName = baseName.dropLastCharacters (cleanExtension.length() + 1);

    const auto plain = makeCandidate (baseName, cleanExtension, 0, false);
    if (! function.exists (plain))
        return plain;

    int digitsStart = baseName.length();
    while (digitsStart > 0 && juce::CharacterFunctions::isDigit (baseName[digitsStart - 1]))
        --digitsStart;

    // "image" goes on as "image 2", "image 3"; "shot9" as "shot10", "shot11".
    const bool hasDigits = digitsStart < baseName.length();
    const auto prefix = baseName.substring (0, digitsStart);
    int64_t number = hasDigits ? baseName.substring (digitsStart).getLargeIntValue() + 1 : 2;
    for (;; ++number)
    {
        const auto candidate = hasDigits ? makeCandidate (prefix, cleanExtension, number, false)
                                         : makeCandidate (baseName, cleanExtension, number, true);
        if (! function.exists (candidate))
            return candidate;
    }
}

juce::String NativeFile::makeUniqueFileName (const juce::File& directory, const juce::String& name, const juce::String& extension)
{
    return makeUniqueFileName (name, extension, SubNativeFileExistsFunction (directory));
}

//==============================================================================
juce::Uuid NativeFile::getVolumeFileUuid (const juce::File&)
{
    return juce::Uuid::null();
}

juce::File NativeFile::getByVolumeFileUuid (const juce::File&, const juce::Uuid&)
{
    return {};
}

std::vector<juce::File> NativeFile::getGlobalApplicationsDirectories()
{
    return { juce::File ("/usr"), juce::File ("/opt") };
}

bool NativeFile::isChildOfGlobalApplicationsDirectory (const juce::File& file)
{
    for (const auto& directory : getGlobalApplicationsDirectories())
        if (file.isAChildOf (directory))
            return true;
    return false;
}

juce::var NativeFile::saveToJson (uint32_t) const
{
    return toString();
}

bool NativeFile::loadFromJson (ExecutionContext&, const juce::var& json)
{
    set (fileFromPath (json.toString()));
    return true;
}

} // namespace tov
