#pragma once

#include "UniqueIdentifier.h"
#include "RawBuffer.h"
#include "StateMap.h"
#include "StateHasher.h"
#include <juce_core/juce_core.h>
#include <atomic>
#include <new>
#include <memory>
#include <vector>
#include <utility>

namespace tov
{

class Class;
class ClassExpression;
class Object;
class ExecutionContext;
class StateParserCallback;
class StateCloner;

/** The eleven kinds of value a State node holds; typeToString gives their words. */
enum class StateType : uint32_t
{
    voidType = 0,
    booleanType,
    integerType,
    realType,
    stringType,
    weakPointerType,
    ownedPointerType,
    variablesType,
    classExpressionType,
    nativePointerType,
    bufferType
};

/** The system's one dynamically typed value: a node of a small tree.

    A node holds nothing, a boolean, an integer, a real, a string, a weak
    pointer (an identifier), an owned pointer (a shared sub-tree), an ordered
    list of named variables, a class expression, a native object pointer or a
    block of bytes. Nodes are shared between trees through std::shared_ptr and
    are treated as immutable once handed on; from then on any number of
    threads may read one at once, const methods included (see the caches
    below).

    Besides its value a node names the class, identifier and class version of
    the object it describes; all three are null for a plain value.
*/
class State
{
public:
    using Variable = std::pair<juce::String, std::shared_ptr<State>>;
    using Variables = std::vector<Variable>;

    static const char* const classToken;        // "'"
    static const char* const openScope;         // "{"
    static const char* const closeScope;        // "}"
    static const char* const assignmentToken;   // "="
    static const char* const weakPointerToken;  // "->"
    static const char* const ownedPointerToken; // "=>"

    State() noexcept = default;
    State (const State& other);
    explicit State (bool value);
    // One constructor per built-in integer type, so that int64_t and juce::int64
    // both find an exact match whichever of long and long long they are.
    explicit State (int value)        : State ((long long) value) {}
    explicit State (long value)       : State ((long long) value) {}
    explicit State (long long value);
    explicit State (double value);
    explicit State (const juce::String& value);
    explicit State (const char* value);
    explicit State (UniqueIdentifier weakPointerTarget);
    explicit State (const ClassExpression* classValue);
    explicit State (const Object* nativePointer);
    State (uint64_t size, void* data, bool copy);
    State (const void* compressedData, uint64_t compressedSize, uint64_t uncompressedSize);
    ~State();

    State& operator= (const State& other)                       { other.copyTo (*this); return *this; }

    //==============================================================================
    // Node fields
    StateType getType() const noexcept                          { return type; }
    static juce::String typeToString (StateType type);

    const ClassExpression* getClassExpression() const noexcept  { return classExpression; }
    void setClassExpression (const ClassExpression* expression) noexcept;
    void setAtomicClassExpression (const juce::String& className);
    void setClass (Class* nodeClass);

    UniqueIdentifier getUniqueIdentifier() const noexcept       { return uniqueIdentifier; }
    void setUniqueIdentifier (UniqueIdentifier identifier) noexcept { uniqueIdentifier = identifier; }

    uint64_t getVersionNumber() const noexcept                  { return versionNumber; }
    void setVersionNumber (uint64_t version) noexcept           { versionNumber = version; }

    const juce::String& getSource() const noexcept              { return source; }
    void setSource (const juce::String& newSource)              { source = newSource; }

    //==============================================================================
    // Values. Getters do not check the type: consult getType or checkType first.
    void setVoid()                                              { clearValue(); }
    void setBoolean (bool value);
    void setInteger (int64_t value);
    void setReal (double value);
    void setString (const juce::String& value);
    void setString (juce::String&& value);
    void setUniqueIdentifierValue (UniqueIdentifier value);
    void setOwnedPointer (const std::shared_ptr<State>& target);
    void setClassExpressionValue (const ClassExpression* expression);
    void setClassValue (const Class* valueClass);
    void setNativePointer (const Object* object);
    void setBuffer (const RawBuffer& buffer);
    void setBuffer (uint64_t size, void* data, bool copy);

    bool getBoolean() const noexcept                            { return payload.word != 0; }
    int64_t getInteger() const noexcept                         { return payload.integer; }
    double getReal() const noexcept                             { return payload.real; }
    const juce::String& getString() const noexcept              { return *std::launder (reinterpret_cast<const juce::String*> (payload.string)); }
    UniqueIdentifier getUniqueIdentifierValue() const noexcept  { return UniqueIdentifier (payload.word); }
    std::shared_ptr<State> getOwnedPointer() const              { return *payload.ownedPointer; }
    const ClassExpression* getClassExpressionValue() const noexcept { return payload.classExpression; }
    const Object* getNativePointer() const noexcept             { return payload.nativePointer; }
    const RawBuffer& getBuffer() const noexcept                 { return *payload.buffer; }
    RawBuffer& getBuffer() noexcept                             { return *payload.buffer; }

