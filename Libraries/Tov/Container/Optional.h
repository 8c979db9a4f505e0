#pragma once

#include "../Atomic/Boolean.h"

namespace tov
{

/** The base of an object whose variables can be switched off together: beside its own
    variables it holds "enable", and none of the others can be edited while it is off.

        class Fog : public Optional
        {
        public:
            TOV_DECLARE_CLASS (Fog, Optional)
            Real density;
        };
*/
class Optional : public Object
{
public:
    TOV_DECLARE_CLASS (Optional, Object)

    Boolean enable;

    bool isEnabled() const noexcept                  { return enable.get(); }
    bool getEnabled() const noexcept                 { return enable.get(); }
    void setEnabled (bool enabled, bool notify = true)  { enable.set (enabled, notify); }

    /** "enable" is always found, whatever the class declares. */
    Object* getVariableByName (juce::StringRef name) override;
    using Object::getVariableByName;
    /** enable is editable as any variable is; every other one also depends on enable, and
        is not editable while the object is off. */
    bool isVariableEditable (const Object* variable, VariableDependenciesDeclarator& declarator) const override;
};

} // namespace tov
