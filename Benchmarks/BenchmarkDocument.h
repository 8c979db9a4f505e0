#pragma once

#include <Tov/Core/State.h>
#include <juce_data_structures/juce_data_structures.h>
#include <nlohmann/json.hpp>
#include <rapidjson/document.h>
#include <memory>
#include <string>

/** One generated document in the form of every contestant of the State benchmark.

    The content is made once, as a State tree: a session of folders of tracks
    of clips, that is nested objects with class prefixes, names, integers,
    reals, strings and short lists. Every other form is made from that tree and
    holds the same keys, values and nesting. In JSON a class prefix is a first
    "class" key, a named list an object and an unnamed list an array. In a
    ValueTree an object is a node named after its variable ("item" inside a
    list) with a "class" property, a scalar is a property, a list of scalars an
    array property and a list of objects a node holding them.

    The texts and streams are what the contestants read, and each one's size
    is what its MB/s is measured against.
*/
struct BenchmarkDocument
{
    /** The document whose State text is about the given size; made on first use and kept. */
    static const BenchmarkDocument& get (size_t stateTextBytes);

    std::shared_ptr<tov::State> state;
    juce::String stateText;
    juce::MemoryBlock stateBinary;

    std::string jsonText;          // compact, as RapidJSON writes it
    juce::String jsonTextForJuce;  // the same bytes, as juce::JSON takes them
    rapidjson::Document rapidJson;
    nlohmann::json nlohmannJson;
    juce::var juceJson;

    juce::ValueTree valueTree;
    juce::MemoryBlock valueTreeBinary;

    // What each contestant writes, in bytes, so that outputs can be allocated once.
    size_t juceJsonTextBytes = 0;
    size_t nlohmannTextBytes = 0;

private:
    explicit BenchmarkDocument (size_t stateTextBytes);
};
