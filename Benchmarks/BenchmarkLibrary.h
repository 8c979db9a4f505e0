#pragma once

#include <Tov/Core/Library.h>
#include <functional>

namespace tov::benchmarks
{

/** Adds a benchmark's reflected classes to its library. */
using AddClasses = std::function<void (NamedLibrary&)>;

/** Adds each of the classes to the library, in the order given. */
template <class... Classes>
void addClasses (NamedLibrary& library)
{
    (library.addClass<Classes>(), ...);
}

/** A library of the name that holds the classes, in the order given: for
    initializeTov()->addLibrary, where a benchmark runs without a started program. */
template <class... Classes>
NamedLibrary* createLibrary (const juce::String& name)
{
    auto* library = new NamedLibrary (name, {});
    addClasses<Classes...> (*library);
    return library;
}

} // namespace tov::benchmarks
