#pragma once

#include "../Core/ValueObject.h"
#include <vector>

namespace tov
{

class ExecutionContext;

/** A path in the file system as a reflected value, saved as its full path; no file by default.

    The path accessors forward to juce::File. A relative path that is loaded counts from the
    current working directory. The static operations are the file operations that report
    through an execution context, and the helpers that name new files.
*/
class NativeFile : public ValueObject<juce::File>
{
public:
    TOV_DECLARE_CLASS (NativeFile, Object)

    using ValueObject::ValueObject;

    juce::String getFileName() const                      { return value.getFileName(); }
    juce::String getFileNameWithoutExtension() const      { return value.getFileNameWithoutExtension(); }
    juce::String getExtension() const                     { return value.getFileExtension(); }
    juce::String getFullPathName() const                  { return value.getFullPathName(); }
    juce::Time getLastModificationTime() const            { return value.getLastModificationTime(); }
    int64_t getSize() const                               { return value.getSize(); }
    bool exists() const                                   { return value.exists(); }
    /** The whole file as text; empty when it cannot be read. */
    juce::String getFileContentAsString() const           { return value.loadFileAsString(); }

    juce::String toString() const override                { return value.getFullPathName(); }
    void save (ObjectExporter& exporter) const override;
    bool load (ObjectImporter& importer) override;
    /** The full path. */
    juce::var saveToJson (uint32_t flags) const override;
    bool loadFromJson (ExecutionContext& context, const juce::var& value) override;

    //==============================================================================
    /** The extension of the last name of a path, with its dot, as juce::File gives it: "" for none. */
    static juce::String getFileNameExtension (const juce::String& path);

    /** Copies a file, or a directory with everything in it; the target's missing parents are
        created. False, with the reason on the context, when the source is missing or a copy fails. */
    static bool copyFile (ExecutionContext& context, const juce::File& source, const juce::File& target);
    /** Deletes a file, never a directory; false, with the reason on the context, when it fails. */
    static bool deleteFile (ExecutionContext& context, const juce::File& file);

    /** True when the file exists and can be opened for writing (nothing is written to it). */
    static bool ensureExistingFileIsOverwritable (const juce::File& file);

    /** Answers whether a candidate file name is taken. */
    class SubFileExistsFunction
    {
    public:
        virtual ~SubFileExistsFunction() = default;
        virtual bool exists (const juce::String& fileName) const = 0;
    };

    /** Takes a name when a file or directory of that name is in the directory. */
    class SubNativeFileExistsFunction : public SubFileExistsFunction
    {
    public:
        explicit SubNativeFileExistsFunction (const juce::File& directory) : directory (directory) {}
        bool exists (const juce::String& fileName) const override  { return directory.getChildFile (fileName).exists(); }

    private:
        juce::File directory;
    };

    /** The file name of name and extension (with or without its leading dot) that the function
        reports free: the name itself, else the name with " 2", " 3"... or, for a name that ends
        in digits, with that number counted up ("shot9" gives "shot10"). */
    static juce::String makeUniqueFileName (const juce::String& name, const juce::String& extension, const SubFileExistsFunction& function);
    /** The same for files in the directory. */
    static juce::String makeUniqueFileName (const juce::File& directory, const juce::String& name, const juce::String& extension);

    /** A stable identity of a file on its volume, to find it again after a move. File systems
        here offer none that can be opened again: the null uuid. */
    static juce::Uuid getVolumeFileUuid (const juce::File& file);
    /** The file of such an identity; none here. */
    static juce::File getByVolumeFileUuid (const juce::File& volume, const juce::Uuid& uuid);

    /** True below one of the directories where programs are installed machine-wide. */
    static bool isChildOfGlobalApplicationsDirectory (const juce::File& file);
    static std::vector<juce::File> getGlobalApplicationsDirectories();
};

} // namespace tov
