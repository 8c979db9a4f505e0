// tov-state: reads, checks and converts State documents.
#include <Tov/Core/State.h>
#include <Tov/Core/Library.h>
#include <Tov/Standard/ExecutionContext.h>
#include <iostream>
#include <map>

using namespace tov;

namespace
{
constexpr int failure = 1;
constexpr int usageError = 2;

/** Writes every reported error as one "Error: " line on standard error. */
class StandardErrorView : public ExecutionContextView
{
public:
    void errorCallback (const juce::String& message, const Object*) override
    {
        std::cerr << "Error: " << message.toStdString() << "\n";
    }
};

/** A null sink for the buffer bytes of printed text. */
class DiscardingOutputStream : public juce::OutputStream
{
public:
    void flush() override {}
    bool setPosition (juce::int64) override          { return false; }
    juce::int64 getPosition() override               { return position; }
    bool write (const void*, size_t size) override   { position += (juce::int64) size; return true; }

private:
    juce::int64 position = 0;
};

struct Command
{
    const char* name;
    const char* usage;
    const char* help;
    int (*run) (ExecutionContext& context, const juce::StringArray& arguments);
};

//==============================================================================
juce::MemoryBlock readAll (juce::InputStream& input)
{
    juce::MemoryBlock block;
    input.readIntoMemoryBlock (block);
    return block;
}

juce::MemoryBlock readStandardInput()
{
    juce::MemoryBlock block;
    char buffer[65536];
    while (std::cin.read (buffer, sizeof (buffer)) || std::cin.gcount() > 0)
        block.append (buffer, (size_t) std::cin.gcount());
    return block;
}

/** The text document of a file (with its ".bin" sibling) or of standard input for "-". */
std::shared_ptr<State> readTextDocument (ExecutionContext& context, const juce::String& name)
{
    if (name == "-")
    {
        const auto text = readStandardInput();
        return State::createFromStateStringBuffer (context, text.getData(), text.getSize(), "<stdin>");
    }
    return State::createFromStateFile (context, juce::File::getCurrentWorkingDirectory().getChildFile (name), nullptr);
}

std::unique_ptr<juce::InputStream> openInput (ExecutionContext& context, const juce::String& name)
{
    if (name == "-")
        return std::make_unique<juce::MemoryInputStream> (readStandardInput(), true);
    const auto file = juce::File::getCurrentWorkingDirectory().getChildFile (name);
    auto stream = std::make_unique<juce::FileInputStream> (file);
    if (stream->failedToOpen())
    {
        context.error ("File " + file.getFullPathName() + " cannot be opened for reading");
        return nullptr;
    }
    return stream;
}

/** Writes bytes to a file or, for "-", to standard output. */
bool writeOutput (ExecutionContext& context, const juce::String& name, const juce::MemoryBlock& bytes)
{
    if (name == "-")
    {
        std::cout.write (static_cast<const char*> (bytes.getData()), (std::streamsize) bytes.getSize());
        std::cout.flush();
        return true;
    }
    const auto file = juce::File::getCurrentWorkingDirectory().getChildFile (name);
    if (! file.replaceWithData (bytes.getData(), bytes.getSize()))
    {
        context.error ("Could not write file " + file.getFullPathName());
        return false;
    }
    return true;
}

juce::MemoryBlock printText (const State& state)
{
    juce::MemoryOutputStream text;
    DiscardingOutputStream binary;
    state.print (text, binary);
    return text.getMemoryBlock();
}

juce::String argumentOrStandard (const juce::StringArray& arguments, int index)
{
    return index < arguments.size() ? arguments[index] : juce::String ("-");
}

//==============================================================================
int format (ExecutionContext& context, const juce::StringArray& arguments)
{
    auto state = readTextDocument (context, argumentOrStandard (arguments, 0));
    return state != nullptr && writeOutput (context, "-", printText (*state)) ? 0 : failure;
}

int check (ExecutionContext& context, const juce::StringArray& arguments)
{
    int result = 0;
    for (auto& name : arguments)
        if (readTextDocument (context, name) == nullptr)
            result = failure;
    return result;
}

int shortText (ExecutionContext& context, const juce::StringArray& arguments)
{
    auto remaining = arguments;
    uint64_t depth = (uint64_t) -1;
    if (remaining.size() >= 2 && remaining[0] == "--depth")
    {
        if (! remaining[1].containsOnly ("0123456789") || remaining[1].isEmpty())
        {
            std::cerr << "tov-state short: --depth takes a whole number, not \"" << remaining[1].toStdString() << "\"\n";
            return usageError;
        }
        depth = (uint64_t) remaining[1].getLargeIntValue();
        remaining.removeRange (0, 2);
    }
    auto state = readTextDocument (context, argumentOrStandard (remaining, 0));
    if (state == nullptr)
        return failure;
    std::cout << state->toShortString (depth).toStdString() << "\n";
    return 0;
}

int toBinary (ExecutionContext& context, const juce::StringArray& arguments)
{
    auto state = readTextDocument (context, argumentOrStandard (arguments, 0));
    if (state == nullptr)
        return failure;
    juce::MemoryOutputStream output;
    State::toBinary (state.get(), output);
    return writeOutput (context, argumentOrStandard (arguments, 1), output.getMemoryBlock()) ? 0 : failure;
}

int fromBinary (ExecutionContext& context, const juce::StringArray& arguments)
{
    auto input = openInput (context, argumentOrStandard (arguments, 0));
    if (input == nullptr)
        return failure;
    std::shared_ptr<State> state;
    juce::String error;
    if (! State::loadFromBinary (*input, state, error))
    {
        context.error (error);
        return failure;
    }
    const auto text = state != nullptr ? printText (*state) : juce::MemoryBlock();
    return writeOutput (context, argumentOrStandard (arguments, 1), text) ? 0 : failure;
}

int save (ExecutionContext& context, const juce::StringArray& arguments)
{
    auto remaining = arguments;
    const bool binary = remaining.contains ("--binary");
    remaining.removeString ("--binary");
    if (remaining.size() != 2)
    {
        std::cerr << "tov-state save: expected IN and OUT (see tov-state save --help)\n";
        return usageError;
    }

    std::shared_ptr<State> state;
    if (binary)
    {
        auto input = openInput (context, remaining[0]);
        if (input == nullptr)
            return failure;
        juce::String error;
        if (! State::loadFromBinary (*input, state, error))
        {
            context.error (error);
            return failure;
        }
        if (state == nullptr)
            state = std::make_shared<State>();
    }
    else
    {
        state = readTextDocument (context, remaining[0]);
    }
    if (state == nullptr)
        return failure;
    return state->saveToFile (context, juce::File::getCurrentWorkingDirectory().getChildFile (remaining[1]), {}) ? 0 : failure;
}

const Command commands[] = {
    { "format", "tov-state format [FILE|-]",
      "Parses a State text (with its .bin sibling when FILE has one) and writes it as the library prints it.", format },
    { "check", "tov-state check FILE...",
      "Parses each file; prints nothing for a good file and the parser's error for a bad one. Exits 1 if any failed.", check },
    { "short", "tov-state short [--depth N] [FILE|-]",
      "Writes the one-line short text of the document, at most N levels deep (no limit by default).", shortText },
    { "to-binary", "tov-state to-binary [IN|-] [OUT|-]",
      "Converts a State text to the binary stream form (a present flag, then the body).", toBinary },
    { "from-binary", "tov-state from-binary [IN|-] [OUT|-]",
      "Converts the binary stream form back to text, printed as format prints it.", fromBinary },
    { "save", "tov-state save [--binary] IN OUT",
      "Reads a State text (or the binary form, with --binary) and saves it as a state file, with a .bin sibling for buffers.", save },
};

void printToolHelp (std::ostream& out)
{
    out << "tov-state: reads, checks and converts State documents.\n\nCommands:\n";
    for (auto& command : commands)
        out << "  " << command.usage << "\n";
    out << "\nEach command takes --help. \"-\" stands for standard input or output.\n";
}

const Command* findCommand (const juce::String& name)
{
    for (auto& command : commands)
        if (name == command.name)
            return &command;
    return nullptr;
}
}

int main (int argc, char** argv)
{
    juce::StringArray arguments;
    for (int i = 1; i < argc; ++i)
        arguments.add (juce::String::fromUTF8 (argv[i]));

    if (arguments.isEmpty())
    {
        printToolHelp (std::cerr);
        return usageError;
    }
    if (arguments[0] == "--help" || arguments[0] == "-h")
    {
        printToolHelp (std::cout);
        return 0;
    }

    const Command* command = findCommand (arguments[0]);
    if (command == nullptr)
    {
        std::cerr << "tov-state: unknown command \"" << arguments[0].toStdString() << "\" (see tov-state --help)\n";
        return usageError;
    }
    arguments.remove (0);
    if (arguments.contains ("--help"))
    {
        std::cout << "usage: " << command->usage << "\n" << command->help << "\n";
        return 0;
    }

    initializeTov();
    int result = 0;
    {
        ExecutionContext context;
        context.addView (new StandardErrorView());
        result = command->run (context, arguments);
    }
    deinitializeTov();
    return result;
}
