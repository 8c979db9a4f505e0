#include "AutoDeclaredSingletons.h"
#include "Class.h"

namespace tov
{

AutoDeclaredSingletons::~AutoDeclaredSingletons()
{
    for (auto* singleton : singletons)
        singleton->deleteThis();
}

void AutoDeclaredSingletons::declareClass (Class* declaredClass)
{
    if (baseClass == nullptr)
    {
        if (declaredClass->getName() == baseClassName)
            baseClass = declaredClass;
        return;
    }
    if (declaredClass->inheritsFrom (baseClass) && ! declaredClass->isAbstract())
        if (auto* singleton = declaredClass->createObject (nullptr))
            singletons.push_back (singleton);
}

void AutoDeclaredSingletons::undeclareClass (Class* declaredClass)
{
    for (auto it = singletons.begin(); it != singletons.end();)
    {
        if ((*it)->getClassWithoutLookUp() == declaredClass)
        {
            (*it)->deleteThis();
            it = singletons.erase (it);
        }
        else
        {
            ++it;
        }
    }
    if (baseClass == declaredClass)
        baseClass = nullptr;
}

Object* AutoDeclaredSingletons::getSingletonByName (const juce::String& className) const
{
    for (auto* singleton : singletons)
        if (singleton->getClassName() == className)
            return singleton;
    return nullptr;
}

Object* AutoDeclaredSingletons::getSingletonByFriendlyName (const juce::String& friendlyName) const
{
    for (auto* singleton : singletons)
        if (singleton->getFriendlyName() == friendlyName)
            return singleton;
    return nullptr;
}

Object* AutoDeclaredSingletons::getFirstSingletonByClass (Class* requiredClass) const
{
    for (auto* singleton : singletons)
        if (Class::inheritsFrom (singleton->getClass(), requiredClass))
            return singleton;
    return nullptr;
}

void AutoDeclaredSingletons::getSingletonsByClass (Class* requiredClass, std::vector<Object*>& result) const
{
    for (auto* singleton : singletons)
        if (Class::inheritsFrom (singleton->getClass(), requiredClass))
            result.push_back (singleton);
}

juce::StringArray AutoDeclaredSingletons::getFriendlyNames() const
{
    juce::StringArray names;
    for (auto* singleton : singletons)
        names.add (singleton->getFriendlyName());
    return names;
}

} // namespace tov
