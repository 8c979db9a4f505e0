#pragma once

#include "../Core/Object.h"

namespace tov
{

/** A variable whose value is a whole State, saved and loaded as it is. */
class StateObject : public Object
{
public:
    TOV_DECLARE_CLASS (StateObject, Object)

    const std::shared_ptr<State>& get() const noexcept { return state; }
    /** With notify, calls changed() only when the new state differs. */
    void set (const std::shared_ptr<State>& newState, bool notify = true);

    bool equalsSameClass (const Object& other) const override;
    void copyTo (Object& target) const override;
    juce::String toString() const override;
    void save (ObjectExporter& exporter) const override;
    bool load (ObjectImporter& importer) override;

private:
    std::shared_ptr<State> state;
};

} // namespace tov
