// StateParser: choosing a reader for a text, and the State functions that parse.
// The readers are in StateParserPlainReader.cpp and StateParserRules.cpp (the
// reference), their tokens in StateParserTokens.h.
#include "StateParser.h"
#include "StateParserPlainReader.h"
#include "WellFormedUtf8.h"
#include "State.h"
#include "../Standard/ExecutionContext.h"

namespace tov
{

StateParser::StateParser (ExecutionContext& context, const juce::String& textToParse, const juce::String& source,
                          juce::InputStream* binary, StateParserCallback* callback)
    : textString (makeWellFormedUtf8 (textToParse, length)), source (source), binary (binary), context (context), callback (callback)
{
    text = textString.toRawUTF8();
}

// The callback may change nodes and stop the parse as they complete, which the
// rules alone follow.
std::shared_ptr<State> StateParser::parseTopLevelState()
{
    if (callback == nullptr)
    {
        if (auto state = PlainReader (*this).readTopLevelState())
        {
            position = length;
            return state;
        }
    }
    return parseState (true);
}

//==============================================================================
std::shared_ptr<State> State::parse (ExecutionContext& context, juce::InputStream& text, juce::InputStream& binary,
                                     const juce::String& source, StateParserCallback* callback)
{
    StateParser parser (context, text.readEntireStreamAsString(), source, &binary, callback);
    return parser.parseTopLevelState();
}

std::shared_ptr<State> State::parse (ExecutionContext& context, juce::InputStream& text,
                                     const juce::String& source, StateParserCallback* callback)
{
    StateParser parser (context, text.readEntireStreamAsString(), source, nullptr, callback);
    return parser.parseTopLevelState();
}

std::shared_ptr<State> State::createFromStateString (ExecutionContext& context, const juce::String& text,
                                                     const juce::String& source, StateParserCallback* callback)
{
    StateParser parser (context, text, source, nullptr, callback);
    auto state = parser.parseTopLevelState();
    if (state == nullptr)
        context.error ("Could not parse value \"" + text + "\"");
    return state;
}

std::shared_ptr<State> State::createFromStateStringBuffer (ExecutionContext& context, const void* data, uint64_t size,
                                                           const juce::String& source, StateParserCallback* callback)
{
    juce::MemoryInputStream stream (data, (size_t) size, false);
    auto state = parse (context, stream, source, callback);
    if (state == nullptr)
        context.error ("Could not parse value of " + source);
    return state;
}

} // namespace tov
