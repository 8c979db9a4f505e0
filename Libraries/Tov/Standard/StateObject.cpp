#include "StateObject.h"
#include "../Core/ObjectExporter.h"
#include "../Core/ObjectImporter.h"

namespace tov
{

TOV_BEGIN_CLASS (StateObject)
TOV_END_CLASS()

void StateObject::set (const std::shared_ptr<State>& newState, bool notify)
{
    const bool differs = ! State::equals (state, newState);
    state = newState;
    if (notify && differs)
        changed();
}

bool StateObject::equalsSameClass (const Object& other) const
{
    return State::equals (state, static_cast<const StateObject&> (other).state);
}

void StateObject::copyTo (Object& target) const
{
    copyClassTo (target);
    static_cast<StateObject&> (target).state = state;
}

juce::String StateObject::toString() const
{
    return state != nullptr ? state->toShortString() : juce::String();
}

void StateObject::save (ObjectExporter& exporter) const
{
    exporter.writeState (state);
}

bool StateObject::load (ObjectImporter& importer)
{
    return importer.readState (state);
}

} // namespace tov
