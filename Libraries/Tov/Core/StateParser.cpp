#include "State.h"
#include "../Standard/ExecutionContext.h"

namespace tov
{

// A reader of single literal values; the full grammar replaces it.
static std::shared_ptr<State> parseLiteral (const juce::String& text)
{
    const auto trimmed = text.trim();
    if (trimmed == "void")  return std::make_shared<State>();
    if (trimmed == "true")  return std::make_shared<State> (true);
    if (trimmed == "false") return std::make_shared<State> (false);
    if (trimmed.startsWithChar ('"') && trimmed.endsWithChar ('"') && trimmed.length() >= 2)
        return std::make_shared<State> (trimmed.substring (1, trimmed.length() - 1).replace ("\\\"", "\"").replace ("\\\\", "\\"));
    if (trimmed.containsOnly ("-+0123456789") && trimmed.isNotEmpty())
        return std::make_shared<State> ((int64_t) trimmed.getLargeIntValue());
    if (trimmed.containsOnly ("-+0123456789.eE") && trimmed.isNotEmpty())
        return std::make_shared<State> (trimmed.getDoubleValue());
    return nullptr;
}

std::shared_ptr<State> State::createFromStateString (ExecutionContext& context, const juce::String& text,
                                                     const juce::String& source, StateParserCallback*)
{
    auto state = parseLiteral (text);
    if (state == nullptr)
        context.error ("Could not parse value \"" + text + "\"");
    return state;
}

} // namespace tov
