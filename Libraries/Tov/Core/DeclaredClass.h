#pragma once

#include "ClassDeclaration.h"
#include "ClassExpression.h"
#include <type_traits>

namespace tov
{

class ExecutionContext;

/** Applies the attributes of a declaration to a class or to one of its signatures. */
void declareAttributesFromText (Class& owner, ExecutionContext& context, AttributesHost* target,
                                const AttributeTextList& attributes, const juce::String& sourcePrefix);

/** Declares the member variables that a TOV_BEGIN_CLASS block lists. */
void declareMemberVariablesFromDeclaration (Class& owner, ExecutionContext& context, const ClassDeclaration& declaration);
/** Declares the methods that a TOV_BEGIN_CLASS block lists. */
void declareMethodsFromDeclaration (Class& owner, ExecutionContext& context, const ClassDeclaration& declaration);

/** The metaclass that the declaration macros make for a C++ class T.

    Everything comes from T's ClassDeclaration: attributes, members in order,
    and the base class from T::Super. MetaclassBase lets a family of classes
    share a metaclass with overrides of its own (versions, descriptions, ...).
*/
template <class T, class MetaclassBase>
class DeclaredClass : public MetaclassBase
{
public:
    explicit DeclaredClass (const char* name)
    {
        this->setDeclaredName (name);
    }

    bool isAbstract() const override
    {
        return std::is_abstract_v<T> || ! std::is_default_constructible_v<T>;
    }

    Class* declareBaseClass() override
    {
        if constexpr (std::is_void_v<typename T::Super>)
            return nullptr;
        else
            return classOf<typename T::Super>();
    }

    Object* createInstance() const override
    {
        if constexpr (std::is_abstract_v<T> || ! std::is_default_constructible_v<T>)
            return nullptr;
        else
            return new T();
    }

    Object* getMemberVariable (Object* object, size_t index) const override
    {
        const size_t inherited = this->getBaseClassNumMemberVariables();
        if (index < inherited)
            return MetaclassBase::getMemberVariable (object, index);
        const auto& variables = T::getClassDeclaration().variables;
        index -= inherited;
        return object != nullptr && index < variables.size() ? variables[index].access (object) : nullptr;
    }

    Class* getMethodClass (size_t index) const override
    {
        const size_t inherited = this->getBaseClassNumMethods();
        if (index < inherited)
            return MetaclassBase::getMethodClass (index);
        const auto& methods = T::getClassDeclaration().methods;
        index -= inherited;
        return index < methods.size() ? methods[index].methodClass() : nullptr;
    }

    void declareAttributes (ExecutionContext& context) override
    {
        MetaclassBase::declareAttributes (context);
        declareAttributesFromText (*this, context, this, T::getClassDeclaration().attributes, T::getClassDeclaration().name);
    }

    void declareMemberVariables (ExecutionContext& context) override
    {
        MetaclassBase::declareMemberVariables (context);
        declareMemberVariablesFromDeclaration (*this, context, T::getClassDeclaration());
    }

    void declareMethods (ExecutionContext& context) override
    {
        MetaclassBase::declareMethods (context);
        declareMethodsFromDeclaration (*this, context, T::getClassDeclaration());
    }
};

} // namespace tov
