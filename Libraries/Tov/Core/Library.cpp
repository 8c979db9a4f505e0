#include "Library.h"
#include "AutoDeclaredSingletons.h"
#include "ClassExpression.h"
#include "ClassGenerator.h"
#include "ClassRegistry.h"

namespace tov
{

TOV_BEGIN_CLASS (Library)
TOV_END_CLASS()

Library::Library (const juce::File& sourceCodeDirectory)
    : sourceCodeDirectory (sourceCodeDirectory)
{
}

Library::~Library()
{
    reset();
}

//==============================================================================
void Library::initializeLibrary()
{
    for (auto* declaredClass : classes)
        declaredClass->initializeClass();
    for (auto& library : libraries)
        library->initializeLibrary();
    initialized = true;
}

void Library::deinitializeLibrary()
{
    if (! initialized)
        return;
    for (auto it = libraries.rbegin(); it != libraries.rend(); ++it)
        (*it)->deinitializeLibrary();
    for (auto it = classes.rbegin(); it != classes.rend(); ++it)
        (*it)->deinitializeClass();
    initialized = false;
}

//==============================================================================
void Library::addLibrary (Library* library)
{
    library->setParent (this);
    libraries.emplace_back (library);
    if (initialized)
        library->initializeLibrary();
}

void Library::removeLibrary (Library* library)
{
    for (auto it = libraries.begin(); it != libraries.end(); ++it)
        if (it->get() == library)
        {
            library->deinitializeLibrary();
            auto removed = std::move (*it);
            libraries.erase (it);
            return;
        }
}

void Library::removeLibrary (const juce::String& name)
{
    if (auto* library = getLibraryByName (name))
        removeLibrary (library);
}

Library* Library::getLibraryByName (const juce::String& name) const
{
    for (auto& library : libraries)
        if (library->getName() == name)
            return library.get();
    return nullptr;
}

Library* Library::getLibraryByPath (const juce::String& path) const
{
    const int separator = path.indexOfChar ('/');
    if (separator < 0)
        return getLibraryByName (path);
    auto* first = getLibraryByName (path.substring (0, separator));
    return first != nullptr ? first->getLibraryByPath (path.substring (separator + 1)) : nullptr;
}

//==============================================================================
void Library::addClass (const juce::String& name, Class* declaredClass)
{
    declaredClass->setLibrary (this);
    declaredClass->setExpression (createAtomicClassExpression (name));
    if (auto* registry = ClassRegistry::getInstance())
        registry->addClass (declaredClass->getExpression(), declaredClass);
    classes.push_back (declaredClass);
}

// Declared metaclasses are static objects: removing one empties its tables
// instead of destroying it, so that a later tree can add it again.
void Library::removeClass (Class* declaredClass)
{
    auto found = std::find (classes.begin(), classes.end(), declaredClass);
    if (found == classes.end())
        return;
    classes.erase (found);
    if (auto* registry = ClassRegistry::getInstanceIfExists())
        registry->removeClass (declaredClass->getExpression());
    declaredClass->deinitializeClass();
    declaredClass->setLibrary (nullptr);
}

void Library::getAllClassesInheritedFrom (Class* baseClass, bool excludeAbstract, std::vector<Class*>& result) const
{
    for (auto* declaredClass : classes)
        if (declaredClass->inheritsFrom (baseClass) && ! (excludeAbstract && declaredClass->isAbstract()))
            result.push_back (declaredClass);
    for (auto& library : libraries)
        library->getAllClassesInheritedFrom (baseClass, excludeAbstract, result);
}

Class* Library::getClassByUuid (const juce::Uuid& uuid) const
{
    for (auto* declaredClass : classes)
        if (declaredClass->getClassUniqueIdentifier() == uuid)
            return declaredClass;
    for (auto& library : libraries)
        if (auto* found = library->getClassByUuid (uuid))
            return found;
    return nullptr;
}

//==============================================================================
void Library::addClassGenerator (const juce::String& name, ClassGenerator* generator)
{
    generator->setLibrary (this);
    generator->setName (name);
    if (auto* registry = ClassRegistry::getInstance())
        registry->addGenerator (name, generator);
    classGenerators.emplace_back (generator);
}

void Library::removeClassGenerator (const juce::String& name)
{
    for (auto it = classGenerators.begin(); it != classGenerators.end(); ++it)
        if ((*it)->getName() == name)
        {
            if (auto* registry = ClassRegistry::getInstanceIfExists())
                registry->removeGenerator (name);
            classGenerators.erase (it);
            return;
        }
}

void Library::reset()
{
    while (! libraries.empty())
        removeLibrary (libraries.back().get());
    while (! classes.empty())
        removeClass (classes.back());
    while (! classGenerators.empty())
        removeClassGenerator (classGenerators.back()->getName());
}

void Library::releaseClassDefaultObjects()
{
    for (auto& library : libraries)
        library->releaseClassDefaultObjects();
    for (auto* declaredClass : classes)
        declaredClass->releaseDefaultObject();
    if (auto* registry = ClassRegistry::getInstanceIfExists())
        for (auto& generator : classGenerators)
            registry->releaseGeneratedDefaultObjects (generator->getName());
}

//==============================================================================
Library* Library::getRootLibrary()
{
    auto* registry = ClassRegistry::getInstance();
    return registry != nullptr ? &registry->getRootLibrary() : nullptr;
}

void Library::addAutoDeclaredSingletons (AutoDeclaredSingletons* singletons)
{
    if (auto* registry = ClassRegistry::getInstance())
        registry->addAutoDeclaredSingletons (singletons);
}

void Library::removeAutoDeclaredSingletons (AutoDeclaredSingletons* singletons)
{
    if (auto* registry = ClassRegistry::getInstanceIfExists())
        registry->removeAutoDeclaredSingletons (singletons);
}

//==============================================================================
Library* initializeTov()
{
    auto* root = Library::getRootLibrary();
    root->addLibrary (createTovLibrary());
    root->initializeLibrary();
    return root;
}

void deinitializeTov()
{
    // The metaclass of metaclasses must not refer to itself while the tree goes.
    Class::staticClass.setClass (nullptr);
    if (auto* registry = ClassRegistry::getInstanceIfExists())
        registry->getRootLibrary().reset();
    ClassRegistry::destroyInstance();
}

} // namespace tov
