#pragma once

#include "Library.h"

namespace tov
{

/** A plug-in module: a shared object whose factory function makes a Library.

    The loaded library becomes this node's child, so the tree reads parent,
    DynamicallyLinkedLibrary, then the module's own library.
*/
class DynamicallyLinkedLibrary : public Library
{
public:
    TOV_DECLARE_CLASS (DynamicallyLinkedLibrary, Library)

    DynamicallyLinkedLibrary() = default;
    ~DynamicallyLinkedLibrary() override;

    static juce::String getFileNameExtension()   { return "so"; }
    static juce::String getFileNamePrefix()      { return "lib"; }
    static juce::String getFileNamePostfix()     { return {}; }
    static juce::String getFullNameFromReducedName (const juce::String& reducedName, bool withExtension);

    /** The file name without extension, prefix and postfix. */
    juce::String getReducedName() const;
    juce::String getName() const override        { return nativeFile.getFileName(); }
    const juce::File& getNativeFile() const      { return nativeFile; }

    /** Opens the module and adds the library its factory makes; false with the reason in errorMessage. */
    bool open (const juce::File& file, const juce::String& factoryName, Class* requiredClass, juce::String& errorMessage);
    /** Removes the module's libraries, from the last, then closes the module. */
    void close();

    /** A new node with the module open, or null with the reason in errorMessage. */
    static DynamicallyLinkedLibrary* createFromFile (const juce::File& file, const juce::String& factoryName,
                                                     Class* requiredClass, juce::String& errorMessage);
    /** The module files in that child directory: not recursive, files only, hidden ones ignored. */
    static juce::Array<juce::File> findFromDirectory (const juce::File& directory, const juce::String& subDirectory);
    static DynamicallyLinkedLibrary* getFromName (Library& parent, const juce::String& reducedName);
    static void closeDynamicallyLinkedLibraries (Library& parent);

private:
    juce::File nativeFile;
    juce::DynamicLibrary dynamicLibrary;
};

} // namespace tov
