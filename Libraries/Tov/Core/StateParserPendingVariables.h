#pragma once

// For the two readers of StateParser, which both build lists with it.

#include "StateParser.h"
#include "State.h"
#include <iterator>

namespace tov
{

/** The variables of one list while it is read, on the parser's stack of pending
    variables; a list that completes moves them into its node at once.
*/
class StateParser::PendingVariables
{
public:
    explicit PendingVariables (StateParser& parser) : parser (parser), start (parser.pendingVariables.size()) {}

    ~PendingVariables()
    {
        auto& pending = parser.pendingVariables;
        pending.erase (pending.begin() + (std::ptrdiff_t) start, pending.end());
    }

    void add (juce::String name, std::shared_ptr<State> state)
    {
        parser.pendingVariables.emplace_back (std::move (name), std::move (state));
    }

    /** Appends the variables to the node, which becomes a list if there are any. */
    void moveTo (State& state)
    {
        auto& pending = parser.pendingVariables;
        if (pending.size() == start)
            return;
        state.setType (StateType::variablesType);
        auto& variables = *state.payload.variables;
        variables.reserve (variables.size() + pending.size() - start);
        std::move (pending.begin() + (std::ptrdiff_t) start, pending.end(), std::back_inserter (variables));
    }

private:
    StateParser& parser;
    const size_t start;
};

} // namespace tov
