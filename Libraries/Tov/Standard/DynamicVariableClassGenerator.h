#pragma once

#include "DynamicVariable.h"
#include "../Core/TemplateClassGenerator.h"

namespace tov
{

/** Makes "DynamicVariable(T)": dynamic variables whose class attribute "value" is T, and whose
    variable "value" is declared of class T. */
class DynamicVariableClassGenerator : public DerivedClassGenerator<DynamicVariable>
{
public:
    DynamicVariableClassGenerator() : DerivedClassGenerator ("Custom Parameter", { "value" }) {}

    class DynamicVariableClass : public GeneratedClass
    {
    public:
        using GeneratedClass::GeneratedClass;

        void declareMemberVariables (ExecutionContext& context) override
        {
            GeneratedClass::declareMemberVariables (context);
            if (auto* valueSignature = findMemberVariableSignature ("value"))
                valueSignature->setValueClass (getClassAttribute ("value", &Object::staticClass));
        }
    };

protected:
    TemplateGeneratedClass* createEmptyClass() override  { return new DynamicVariableClass (friendlyNameExpression); }
};

} // namespace tov
