#include "ContainerTestSupport.h"

namespace tov::test
{

TOV_BEGIN_CLASS (Track)
    TOV_VARIABLE (name)
    TOV_VARIABLE (gain)
TOV_END_CLASS()

TOV_BEGIN_CLASS (TextTrack)
    TOV_VARIABLE (text)
TOV_END_CLASS()

TOV_BEGIN_CLASS (Fog)
    TOV_VARIABLE (density)
TOV_END_CLASS()

TOV_BEGIN_CLASS (Album)
    TOV_VARIABLE (name)
    TOV_VARIABLE (tracks)
    TOV_VARIABLE (tags)
    TOV_VARIABLE (tracksByMood)
    TOV_VARIABLE (ratings)
    TOV_VARIABLE (limit)
    TOV_VARIABLE (bonus)
    TOV_VARIABLE (settings)
    TOV_VARIABLE (fog)
TOV_END_CLASS()

TOV_BEGIN_CLASS (Playlist)
    TOV_VARIABLE (items)
TOV_END_CLASS()

void ensureContainerTestLibrary()
{
    ensurePointerTestLibrary();
    auto* root = Library::getRootLibrary();
    if (root == nullptr || root->getLibraryByName ("ContainerTests") != nullptr)
        return;
    auto* library = new NamedLibrary ("ContainerTests", {});
    library->addClass<Track>();
    library->addClass<TextTrack>();
    library->addClass<Fog>();
    library->addClass<Album>();
    library->addClass<Playlist>();
    root->addLibrary (library);
}

Track* makeTrack (const juce::String& name, int64_t gain)
{
    auto* track = make<Track>();
    track->name.set (name, false);
    track->gain.set (gain, false);
    return track;
}

String* makeString (const juce::String& text)
{
    auto* string = static_cast<String*> (String::staticClass.createObject());
    string->set (text, false);
    return string;
}

Integer* makeInteger (int64_t value)
{
    auto* integer = static_cast<Integer*> (Integer::staticClass.createObject());
    integer->set (value, false);
    return integer;
}

std::shared_ptr<State> parseState (const juce::String& text)
{
    juce::String errors;
    ToStringExecutionContext context (errors);
    auto state = State::createFromStateString (context, text, "test");
    EXPECT_EQ (errors, "");
    return state;
}

} // namespace tov::test