    //==============================================================================
    // Variables
    size_t getNumVariables() const noexcept;
    const juce::String& getVariableName (size_t index) const    { return (*payload.variables)[index].first; }
    void setVariableName (size_t index, const juce::String& name) { (*payload.variables)[index].first = name; }
    const State& getVariableStateRef (size_t index) const       { return *(*payload.variables)[index].second; }
    State& getVariableStateRef (size_t index)                   { return *(*payload.variables)[index].second; }
    const std::shared_ptr<State>& getVariableState (size_t index) const { return (*payload.variables)[index].second; }
    void setVariableState (size_t index, const std::shared_ptr<State>& state) { (*payload.variables)[index].second = state; }
    const Variables& getVariables() const                       { return *payload.variables; }

    int findVariable (juce::StringRef name) const;
    std::shared_ptr<State> getVariableStateByName (juce::StringRef name) const;
    const State* getVariableStateByNameRef (juce::StringRef name) const;
    State* getVariableStateByNameRef (juce::StringRef name);

    void addVariable (const juce::String& name, const std::shared_ptr<State>& state, bool atFront = false);
    void addVariable (const std::shared_ptr<State>& state, bool atFront = false) { addVariable ({}, state, atFront); }
    void reserveVariables (size_t count);
    std::shared_ptr<State> removeVariable (juce::StringRef name);
    void removeVariable (size_t index);
    void removeEmptyVariables();

    //==============================================================================
    // Classes
    Class* getClass (juce::String* error = nullptr) const;
    /** With compatibility, the class value after the renames of old files (CompatibilityTable.h). */
    Class* getClassValue (bool compatibility = true) const;
    /** The node's class after the renames of old files; cached in the node once found. */
    Class* getCompatibilityClass (juce::String* error = nullptr) const;
    /** Null without a class expression; otherwise its translation, which may read the node's
        variables and, for one old class, add one. */
    static const ClassExpression* getCompatibilityClassExpression (const State& state);
    std::vector<Class*> getClassVector() const;

    /** On a mismatch sets error to "Wrong type: expected X, found Y (in ...)". */
    bool checkType (StateType expected, juce::String& error) const;

    //==============================================================================
    // Comparison, hashing, copying
    bool equals (const State& other) const;
    bool operator== (const State& other) const                  { return equals (other); }
    bool operator!= (const State& other) const                  { return ! equals (other); }
    static bool equals (const std::shared_ptr<State>& a, const std::shared_ptr<State>& b);

    /** Combines the node into the hasher, unless it is the excluded node.

        The class expression is hashed by address, which is one per name since
        expressions are interned: hashes compare only within one process. The
        node's own identifier and version, the target of an owned pointer (only
        its identifier counts) and the bytes of buffers take no part. A variable
        whose state is the excluded node is skipped with its name; the exclusion
        does not reach deeper levels.
    */
    void hash (StateHasher& hasher, const State* excluded = nullptr) const;
    uint64_t computeHash (const State* excluded = nullptr) const;

    /** Shallow: copies one level; variables' states are shared afterwards. */
    void copyTo (State& target) const;

    /** A deep copy in which the identifiers of the tree's nodes are XOR-ed with the mask; see StateCloner. */
    std::shared_ptr<State> clone (UniqueIdentifier mask) const;

    /** Nulls the identifiers of this node and of all nodes below it; weak pointer values stay. */
    void clearUniqueIdentifiers();

    //==============================================================================
    // Rendering
    juce::String toString() const                               { return toShortString ((uint64_t) -1); }
    juce::String toShortString (uint64_t maxDepth = (uint64_t) -1) const;

    //==============================================================================
    // Text form; the grammar is described in StateParser.h, the layout in StatePrinter.h.

    /** Writes the text of the tree and a line feed. Buffer bytes go to the binary
        stream, one after the other in printing order; the text holds their offset and size.
    */
    void print (juce::OutputStream& text, juce::OutputStream& binary) const;

    /** The text of the tree. Buffer contents are dropped: only their offset and size remain. */
    juce::String saveToString() const;

    /** Parses the whole text stream, reading buffers from the binary stream.
        On failure reports through the context (at most once) and returns null.
        The source names the stream in reports.
    */
    static std::shared_ptr<State> parse (ExecutionContext& context, juce::InputStream& text, juce::InputStream& binary,
                                         const juce::String& source, StateParserCallback* callback = nullptr);

