#pragma once

#include <juce_core/juce_core.h>
#include <vector>

namespace tov
{

class Class;
class Object;

/** Holds one instance of every concrete class derived from a named base class.

    Every class tells the registered singletons about itself as it is
    initialised, so instances appear as soon as their classes are known.
*/
class AutoDeclaredSingletons
{
public:
    explicit AutoDeclaredSingletons (const juce::String& baseClassName) : baseClassName (baseClassName) {}
    virtual ~AutoDeclaredSingletons();

    void declareClass (Class* declaredClass);
    void undeclareClass (Class* declaredClass);

    Class* getBaseClass() const noexcept                 { return baseClass; }
    size_t getNumSingletons() const noexcept             { return singletons.size(); }
    Object* getSingleton (size_t index) const            { return singletons[index]; }
    Object* getSingletonByName (const juce::String& className) const;
    Object* getSingletonByFriendlyName (const juce::String& friendlyName) const;
    Object* getFirstSingletonByClass (Class* requiredClass) const;
    void getSingletonsByClass (Class* requiredClass, std::vector<Object*>& result) const;
    juce::StringArray getFriendlyNames() const;

private:
    juce::String baseClassName;
    Class* baseClass = nullptr;
    std::vector<Object*> singletons;
};

} // namespace tov
