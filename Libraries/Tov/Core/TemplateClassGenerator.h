#pragma once

#include "Class.h"
#include "ClassGenerator.h"
#include <atomic>
#include <initializer_list>
#include <type_traits>
#include <vector>

namespace tov
{

class TemplateGeneratedClass;

/** A generator whose classes take named parameters, as "OwnedVector(target)" or "Map(key, value)".

    Arguments are matched to the declared parameters by position: a class
    argument fills the next parameter, and the variables of an object
    argument fill the following ones in their order, their names only having
    to exist.
*/
class TemplateClassGenerator : public ClassGenerator
{
public:
    Class* create (const State& arguments, juce::String& errorMessage) override;

    /** Appends a parameter; a class name that does not resolve leaves it out. */
    void addParameter (const juce::String& name, const juce::String& className);
    int findParameter (const juce::String& name);
    size_t getNumParameters();
    void ensureParametersAreDeclared();

    /** The argument must be a class that inherits from the required one. */
    bool checkArgumentInheritFrom (const State& argument, Class* requiredClass, juce::String& errorMessage) const;

protected:
    virtual TemplateGeneratedClass* createEmptyClass() = 0;
    virtual void declareParameters (ExecutionContext& context) = 0;

private:
    std::atomic<bool> parametersDeclared { false };
    juce::CriticalSection parametersLock;
    std::vector<std::pair<juce::String, Class*>> parameters;

    bool addTemplateParametersRecursively (const State& state, size_t& position, juce::String& errorMessage,
                                           TemplateGeneratedClass& generatedClass);
};

/** A class made by a TemplateClassGenerator; its parameters become its class attributes. */
class TemplateGeneratedClass : public Class
{
public:
    size_t getNumTemplateParameters() const noexcept                { return templateParameters.size(); }
    const juce::String& getTemplateParameterName (size_t index) const  { return templateParameters[index].first; }
    const std::shared_ptr<State>& getTemplateParameterValue (size_t index) const { return templateParameters[index].second; }
    void addTemplateParameter (const juce::String& name, const std::shared_ptr<State>& value);

    std::shared_ptr<State> createAttribute (ExecutionContext& context, const juce::String& text, const juce::String& sourceName) override;
    void declareAttributes (ExecutionContext& context) override;
    /** Expands "friendlyNameExpression": %1, %2... stand for the parameters. */
    juce::String computeFriendlyName() const override;
    juce::String computeNameForFriendlyNames() const override;

private:
    std::vector<std::pair<juce::String, std::shared_ptr<State>>> templateParameters;

    juce::String getParameterText (size_t index) const;
};

//==============================================================================
/** Makes the classes of a template whose instances are Base objects, as "OwnedPointer(T)" or
    "Map({key=K,value=V})": each generated class derives from Base, makes Base objects, takes
    the named parameters (each requiring Object) as its class attributes, and names itself by
    its friendly name expression. A generator whose classes need more derives GeneratedClass
    and overrides createEmptyClass.
*/
template <class Base>
class DerivedClassGenerator : public TemplateClassGenerator
{
public:
    DerivedClassGenerator (const char* friendlyNameExpression, std::initializer_list<const char*> parameterNames)
        : friendlyNameExpression (friendlyNameExpression), parameterNames (parameterNames) {}

    class GeneratedClass : public TemplateGeneratedClass
    {
    public:
        explicit GeneratedClass (const char* friendlyNameExpression) : friendlyNameExpression (friendlyNameExpression) {}

        Class* declareBaseClass() override            { return &Base::staticClass; }
        /** A generated class of an abstract base is abstract: concrete classes derive from it. */
        bool isAbstract() const override              { return std::is_abstract_v<Base>; }
        Object* createInstance() const override
        {
            if constexpr (std::is_abstract_v<Base>)
                return nullptr;
            else
                return new Base();
        }
        void declareAttributes (ExecutionContext& context) override
        {
            TemplateGeneratedClass::declareAttributes (context);
            setAttribute (context, "friendlyNameExpression", new State (juce::String (friendlyNameExpression)));
        }

    private:
        const char* friendlyNameExpression;
    };

protected:
    TemplateGeneratedClass* createEmptyClass() override  { return new GeneratedClass (friendlyNameExpression); }
    void declareParameters (ExecutionContext&) override
    {
        for (auto* name : parameterNames)
            addParameter (name, "Object");
    }

    const char* const friendlyNameExpression;

private:
    const std::vector<const char*> parameterNames;
};

} // namespace tov
