#pragma once

#include "ObjectOption.h"
#include "../Core/ClassRegistry.h"

namespace tov
{

/** An optional T, of class "Option(T)": the typed front of ObjectOption. */
template <class T>
class Option : public ObjectOption
{
public:
    Option()
    {
        if (auto* generated = lookUpTemplateClass())
            setClass (generated);
    }

    T* getValue() const                              { return static_cast<T*> (ObjectOption::getValue()); }
    T* operator->() const                            { return getValue(); }

    juce::String getClassName() const override       { return "Option(" + classOf<T>()->getName() + ")"; }
    /** "Option(T)", made when first named. */
    static Class* lookUpTemplateClass()              { return optionClass (classOf<T>()); }

protected:
    Class* lookUpClass() const override              { return lookUpTemplateClass(); }
};

} // namespace tov
