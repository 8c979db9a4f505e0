#pragma once

#include "Library.h"
#include <juce_core/juce_core.h>
#include <initializer_list>
#include <map>
#include <memory>
#include <vector>

namespace tov
{

class AutoDeclaredSingletons;
class Class;
class ClassExpression;
class ClassGenerator;

/** The process-wide table through which a class is found by its expression.

    It exists from the first initializeTov to deinitializeTov, and owns the
    root of the library tree, the classes that generators made and the
    auto-declared singletons. Lookups may come from any thread; the tables
    have their own locks, classesLock (recursive) before generatorsLock.
*/
class ClassRegistry
{
public:
    /** The registry, created when needed; null while it is being created. */
    static ClassRegistry* getInstance();
    /** The registry if it exists, without creating it. */
    static ClassRegistry* getInstanceIfExists();
    static void destroyInstance();

    Library& getRootLibrary() noexcept                  { return rootLibrary; }

    void addClass (const ClassExpression* expression, Class* declaredClass);
    void removeClass (const ClassExpression* expression);

    /** The class of an expression, generating it when needed; null with the reason in error. */
    Class* resolve (const ClassExpression* expression, juce::String* error = nullptr);

    void addGenerator (const juce::String& name, ClassGenerator* generator);
    /** Forgets the generator and destroys the classes it made. */
    void removeGenerator (const juce::String& name);
    void releaseGeneratedDefaultObjects (const juce::String& generatorName);

    void addAutoDeclaredSingletons (AutoDeclaredSingletons* singletons);
    void removeAutoDeclaredSingletons (AutoDeclaredSingletons* singletons);
    void declareClass (Class* declaredClass);
    void undeclareClass (Class* declaredClass);

private:
    struct GeneratorEntry
    {
        ClassGenerator* generator = nullptr;
        std::vector<std::unique_ptr<Class>> generatedClasses;
    };

    juce::CriticalSection classesLock;
    std::map<const ClassExpression*, Class*> classesByExpression;
    juce::CriticalSection generatorsLock;
    std::map<juce::String, GeneratorEntry> generators;
    std::vector<std::unique_ptr<AutoDeclaredSingletons>> autoDeclaredSingletons;
    Library rootLibrary;

    ClassRegistry() = default;
    ~ClassRegistry();
    Class* resolveClassParameter (const ClassExpression* expression, juce::String* error);
    Class* generateClass (const ClassExpression* expression, juce::String* error);
};

/** The class named by the text, or null; the reason is dropped. */
Class* getClass (const juce::String& text);
bool hasClass (const juce::String& text);

/** The class of templateName applied to the argument class, made when new; null for a null argument. */
Class* getTemplateClass (const juce::String& templateName, Class* argument);
/** The class of templateName applied to named class arguments, as "Map({key=K,value=V})"; null
    when an argument is null. */
Class* getTemplateClass (const juce::String& templateName, std::initializer_list<std::pair<const char*, Class*>> arguments);
Class* ownedVectorClass (Class* targetClass);
Class* mapClass (Class* keyClass, Class* valueClass);
Class* optionClass (Class* valueClass);
Class* selectionClass (Class* targetClass);
Class* ownedPointerClass (Class* targetClass);
Class* weakPointerClass (Class* targetClass);

} // namespace tov
