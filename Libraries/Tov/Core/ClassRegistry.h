#pragma once

#include <juce_core/juce_core.h>
#include <map>
#include <mutex>

namespace tov
{

class Class;
class ClassExpression;

/** Finds classes by name and by expression.

    Every declared class registers itself here when its metaclass is built,
    so that objects and States can find classes by name.
*/
class ClassRegistry
{
public:
    static ClassRegistry& getInstance();

    void addDeclaredClass (const juce::String& name, Class* declaredClass);

    /** The class of an expression; null with a reason in error when it cannot be had. */
    Class* resolve (const ClassExpression* expression, juce::String* error = nullptr);
    Class* findClass (const juce::String& name);

    /** Runs initializeClass on every class registered so far. */
    void initializeAllClasses();

private:
    std::recursive_mutex classesLock;
    std::map<juce::String, Class*> classesByName;
};

/** The class of that name, or null. */
Class* getClass (const juce::String& name);
bool hasClass (const juce::String& name);

} // namespace tov
