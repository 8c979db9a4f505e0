#include "NativeFile.h"

namespace tov
{

TOV_BEGIN_CLASS (NativeFile)
TOV_END_CLASS()

void NativeFile::save (ObjectExporter& exporter) const
{
    exporter.writeString (value.getFullPathName());
}

bool NativeFile::load (ObjectImporter& importer)
{
    juce::String path;
    if (! importer.readString (path))
        return false;
    set (path.isEmpty() ? juce::File() : juce::File::getCurrentWorkingDirectory().getChildFile (path));
    return true;
}

} // namespace tov
