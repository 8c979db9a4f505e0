#include "DynamicVariableTestSupport.h"
#include <Tov/Core/ClassRegistry.h>

namespace tov::test
{

TOV_BEGIN_CLASS (Sheet)
    TOV_VARIABLE (name)
    TOV_VARIABLE (count)
    TOV_VARIABLE (parameters)
TOV_END_CLASS()

TOV_BEGIN_CLASS (HsvColor)
    TOV_VARIABLE (red)
    TOV_VARIABLE (green)
    TOV_VARIABLE (blue)
TOV_END_CLASS()

TOV_BEGIN_CLASS (Knob)
TOV_END_CLASS()

TOV_BEGIN_CLASS (IntegerKnob, { "target", "Integer" })
TOV_END_CLASS()

TOV_BEGIN_CLASS (AncestorKnob)
TOV_END_CLASS()

TOV_BEGIN_CLASS (CountKnob, { "requiresVariableOfClass", "Integer" })
TOV_END_CLASS()

TOV_BEGIN_CLASS (CompoundKnob, { "requiresVariables", "true" })
TOV_END_CLASS()

TOV_BEGIN_CLASS (SameClassKnob, { "mustBeConvertibleTo", "Sheet" })
TOV_END_CLASS()

TOV_BEGIN_CLASS (Panel)
    TOV_VARIABLE (accessor)
    TOV_VARIABLE (knob)
TOV_END_CLASS()

TOV_BEGIN_CLASS (Gauge)
    TOV_READ_ONLY_VARIABLE (level)
TOV_END_CLASS()

void ensureDynamicVariableTestLibrary()
{
    ensureContainerTestLibrary();
    auto* root = Library::getRootLibrary();
    if (root == nullptr || root->getLibraryByName ("DynamicVariableTests") != nullptr)
        return;
    auto* library = new NamedLibrary ("DynamicVariableTests", {});
    library->addClass<Sheet>();
    library->addClass<HsvColor>();
    library->addClass<Knob>();
    library->addClass<IntegerKnob>();
    library->addClass<AncestorKnob>();
    library->addClass<CountKnob>();
    library->addClass<CompoundKnob>();
    library->addClass<SameClassKnob>();
    library->addClass<Panel>();
    library->addClass<Gauge>();
    root->addLibrary (library);
}

Class* DynamicVariableTestBase::variableClass (const juce::String& valueClassName)
{
    return getClass ("DynamicVariable(" + valueClassName + ")");
}

DynamicVariable* DynamicVariableTestBase::makeVariable (const juce::String& name, const Object& value, const Object* defaultValue,
                                                      const StateMap& attributes)
{
    return DynamicVariable::create (variableClass (value.getClassName()), name, &value, defaultValue, attributes);
}

StateMap DynamicVariableTestBase::attribute (const juce::String& name, State* state)
{
    StateMap attributes;
    attributes[name] = std::shared_ptr<State> (state);
    return attributes;
}

juce::String DynamicVariableTestBase::describeParameters() const
{
    juce::StringArray parts;
    for (auto* variable : sheet->parameters)
        parts.add (variable->getFriendlyName() + "=" + variable->getValue()->toString());
    return parts.joinIntoString (", ");
}

} // namespace tov::test
