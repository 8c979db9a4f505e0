// tov-state: reads, checks and converts State documents.
#include <Tov/Core/State.h>
#include <Tov/Core/Json.h>
#include <Tov/Core/Library.h>
#include <Tov/Core/Object.h>
#include <Tov/Core/ClassRegistry.h>
#include <Tov/Standard/ExecutionContext.h>
#include <Tov/Standard/SystemStats.h>
#include "StateToolProgress.h"
#include <iostream>
#include <map>
#include <memory>

using namespace tov;

namespace
{
constexpr int failure = 1;
constexpr int usageError = 2;

/** The progress of the long commands, shown with --progress on a terminal. */
ProgressLine* progressLine = nullptr;

/** Writes every reported error as one "Error: " line on standard error, where no progress line stands. */
class StandardErrorView : public ExecutionContextView
{
public:
    void errorCallback (const juce::String& message, const Object*) override
    {
        if (progressLine != nullptr)
            progressLine->clear();
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
    /** The command runs as a task, whose progress --progress shows. */
    bool showsProgress = false;
};

//==============================================================================
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

/** A file's name for the progress line; "-" is a standard stream. */
juce::String describe (const juce::String& name, const char* standardStream)
{
    return name == "-" ? juce::String (standardStream) : name;
}

int runSteps (const juce::String& name, std::vector<StepsTask::Step> steps, const juce::String& doneText)
{
    StepsTask task (name, std::move (steps), doneText);
    ProgressLine silent (false);
    return runTask (task, progressLine != nullptr ? *progressLine : silent) ? 0 : failure;
}

/** Reads the binary stream form, in which the state may be null; false on failure. */
bool readBinaryDocument (ExecutionContext& context, const juce::String& name, std::shared_ptr<State>& state)
{
    auto input = openInput (context, name);
    if (input == nullptr)
        return false;
    juce::String error;
    if (State::loadFromBinary (*input, state, error))
        return true;
    context.error (error);
    return false;
}

/** The text form, or the binary one with binary; null on failure, an empty State for a null one. */
std::shared_ptr<State> readDocument (ExecutionContext& context, const juce::String& name, bool binary)
{
    if (! binary)
        return readTextDocument (context, name);
    std::shared_ptr<State> state;
    if (! readBinaryDocument (context, name, state))
        return nullptr;
    return state != nullptr ? state : std::make_shared<State>();
}

int toBinary (ExecutionContext& context, const juce::StringArray& arguments)
{
    const auto in = argumentOrStandard (arguments, 0), out = argumentOrStandard (arguments, 1);
    std::shared_ptr<State> state;
    juce::MemoryOutputStream output;
    return runSteps ("to-binary", {
        { "Reading " + describe (in, "standard input"), 0.6, [&] { return (state = readTextDocument (context, in)) != nullptr; } },
        { "Converting to binary", 0.2, [&] { State::toBinary (state.get(), output); return true; } },
        { "Writing " + describe (out, "standard output"), 0.2, [&] { return writeOutput (context, out, output.getMemoryBlock()); } } },
        "Converted " + describe (in, "standard input") + " to binary");
}

int fromBinary (ExecutionContext& context, const juce::StringArray& arguments)
{
    const auto in = argumentOrStandard (arguments, 0), out = argumentOrStandard (arguments, 1);
    std::shared_ptr<State> state;
    juce::MemoryBlock text;
    return runSteps ("from-binary", {
        { "Reading " + describe (in, "standard input"), 0.6, [&] { return readBinaryDocument (context, in, state); } },
        { "Printing text", 0.2, [&] { text = state != nullptr ? printText (*state) : juce::MemoryBlock(); return true; } },
        { "Writing " + describe (out, "standard output"), 0.2, [&] { return writeOutput (context, out, text); } } },
        "Converted " + describe (in, "standard input") + " to text");
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

    const auto in = remaining[0], out = remaining[1];
    std::shared_ptr<State> state;
    return runSteps ("save", {
        { "Reading " + describe (in, "standard input"), 0.7,
          [&] { return (state = readDocument (context, in, binary)) != nullptr; } },
        { "Saving " + out, 0.3,
          [&] { return state->saveToFile (context, juce::File::getCurrentWorkingDirectory().getChildFile (out), {}); } } },
        "Saved " + out);
}

/** The snapshot of this machine; with --table, the firmware part read from a raw SMBIOS table file instead. */
int systemInformation (ExecutionContext& context, const juce::StringArray& arguments)
{
    auto remaining = arguments;
    const bool withNetwork = ! remaining.contains ("--no-network");
    const bool report = remaining.contains ("--report");
    remaining.removeString ("--no-network");
    remaining.removeString ("--report");
    juce::String tableName;
    if (remaining.size() == 2 && remaining[0] == "--table")
        tableName = remaining[1];
    else if (! remaining.isEmpty())
    {
        std::cerr << "tov-state sysinfo: unexpected \"" << remaining[0].toStdString() << "\" (see tov-state sysinfo --help)\n";
        return usageError;
    }

    SystemStats stats;
    stats.refreshFromLocalSystem (withNetwork);
    if (tableName.isNotEmpty())
    {
        const auto file = juce::File::getCurrentWorkingDirectory().getChildFile (tableName);
        juce::MemoryBlock table;
        if (! file.loadFileAsData (table))
        {
            context.error ("File " + file.getFullPathName() + " cannot be opened for reading");
            return failure;
        }
        stats.loadFromTable (table);
    }
    if (report)
    {
        std::cout << stats.toString().toStdString();
        return 0;
    }
    return writeOutput (context, "-", printText (*stats.makeState (false))) ? 0 : failure;
}

/** Removes the option; true when it was there. */
bool takeOption (juce::StringArray& remaining, const char* option)
{
    const bool present = remaining.contains (option);
    remaining.removeString (option);
    return present;
}

/** A created object, deleted as heap objects are when the command ends. */
std::unique_ptr<Object, ObjectDeleter> holdObject (Object* object)
{
    return std::unique_ptr<Object, ObjectDeleter> (object);
}

int toJson (ExecutionContext& context, const juce::StringArray& arguments)
{
    auto remaining = arguments;
    const bool transient = takeOption (remaining, "--transient");
    const bool withoutDefaults = takeOption (remaining, "--without-defaults");
    const auto in = argumentOrStandard (remaining, 0), out = argumentOrStandard (remaining, 1);
    auto state = readTextDocument (context, in);
    if (state == nullptr)
        return failure;
    auto object = holdObject (Object::createFromState (context, state));
    if (object == nullptr)
        return failure;
    // juce::JSON breaks lines with CRLF: files keep them, standard output gets plain line feeds.
    const auto text = juce::JSON::toString (saveObjectToJson (*object, transient, withoutDefaults), false, 15);
    if (out != "-")
    {
        const auto file = juce::File::getCurrentWorkingDirectory().getChildFile (out);
        if (file.replaceWithText (text, false, false, "\r\n"))
            return 0;
        context.error ("Could not write file " + file.getFullPathName());
        return failure;
    }
    const auto lines = text.replace ("\r\n", "\n") + "\n";
    return writeOutput (context, "-", juce::MemoryBlock (lines.toRawUTF8(), lines.getNumBytesAsUTF8())) ? 0 : failure;
}

int fromJson (ExecutionContext& context, const juce::StringArray& arguments)
{
    auto remaining = arguments;
    const int classIndex = remaining.indexOf ("--class");
    if (classIndex < 0 || classIndex + 1 >= remaining.size())
    {
        std::cerr << "tov-state from-json: expected --class NAME (see tov-state from-json --help)\n";
        return usageError;
    }
    const auto className = remaining[classIndex + 1];
    remaining.removeRange (classIndex, 2);
    Class* objectClass = getClass (className);
    if (objectClass == nullptr)
    {
        context.error ("Unknown class " + className);
        return failure;
    }
    const auto in = argumentOrStandard (remaining, 0), out = argumentOrStandard (remaining, 1);
    auto input = openInput (context, in);
    if (input == nullptr)
        return failure;
    juce::var value;
    const auto parsed = juce::JSON::parse (input->readEntireStreamAsString(), value);
    if (parsed.failed())
    {
        context.error ("Could not parse Json: " + parsed.getErrorMessage());
        return failure;
    }
    juce::String error;
    auto object = holdObject (createObjectFromJson (value, objectClass, false, &error));
    if (object == nullptr)
    {
        context.error (error.isNotEmpty() ? error : "Cannot create " + className + " from Json");
        return failure;
    }
    return writeOutput (context, out, printText (*object->makeState (true, true))) ? 0 : failure;
}

const Command commands[] = {
    { "format", "tov-state format [FILE|-]",
      "Parses a State text (with its .bin sibling when FILE has one) and writes it as the library prints it.", format },
    { "check", "tov-state check FILE...",
      "Parses each file; prints nothing for a good file and the parser's error for a bad one. Exits 1 if any failed.", check },
    { "short", "tov-state short [--depth N] [FILE|-]",
      "Writes the one-line short text of the document, at most N levels deep (no limit by default).", shortText },
    { "to-binary", "tov-state to-binary [--progress] [IN|-] [OUT|-]",
      "Converts a State text to the binary stream form (a present flag, then the body).", toBinary, true },
    { "from-binary", "tov-state from-binary [--progress] [IN|-] [OUT|-]",
      "Converts the binary stream form back to text, printed as format prints it.", fromBinary, true },
    { "save", "tov-state save [--progress] [--binary] IN OUT",
      "Reads a State text (or the binary form, with --binary) and saves it as a state file, with a .bin sibling for buffers.", save, true },
    { "sysinfo", "tov-state sysinfo [--no-network] [--report] [--table FILE]",
      "Writes the snapshot of this machine as State text (or as a report, with --report). The firmware part comes from\n"
      "the system's SMBIOS table when it is readable, and from the raw table in FILE with --table.", systemInformation },
    { "to-json", "tov-state to-json [--transient] [--without-defaults] [IN|-] [OUT|-]",
      "Loads a State text that names its class as an object and writes its JSON, with CRLF line ends in a file.", toJson },
    { "from-json", "tov-state from-json --class NAME [IN|-] [OUT|-]",
      "Loads JSON into a new object of class NAME (JSON names no classes) and writes its State text with the class.", fromJson },
};

void printToolHelp (std::ostream& out)
{
    out << "tov-state: reads, checks and converts State documents.\n\nCommands:\n";
    for (auto& command : commands)
        out << "  " << command.usage << "\n";
    out << "\nEach command takes --help. \"-\" stands for standard input or output. With --progress, the\n"
           "commands that take it show their progress on standard error when it is a terminal.\n";
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

    std::unique_ptr<ProgressLine> line;
    if (command->showsProgress && arguments.contains ("--progress"))
    {
        arguments.removeString ("--progress");
        line = std::make_unique<ProgressLine> (true);
        progressLine = line.get();
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
