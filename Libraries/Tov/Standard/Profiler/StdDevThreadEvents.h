#pragma once

#include "StdDevEvent.h"
#include <array>
#include <cstring>
#include <map>

namespace tov
{

/** The statistics of one thread of a StdDevProfiler, by label: each label is the name of a
    scope or a mark and its kind. Only its thread uses it.

    Every scope looks its labels up twice, so the last ones found are kept by the address of
    their name's text (a literal, or the name kept in the statistics), checked against the text
    before they are used: most look-ups then compare one name and build no string.
*/
class StdDevThreadEvents
{
public:
    enum class Kind { begin, end, mark };

    /** The statistics of the label, made the first time it happens. Entries never move. */
    StdDevEvent& get (juce::StringRef name, Kind kind);
    /** Null while the label has not happened. */
    StdDevEvent* find (juce::StringRef name, Kind kind);

    /** name + " (Begin)", name + " (End)", or the name of a mark. */
    static juce::String makeLabel (juce::StringRef name, Kind kind);

private:
    template <class Text>
    struct Key
    {
        Kind kind;
        Text name;
    };

    /** Orders stored keys and keys made for a look-up alike, so that a look-up builds no string. */
    struct KeyOrder
    {
        using is_transparent = void;
        template <class A, class B>
        bool operator() (const Key<A>& a, const Key<B>& b) const noexcept
        {
            if (a.kind != b.kind)
                return a.kind < b.kind;
            return std::strcmp (getText (a.name), getText (b.name)) < 0;
        }
        static const char* getText (const juce::String& text) noexcept     { return text.toRawUTF8(); }
        static const char* getText (juce::StringRef text) noexcept         { return text.text.getAddress(); }
    };

    struct Recent
    {
        const char* text = nullptr;
        Kind kind = Kind::begin;
        StdDevEvent* event = nullptr;
    };

    std::map<Key<juce::String>, StdDevEvent, KeyOrder> events;
    std::array<Recent, 64> recent;

    Recent& getRecent (const char* text, Kind kind) noexcept;
};

} // namespace tov
