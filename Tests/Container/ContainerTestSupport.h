#pragma once

#include "Pointer/PointerTestSupport.h"
#include "Support/DeletionWatcher.h"
#include <Tov/Container/Map.h>
#include <Tov/Container/NamedObjectMap.h>
#include <Tov/Container/Option.h>
#include <Tov/Container/Optional.h>
#include <Tov/Container/OwnedVector.h>
#include <Tov/Container/StringMap.h>
#include <Tov/Container/StringVector.h>
#include <Tov/Core/StateObjectExporter.h>

// Documents of tracks kept in vectors, maps and options.
namespace tov::test
{

/** An element of the test documents, labelled by its name. */
class Track : public Object
{
public:
    TOV_DECLARE_CLASS (Track, Object)

    String name;
    Integer gain;
};

/** A track of another class, for vectors of the base class. */
class TextTrack : public Track
{
public:
    TOV_DECLARE_CLASS (TextTrack, Track)

    String text;
};

/** Settings that can be switched off together. */
class Fog : public Optional
{
public:
    TOV_DECLARE_CLASS (Fog, Optional)

    Integer density;
};

/** A document with every kind of container. */
class Album : public Object
{
public:
    TOV_DECLARE_CLASS (Album, Object)

    String name;
    OwnedVector<Track> tracks;
    StringVector tags;
    StringMap<Track> tracksByMood;
    Map<WeakPointer<Track>, Integer> ratings;
    Option<Integer> limit;
    Option<Track> bonus;
    NamedObjectMap settings;
    Fog fog;
};

/** A plain list, named "items". */
class Playlist : public Object
{
public:
    TOV_DECLARE_CLASS (Playlist, Object)

    OwnedVector<Track> items;
};

/** Makes the classes of these tests known to the library tree; safe to call more than once. */
void ensureContainerTestLibrary();

/** A new object of T's class with the tests' classes known. */
template <class T>
T* make()
{
    ensureContainerTestLibrary();
    return create<T>();
}

/** A track made by its class, not yet in a space. */
Track* makeTrack (const juce::String& name, int64_t gain = 0);
/** A String object of that text. */
String* makeString (const juce::String& text);
/** An Integer object of that value. */
Integer* makeInteger (int64_t value);
/** The text of the object's State without defaults, without its last line break. */
inline juce::String textOf (const Object& object)   { return object.makeState (true, false)->saveToString().trimEnd(); }
/** The State of a text, which must parse. */
std::shared_ptr<State> parseState (const juce::String& text);

/** Records, at each changedCallback of the container, what the test asks of it then. */
class ChangeProbe : public View
{
public:
    ChangeProbe (Object& object, std::function<juce::String()> probe) : probe (std::move (probe))  { attachObject (&object); }
    void changedCallback (Object*, Object*) override { seen.add (probe()); }

    juce::StringArray seen;

private:
    std::function<juce::String()> probe;
};

/** A running program and current service, with the container tests' classes. */
class ContainerTest : public PointerTest
{
protected:
    ContainerTest()                                  { ensureContainerTestLibrary(); }
};

} // namespace tov::test
