#pragma once

#include "ObjectMap.h"
#include "ObjectOption.h"
#include "ObjectOwnedVector.h"
#include "ObjectSelection.h"
#include "../Core/TemplateClassGenerator.h"

namespace tov
{

/** Makes "OwnedVector(T)": vectors whose class attribute "target" is T. */
class OwnedVectorClassGenerator : public DerivedClassGenerator<ObjectOwnedVector>
{
public:
    OwnedVectorClassGenerator() : DerivedClassGenerator ("List of %1s", { "target" }) {}
};

/** Makes "Selection(T)": selections whose class attribute "target" is T. */
class SelectionClassGenerator : public DerivedClassGenerator<ObjectSelection>
{
public:
    SelectionClassGenerator() : DerivedClassGenerator ("Selection of %1s", { "target" }) {}
};

/** Makes "Map({key=K,value=V})": maps whose class attributes "key" and "value" are K and V. */
class MapClassGenerator : public DerivedClassGenerator<ObjectMap>
{
public:
    MapClassGenerator() : DerivedClassGenerator ("List of %2s per %1", { "key", "value" }) {}
};

/** Makes "Option(T)": options whose class attribute "value" is T, and whose member "value",
    after "enable", is the T that the option holds. */
class OptionClassGenerator : public DerivedClassGenerator<ObjectOption>
{
public:
    OptionClassGenerator() : DerivedClassGenerator ("%1 (Optional)", { "value" }) {}

    class OptionClass : public GeneratedClass
    {
    public:
        using GeneratedClass::GeneratedClass;

        void declareMemberVariables (ExecutionContext& context) override
        {
            GeneratedClass::declareMemberVariables (context);
            addMemberVariable (getClassAttribute ("value", &Object::staticClass), "value");
        }

        Object* getMemberVariable (Object* object, size_t index) const override
        {
            if (index < getBaseClassNumMemberVariables())
                return GeneratedClass::getMemberVariable (object, index);
            return object != nullptr ? static_cast<ObjectOption*> (object)->getValue() : nullptr;
        }
    };

protected:
    TemplateGeneratedClass* createEmptyClass() override  { return new OptionClass (friendlyNameExpression); }
};

} // namespace tov
