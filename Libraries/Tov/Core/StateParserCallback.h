#pragma once

namespace tov
{

class State;

/** Sees every State as soon as the parser has completed it.

    Children come before their parents, and the argument states of template
    class expressions are included. The callback may read and change the node;
    returning false stops the parse: every rule after that fails at once and
    nothing more is reported.
*/
class StateParserCallback
{
public:
    virtual ~StateParserCallback() = default;
    virtual bool stateParsed (State& state) = 0;
};

} // namespace tov
