#include "StateMap.h"
#include "State.h"

namespace tov
{

int StateMap::find (juce::StringRef name) const
{
    for (size_t i = 0; i < entries.size(); ++i)
        if (entries[i].first == name)
            return (int) i;
    return -1;
}

std::shared_ptr<State>& StateMap::operator[] (juce::StringRef name)
{
    const int index = find (name);
    if (index >= 0)
        return entries[(size_t) index].second;
    entries.emplace_back (juce::String (name), nullptr);
    return entries.back().second;
}

void StateMap::append (const StateMap& other)
{
    // Taking a copy first keeps appending a map to itself well defined.
    const auto otherEntries = other.entries;
    for (auto& entry : otherEntries)
        (*this)[entry.first] = entry.second;
}

void StateMap::remove (juce::StringRef name)
{
    const int index = find (name);
    if (index >= 0)
        entries.erase (entries.begin() + index);
}

} // namespace tov
