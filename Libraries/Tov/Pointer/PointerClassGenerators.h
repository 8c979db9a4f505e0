#pragma once

#include "ObjectOwnedPointer.h"
#include "ObjectWeakPointer.h"
#include "../Core/TemplateClassGenerator.h"

namespace tov
{

/** Makes the classes of a template whose one parameter is "target", as "OwnedPointer(T)": each
    derives from Base, makes Base objects, and names itself by its friendly name expression. */
template <class Base>
class TargetClassGenerator : public TemplateClassGenerator
{
public:
    explicit TargetClassGenerator (const char* friendlyNameExpression) : friendlyNameExpression (friendlyNameExpression) {}

    class GeneratedClass : public TemplateGeneratedClass
    {
    public:
        explicit GeneratedClass (const char* friendlyNameExpression) : friendlyNameExpression (friendlyNameExpression) {}

        Class* declareBaseClass() override            { return &Base::staticClass; }
        Object* createInstance() const override       { return new Base(); }
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
    void declareParameters (ExecutionContext&) override  { addParameter ("target", "Object"); }

private:
    const char* friendlyNameExpression;
};

/** Makes "OwnedPointer(T)": owned pointers whose class attribute "target" is T. */
class OwnedPointerClassGenerator : public TargetClassGenerator<ObjectOwnedPointer>
{
public:
    OwnedPointerClassGenerator() : TargetClassGenerator ("Child %1") {}
};

/** Makes "WeakPointer(T)": weak pointers whose class attribute "target" is T. */
class WeakPointerClassGenerator : public TargetClassGenerator<ObjectWeakPointer>
{
public:
    WeakPointerClassGenerator() : TargetClassGenerator ("%1 Selector") {}
};

} // namespace tov
