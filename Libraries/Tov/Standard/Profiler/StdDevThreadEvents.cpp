#include "StdDevThreadEvents.h"

namespace tov
{

// Names are short, and the text is often the stored name itself: a call of strcmp costs more.
static bool isSameText (const char* a, const char* b) noexcept
{
    if (a == b)
        return true;
    for (; *a == *b; ++a, ++b)
        if (*a == 0)
            return true;
    return false;
}

StdDevThreadEvents::Recent& StdDevThreadEvents::getRecent (const char* text, Kind kind) noexcept
{
    const auto address = reinterpret_cast<uintptr_t> (text) / alignof (std::max_align_t);
    return recent[(address * 3 + (uintptr_t) kind) % recent.size()];
}

StdDevEvent& StdDevThreadEvents::get (juce::StringRef name, Kind kind)
{
    const char* text = name.text.getAddress();
    auto& last = getRecent (text, kind);
    if (last.text == text && last.kind == kind && isSameText (last.event->getName().toRawUTF8(), text))
        return *last.event;

    auto found = events.find (Key<juce::StringRef> { kind, name });
    if (found == events.end())
        found = events.emplace (Key<juce::String> { kind, name }, StdDevEvent (name, makeLabel (name, kind))).first;
    last = { text, kind, &found->second };
    return found->second;
}

StdDevEvent* StdDevThreadEvents::find (juce::StringRef name, Kind kind)
{
    const auto found = events.find (Key<juce::StringRef> { kind, name });
    return found != events.end() ? &found->second : nullptr;
}

juce::String StdDevThreadEvents::makeLabel (juce::StringRef name, Kind kind)
{
    switch (kind)
    {
        case Kind::begin:   return juce::String (name) + " (Begin)";
        case Kind::end:     return juce::String (name) + " (End)";
        case Kind::mark:    break;
    }
    return name;
}

} // namespace tov
