#pragma once

#include "State.h"

namespace tov
{

class Object;
class Class;
class VariableSignature;

/** Bits that change how objects describe themselves to an exporter. */
enum ExporterFlags : uint32_t
{
    exportOwnedPointersAsIdentifiers = 1,
    exportWithoutDefaults            = 2,
    exportWithoutIdentifiers         = 4,
    exportTransientVariables         = 8,
    exportBuffersAsBase64            = 16,
    /** Buffers are written as views of the objects' own bytes, not copies: for a state that is
        written out before the objects change again, as saving to a file does. Without it a
        snapshot (a transaction's, a diff's, a remote call's) keeps bytes of its own, which a
        later resize of the buffer cannot free beneath it. */
    exportBufferViews                = 32
};

/** What objects describe themselves to: saving, hashing and mirroring all take this one path. */
class ObjectExporter
{
public:
    explicit ObjectExporter (uint32_t flags = 0) : flags (flags) {}
    virtual ~ObjectExporter() = default;

    bool hasFlag (uint32_t flag) const noexcept  { return (flags & flag) != 0; }
    void addFlag (uint32_t flag) noexcept        { flags |= flag; }
    void removeFlag (uint32_t flag) noexcept     { flags &= ~flag; }
    uint32_t getFlags() const noexcept           { return flags; }

    virtual void save (const Object& object, bool writeClass) = 0;
    virtual void setClass (Class* objectClass) = 0;
    virtual void setVersionNumber (uint64_t version) = 0;
    virtual void enterVariable (const juce::String& name) = 0;
    virtual void leaveVariable() = 0;
    virtual void reserveVariables (uint64_t count) = 0;
    virtual void writeBoolean (bool value) = 0;
    virtual void writeInteger (int64_t value) = 0;
    virtual void writeReal (double value) = 0;
    virtual void writeString (const juce::String& value) = 0;
    virtual void writeClass (const Class* value) = 0;
    virtual void writeOwnedPointer (const Object* object, Class* declaredClass) = 0;
    virtual void writeUniqueIdentifier (const UniqueIdentifier& value) = 0;
    virtual void writeNativePointer (const Object* object) = 0;
    virtual void writeState (const std::shared_ptr<State>& state) = 0;
    virtual void writeBuffer (uint64_t size, void* data, bool copy) = 0;

    /** Writes the variable under its signature's name, when the signature may be saved. */
    void saveVariable (const VariableSignature& signature, const Object& variable);

    // Each writes one named variable: enterVariable, one write, leaveVariable.
    void saveVariable (const juce::String& name, bool value);
    void saveVariable (const juce::String& name, int64_t value);
    void saveVariable (const juce::String& name, double value);
    void saveVariable (const juce::String& name, const juce::String& value);
    void saveVariable (const juce::String& name, const char* value);
    void saveVariable (const juce::String& name, const UniqueIdentifier& value);
    void saveVariable (const juce::String& name, const std::shared_ptr<State>& value);
    void saveVariable (const juce::String& name, uint64_t size, void* data, bool copy);
    void saveVariable (const juce::String& name, const Object* pointedObject, Class* declaredClass);
    void saveVariable (const juce::String& name, const Object& object);

    /** An owned list's elements, once their variables are reserved: saveVariable (juce::String(),
        object, declaredClass) for each in turn, unless the exporter has a faster way. */
    virtual void saveOwnedObjects (const std::vector<Object*>& objects, Class* declaredClass);

    /** Enters a named variable for the life of the scope. */
    class Scope
    {
    public:
        Scope (ObjectExporter& exporter, const juce::String& name) : exporter (exporter) { exporter.enterVariable (name); }
        ~Scope() { exporter.leaveVariable(); }

    private:
        ObjectExporter& exporter;
    };

private:
    uint32_t flags;
};

} // namespace tov
