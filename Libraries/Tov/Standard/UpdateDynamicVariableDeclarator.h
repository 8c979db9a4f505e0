#pragma once

#include "DynamicVariableDeclarator.h"
#include <map>
#include <utility>
#include <vector>

namespace tov
{

class Class;
class DynamicVariableVector;

/** Re-declares the variables of a vector without losing what was set: a declaration that matches
    an existing variable (same value class, and same identifier or friendly name) keeps that
    variable, its value and its identity, and only takes the new name, default and attributes.
    update then makes the vector hold exactly the declared variables, in declaration order.

        UpdateDynamicVariableDeclarator declarator (parameters);
        declarator.variable ("Speed", &one, &one, {});
        declarator.update (parameters);   // "Speed" alone, with the speed that the user set
*/
class UpdateDynamicVariableDeclarator : public DynamicVariableDeclarator
{
public:
    explicit UpdateDynamicVariableDeclarator (const DynamicVariableVector& existing);
    ~UpdateDynamicVariableDeclarator() override;

    DynamicVariable* variable (const juce::String& name, const Object* value, const Object* defaultValue,
                               const StateMap& attributes) override;
    /** The vector holds the declared variables; the others are dropped. */
    void update (DynamicVariableVector& vector);

    /** The class of dynamic variable for values of that class and the value class it holds:
        a class related to the value's ("ColorDynamicVariable" for Color), else "DynamicVariable(T)". */
    static std::pair<Class*, Class*> findVariableClasses (const Object& value);

private:
    using Key = std::pair<Class*, juce::String>;
    std::map<Key, DynamicVariable*> existingVariables;
    std::vector<DynamicVariable*> output;

    DynamicVariable* find (Class* valueClass, const juce::String& identifier, const juce::String& name) const;
};

} // namespace tov
