#pragma once

#include <juce_core/juce_core.h>
#include <memory>
#include <utility>
#include <vector>

namespace tov
{

class State;

/** An ordered list of names and shared States; also the storage of attributes.

    Maps are short (a class has a handful of attributes), so lookups scan the
    list linearly and compare whole names; insertion order is kept because
    declarations and saved files rely on it.
*/
class StateMap
{
public:
    using Entry = std::pair<juce::String, std::shared_ptr<State>>;

    /** The first index holding the name, or -1. */
    int find (juce::StringRef name) const;

    /** The entry of that name, added at the end with a null state when absent. */
    std::shared_ptr<State>& operator[] (juce::StringRef name);

    /** Overwrites entries of the same name in place and appends new ones; states are shared. */
    void append (const StateMap& other);

    /** Removes the first entry of that name, if there is one. */
    void remove (juce::StringRef name);

    const std::shared_ptr<State>& getState (size_t index) const { return entries[index].second; }
    State* getStateRef (size_t index) const                     { return entries[index].second.get(); }
    const juce::String& getStateName (size_t index) const       { return entries[index].first; }
    const std::vector<Entry>& getMap() const noexcept           { return entries; }

    void clear()                                                { entries.clear(); }
    size_t size() const noexcept                                { return entries.size(); }
    bool isEmpty() const noexcept                               { return entries.empty(); }
    bool isNotEmpty() const noexcept                            { return ! entries.empty(); }

private:
    std::vector<Entry> entries;
};

} // namespace tov
