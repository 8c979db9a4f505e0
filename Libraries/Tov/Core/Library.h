#pragma once

#include "Object.h"
#include <memory>
#include <vector>

namespace tov
{

class ClassGenerator;
class AutoDeclaredSingletons;

/** A node of the library tree: owns child libraries, classes and class generators.

    The root, "<root>", holds "Tov" with its sub-libraries, then the
    application's libraries and plug-in modules. Initialising a library
    initialises its classes, then its children, in order of adding.
*/
class Library : public Object
{
public:
    TOV_DECLARE_CLASS (Library, Object)

    explicit Library (const juce::File& sourceCodeDirectory = {});
    ~Library() override;

    virtual juce::String getName() const                { return "<root>"; }
    virtual juce::String getDescription() const         { return {}; }
    virtual void initializeLibrary();
    virtual void deinitializeLibrary();

    juce::String getFriendlyName() const override       { return getName(); }
    juce::String toString() const override              { return getName(); }

    const juce::File& getSourceCodeDirectory() const noexcept { return sourceCodeDirectory; }
    bool isInitialized() const noexcept                 { return initialized; }

    //==============================================================================
    /** Takes ownership; a library added to an initialised one is initialised at once. */
    void addLibrary (Library* library);
    void removeLibrary (Library* library);
    void removeLibrary (const juce::String& name);
    size_t getNumLibraries() const noexcept             { return libraries.size(); }
    Library* getLibrary (size_t index) const            { return libraries[index].get(); }
    Library* getLibraryByName (const juce::String& name) const;
    /** "Tov/Message/Mirroring": one segment per level. */
    Library* getLibraryByPath (const juce::String& path) const;

    //==============================================================================
    /** Names the class, enters it in the registry and lists it here; it is not initialised yet. */
    void addClass (const juce::String& name, Class* declaredClass);
    template <class T> void addClass()                  { addClass (T::getClassDeclaration().name, &T::staticClass); }
    void removeClass (Class* declaredClass);
    size_t getNumClasses() const noexcept               { return classes.size(); }
    Class* getClass (size_t index) const                { return classes[index]; }
    using Object::getClass;
    void getAllClassesInheritedFrom (Class* baseClass, bool excludeAbstract, std::vector<Class*>& result) const;
    Class* getClassByUuid (const juce::Uuid& uuid) const;

    /** Takes ownership of the generator. */
    void addClassGenerator (const juce::String& name, ClassGenerator* generator);
    void removeClassGenerator (const juce::String& name);
    size_t getNumClassGenerators() const noexcept       { return classGenerators.size(); }
    ClassGenerator* getClassGenerator (size_t index) const { return classGenerators[index].get(); }

    /** Removes child libraries, classes and generators, each from the last. */
    void reset();
    /** Releases the default objects of every class in this subtree, generated ones included. */
    void releaseClassDefaultObjects();

    //==============================================================================
    static Library* getRootLibrary();
    static void addAutoDeclaredSingletons (AutoDeclaredSingletons* singletons);
    static void removeAutoDeclaredSingletons (AutoDeclaredSingletons* singletons);

private:
    juce::File sourceCodeDirectory;
    std::vector<std::unique_ptr<Library>> libraries;
    std::vector<Class*> classes;
    std::vector<std::unique_ptr<ClassGenerator>> classGenerators;
    bool initialized = false;
};

/** A library with a fixed name, as the sub-libraries of the tree are. */
class NamedLibrary : public Library
{
public:
    NamedLibrary (const juce::String& name, const juce::File& sourceCodeDirectory)
        : Library (sourceCodeDirectory), name (name) {}

    juce::String getName() const override { return name; }

private:
    juce::String name;
};

/** Builds the registry and the library tree, and initialises every class; returns the root. */
Library* initializeTov();

/** Tears the tree and the registry down; initializeTov may run again afterwards. */
void deinitializeTov();

/** The "Tov" library with its sub-libraries, in the tree's order. */
Library* createTovLibrary();

} // namespace tov
