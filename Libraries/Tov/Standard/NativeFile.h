#pragma once

#include "../Core/ValueObject.h"

namespace tov
{

/** A path in the file system as a reflected value, saved as its full path; no file by default.

    The path accessors forward to juce::File. A relative path that is loaded counts from the
    current working directory.
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

    juce::String toString() const override                { return value.getFullPathName(); }
    void save (ObjectExporter& exporter) const override;
    bool load (ObjectImporter& importer) override;
};

} // namespace tov
