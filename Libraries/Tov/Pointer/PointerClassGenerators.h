#pragma once

#include "../Core/TemplateClassGenerator.h"

namespace tov
{

/** Makes "OwnedPointer(T)": owned pointers whose class attribute "target" is T. */
class OwnedPointerClassGenerator : public TemplateClassGenerator
{
public:
    class GeneratedClass : public TemplateGeneratedClass
    {
    public:
        Class* declareBaseClass() override;
        Object* createInstance() const override;
        void declareAttributes (ExecutionContext& context) override;
    };

protected:
    TemplateGeneratedClass* createEmptyClass() override  { return new GeneratedClass(); }
    void declareParameters (ExecutionContext&) override  { addParameter ("target", "Object"); }
};

/** Makes "WeakPointer(T)": weak pointers whose class attribute "target" is T. */
class WeakPointerClassGenerator : public TemplateClassGenerator
{
public:
    class GeneratedClass : public TemplateGeneratedClass
    {
    public:
        Class* declareBaseClass() override;
        Object* createInstance() const override;
        void declareAttributes (ExecutionContext& context) override;
    };

protected:
    TemplateGeneratedClass* createEmptyClass() override  { return new GeneratedClass(); }
    void declareParameters (ExecutionContext&) override  { addParameter ("target", "Object"); }
};

} // namespace tov
