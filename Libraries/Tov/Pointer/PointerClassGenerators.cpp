#include "PointerClassGenerators.h"
#include "ObjectOwnedPointer.h"
#include "ObjectWeakPointer.h"

namespace tov
{

Class* OwnedPointerClassGenerator::GeneratedClass::declareBaseClass()  { return &ObjectOwnedPointer::staticClass; }
Object* OwnedPointerClassGenerator::GeneratedClass::createInstance() const  { return new ObjectOwnedPointer(); }

void OwnedPointerClassGenerator::GeneratedClass::declareAttributes (ExecutionContext& context)
{
    TemplateGeneratedClass::declareAttributes (context);
    setAttribute (context, "friendlyNameExpression", new State ("Child %1"));
}

Class* WeakPointerClassGenerator::GeneratedClass::declareBaseClass()  { return &ObjectWeakPointer::staticClass; }
Object* WeakPointerClassGenerator::GeneratedClass::createInstance() const  { return new ObjectWeakPointer(); }

void WeakPointerClassGenerator::GeneratedClass::declareAttributes (ExecutionContext& context)
{
    TemplateGeneratedClass::declareAttributes (context);
    setAttribute (context, "friendlyNameExpression", new State ("%1 Selector"));
}

} // namespace tov
