#include "DynamicallyLinkedLibrary.h"
#include <dlfcn.h>

namespace tov
{

TOV_BEGIN_CLASS (DynamicallyLinkedLibrary)
TOV_END_CLASS()

DynamicallyLinkedLibrary::~DynamicallyLinkedLibrary()
{
    close();
}

juce::String DynamicallyLinkedLibrary::getFullNameFromReducedName (const juce::String& reducedName, bool withExtension)
{
    const auto name = getFileNamePrefix() + reducedName + getFileNamePostfix();
    return withExtension ? name + "." + getFileNameExtension() : name;
}

juce::String DynamicallyLinkedLibrary::getReducedName() const
{
    auto name = nativeFile.getFileNameWithoutExtension();
    if (name.startsWith (getFileNamePrefix()))
        name = name.substring (getFileNamePrefix().length());
    if (getFileNamePostfix().isNotEmpty() && name.endsWith (getFileNamePostfix()))
        name = name.dropLastCharacters (getFileNamePostfix().length());
    return name;
}

bool DynamicallyLinkedLibrary::open (const juce::File& file, const juce::String& factoryName,
                                     Class* requiredClass, juce::String& errorMessage)
{
    nativeFile = file;
    const auto path = file.getFullPathName();
    if (! dynamicLibrary.open (path))
    {
        const char* reason = ::dlerror();
        errorMessage = "Could not load dynamic library " + path + " (error 0): " + juce::String (reason != nullptr ? reason : "");
        return false;
    }

    using Factory = Library* (*)();
    auto factory = reinterpret_cast<Factory> (dynamicLibrary.getFunction (factoryName));
    if (factory == nullptr)
    {
        errorMessage = "Dynamic library " + path + " does not contains factory function: " + factoryName;
        dynamicLibrary.close();
        return false;
    }

    Library* library = factory();
    if (library == nullptr || ! Class::inheritsFrom (library->getClass(), requiredClass))
    {
        errorMessage = "Dynamic library " + path + " does not contains expected library kind";
        delete library;
        dynamicLibrary.close();
        return false;
    }

    addLibrary (library);
    return true;
}

void DynamicallyLinkedLibrary::close()
{
    if (dynamicLibrary.getNativeHandle() == nullptr)
        return;
    while (getNumLibraries() > 0)
        removeLibrary (getLibrary (getNumLibraries() - 1));
    dynamicLibrary.close();
}

DynamicallyLinkedLibrary* DynamicallyLinkedLibrary::createFromFile (const juce::File& file, const juce::String& factoryName,
                                                                    Class* requiredClass, juce::String& errorMessage)
{
    auto library = std::make_unique<DynamicallyLinkedLibrary>();
    if (! library->open (file, factoryName, requiredClass, errorMessage))
        return nullptr;
    return library.release();
}

juce::Array<juce::File> DynamicallyLinkedLibrary::findFromDirectory (const juce::File& directory, const juce::String& subDirectory)
{
    const auto child = directory.getChildFile (subDirectory);
    if (! child.isDirectory())
        return {};
    const auto pattern = getFileNamePrefix() + "*" + getFileNamePostfix() + "." + getFileNameExtension();
    return child.findChildFiles (juce::File::findFiles | juce::File::ignoreHiddenFiles, false, pattern);
}

DynamicallyLinkedLibrary* DynamicallyLinkedLibrary::getFromName (Library& parent, const juce::String& reducedName)
{
    const auto fullName = getFullNameFromReducedName (reducedName, false);
    for (size_t i = 0; i < parent.getNumLibraries(); ++i)
        if (auto* library = dynamic_cast<DynamicallyLinkedLibrary*> (parent.getLibrary (i)))
            if (library->getNativeFile().getFileNameWithoutExtension() == fullName)
                return library;
    return nullptr;
}

void DynamicallyLinkedLibrary::closeDynamicallyLinkedLibraries (Library& parent)
{
    for (size_t i = parent.getNumLibraries(); i > 0; --i)
        if (auto* library = dynamic_cast<DynamicallyLinkedLibrary*> (parent.getLibrary (i - 1)))
        {
            library->close();
            parent.removeLibrary (library);
        }
}

} // namespace tov
