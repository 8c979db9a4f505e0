#include "ObjectConverter.h"
#include "Class.h"
#include "ClassExpression.h"

namespace tov
{

TOV_BEGIN_CLASS (ObjectConverter)
TOV_END_CLASS()

// The caches are filled from class attributes, which never change once the class is
// initialised: two threads that fill one at once write the same value.
static Class* getCachedClassAttribute (const Object& converter, std::atomic<Class*>& cache, const char* name)
{
    if (auto* cached = cache.load())
        return cached;
    auto* ownClass = converter.getClass();
    auto* value = ownClass != nullptr ? ownClass->getClassAttribute (name) : nullptr;
    cache = value;
    return value;
}

Class* ObjectConverter::getTargetClass (Class*, Class*) const
{
    return getCachedClassAttribute (*this, targetClass, "target");
}

Class* ObjectConverter::getSourceClass() const
{
    return getCachedClassAttribute (*this, sourceClass, "source");
}

bool ObjectConverter::isSecret() const
{
    auto* ownClass = getClass();
    return ownClass != nullptr && ownClass->getBooleanAttribute ("secret", false);
}

juce::String ObjectConverter::toString() const
{
    auto* ownClass = getClass();
    return ownClass != nullptr ? ownClass->getFriendlyName() : juce::String();
}

void ObjectConverter::setClass (Class* newClass)
{
    Object::setClass (newClass);
    sourceClass = nullptr;
    targetClass = nullptr;
}

bool ObjectConverter::doesMatch (const Object& object, Class* wantedClass) const
{
    auto* objectClass = object.getClass();
    return Class::inheritsFrom (objectClass, getSourceClass())
        && isCompatible (getTargetClass (objectClass, wantedClass), wantedClass)
        && canConvert (object, wantedClass);
}

//==============================================================================
static bool areTemplateArgumentsCompatible (const State& a, const State& b)
{
    if (a.getType() == StateType::classExpressionType && b.getType() == StateType::classExpressionType)
        return ObjectConverter::isCompatible (a.getClassValue(), b.getClassValue());
    if (a.getType() != StateType::variablesType || b.getType() != StateType::variablesType)
        return false;

    // Class-valued parameters are compared position by position; the others do not count.
    const size_t count = std::min (a.getNumVariables(), b.getNumVariables());
    for (size_t i = 0; i < count; ++i)
    {
        const auto& x = a.getVariableStateRef (i);
        const auto& y = b.getVariableStateRef (i);
        if (x.getType() == StateType::classExpressionType && y.getType() == StateType::classExpressionType
            && ! ObjectConverter::isCompatible (x.getClassValue(), y.getClassValue()))
            return false;
    }
    return true;
}

bool ObjectConverter::isCompatible (Class* a, Class* b)
{
    if (Class::inheritsFrom (a, b))
        return true;
    if (a == nullptr || b == nullptr)
        return false;
    const auto* x = a->getExpression();
    const auto* y = b->getExpression();
    if (x == nullptr || y == nullptr
        || x->getType() != ClassExpression::templateApplication || y->getType() != ClassExpression::templateApplication
        || x->getIdentifier() != y->getIdentifier())
        return false;
    return areTemplateArgumentsCompatible (x->getClassGeneratorArguments(), y->getClassGeneratorArguments());
}

} // namespace tov
