#include "ClassRegistry.h"
#include "Class.h"
#include "ClassExpression.h"

namespace tov
{

ClassRegistry& ClassRegistry::getInstance()
{
    static ClassRegistry registry;
    return registry;
}

void ClassRegistry::addDeclaredClass (const juce::String& name, Class* declaredClass)
{
    std::lock_guard<std::recursive_mutex> lock (classesLock);
    classesByName[name] = declaredClass;
}

Class* ClassRegistry::findClass (const juce::String& name)
{
    std::lock_guard<std::recursive_mutex> lock (classesLock);
    auto found = classesByName.find (name);
    return found != classesByName.end() ? found->second : nullptr;
}

void ClassRegistry::initializeAllClasses()
{
    std::lock_guard<std::recursive_mutex> lock (classesLock);
    for (auto& entry : classesByName)
        entry.second->initializeClass();
}

Class* ClassRegistry::resolve (const ClassExpression* expression, juce::String* error)
{
    if (expression == nullptr)
    {
        if (error != nullptr)
            *error = "no class expression";
        return nullptr;
    }
    auto* found = findClass (expression->toString());
    if (found == nullptr && error != nullptr)
        *error = "Could not find class " + expression->toString();
    return found;
}

void registerDeclaredClass (Class* declaredClass, const char* name)
{
    ClassRegistry::getInstance().addDeclaredClass (name, declaredClass);
}

Class* getClass (const juce::String& name)
{
    return ClassRegistry::getInstance().findClass (name);
}

bool hasClass (const juce::String& name)
{
    return getClass (name) != nullptr;
}

} // namespace tov
