#pragma once

#include <Tov/Standard/Program.h>
#include "BenchmarkLibrary.h"

namespace tov::benchmarks
{

/** The program of a benchmark, named after it: services find their program by their thread.
    Started, it builds the library tree with the benchmark's classes, when it has any, in a
    library of the program's name. */
class BenchmarkProgram : public Program
{
public:
    explicit BenchmarkProgram (const juce::String& name, AddClasses classes = {})
        : Program (name, "main", 1, 0, 0, {}), addBenchmarkClasses (std::move (classes)) {}

protected:
    void addLibraries (Library& root) override
    {
        if (addBenchmarkClasses == nullptr)
            return;
        auto* library = new NamedLibrary (getProgramName(), {});
        addBenchmarkClasses (*library);
        root.addLibrary (library);
    }

private:
    AddClasses addBenchmarkClasses;
};

} // namespace tov::benchmarks
