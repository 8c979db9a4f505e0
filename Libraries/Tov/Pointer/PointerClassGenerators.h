#pragma once

#include "ObjectOwnedPointer.h"
#include "ObjectWeakPointer.h"
#include "../Core/TemplateClassGenerator.h"

namespace tov
{

/** Makes "OwnedPointer(T)": owned pointers whose class attribute "target" is T. */
class OwnedPointerClassGenerator : public DerivedClassGenerator<ObjectOwnedPointer>
{
public:
    OwnedPointerClassGenerator() : DerivedClassGenerator ("Child %1", { "target" }) {}
};

/** Makes "WeakPointer(T)": weak pointers whose class attribute "target" is T. */
class WeakPointerClassGenerator : public DerivedClassGenerator<ObjectWeakPointer>
{
public:
    WeakPointerClassGenerator() : DerivedClassGenerator ("%1 Selector", { "target" }) {}
};

} // namespace tov