    /** The same with no binary stream: buffers are read back empty. */
    static std::shared_ptr<State> parse (ExecutionContext& context, juce::InputStream& text,
                                         const juce::String& source, StateParserCallback* callback = nullptr);

    /** Parses the text; on failure also reports "Could not parse value " and the quoted text. */
    static std::shared_ptr<State> createFromStateString (ExecutionContext& context, const juce::String& text,
                                                         const juce::String& source, StateParserCallback* callback = nullptr);

    /** Parses size bytes of text in place; on failure also reports "Could not parse value of " and the source. */
    static std::shared_ptr<State> createFromStateStringBuffer (ExecutionContext& context, const void* data, uint64_t size,
                                                               const juce::String& source, StateParserCallback* callback = nullptr);

    //==============================================================================
    // Binary form: little-endian, no alignment, one forward pass; see StateBinary.cpp
    bool toBinary (juce::OutputStream& output) const;
    /** The optional form: a present flag, then the body. */
    static bool toBinary (const State* state, juce::OutputStream& output);
    bool loadFromBinary (juce::InputStream& input, juce::String& error);
    /** Reads the optional form; a null state reads as a null pointer. */
    static bool loadFromBinary (juce::InputStream& input, std::shared_ptr<State>& state, juce::String& error);

    //==============================================================================
    // State files: the text in the file, the bytes of its buffers in a ".bin" sibling
    /** Writes through temporary files moved into place, so the file is always whole; reports and returns false on failure. */
    bool saveToFile (ExecutionContext& context, const juce::File& file, const juce::File& temporaryDirectory = {}) const;
    /** Reads a state file and its sibling; reports and returns null on failure. */
    static std::shared_ptr<State> createFromStateFile (ExecutionContext& context, const juce::File& file,
                                                       StateParserCallback* callback = nullptr);
    /** A file in the directory (the system's temporary one when empty) that does not exist yet. */
    static juce::File createTemporaryFileFrom (const juce::String& fileName, const juce::File& directory);

    /** Parses a State text compressed as a plain LZ4 block; null when it does not decompress to the size. */
    static std::shared_ptr<State> createFromStateStringLz4Buffer (ExecutionContext& context, const void* data, uint64_t compressedSize,
                                                                  uint64_t uncompressedSize, const juce::String& source,
                                                                  StateParserCallback* callback = nullptr);
    /** A string node of the decompressed UTF-8 text; null when it does not decompress to the size. */
    static std::shared_ptr<State> createFromStringLz4Buffer (const void* data, uint64_t compressedSize, uint64_t uncompressedSize);

    //==============================================================================
    /** Clears the value and makes the node void; class, identifier and version stay. */
    void clearValue();

private:
    const ClassExpression* classExpression = nullptr;
    UniqueIdentifier uniqueIdentifier;
    uint64_t versionNumber = 0;
    StateType type = StateType::voidType;
    juce::String source;

    // What the class registry resolves the two expressions to, filled by const
    // reads. A node handed on is read by several threads at once, so the
    // caches are atomic: whoever fills one first stores the same class as the
    // others would, and a race to fill it is harmless. Readers load with
    // acquire and fillers store with release, so that a class the registry
    // generated for one thread is seen whole by another (both are plain
    // moves on x86-64). Writers of the node are alone with it and use relaxed
    // stores.
    mutable std::atomic<Class*> classOfValue { nullptr };
    mutable std::atomic<Class*> classOfNode { nullptr };
    mutable std::atomic<Class*> compatibilityClassOfNode { nullptr };

    union Payload
    {
        uint64_t word;
        int64_t integer;
        double real;
        alignas (juce::String) unsigned char string[sizeof (juce::String)]; // a juce::String in place; see getStringPayload
        std::shared_ptr<State>* ownedPointer;
        Variables* variables;
        const ClassExpression* classExpression;
        const Object* nativePointer;
        RawBuffer* buffer;
    } payload { 0 };

    void setType (StateType newType);
    Payload copyPayload() const;

    // A string lives in the payload itself, saving an allocation per string
    // node. juce::String is one pointer to shared text, so the payload may be
    // copied bitwise as long as exactly one copy is destroyed.
    static_assert (sizeof (juce::String) == sizeof (uint64_t), "a juce::String must fit in the payload");
    juce::String& getStringPayload() noexcept                   { return *std::launder (reinterpret_cast<juce::String*> (payload.string)); }

    friend class StateCloner;
    friend class StateParser;
    template <class Source> friend class StateBinaryReader;
};

} // namespace tov
