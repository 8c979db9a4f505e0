#pragma once

#include "ObjectExporter.h"
#include <vector>

namespace tov
{

/** Builds a State tree from what objects write: the path of saving, cloning and mirroring. */
class StateObjectExporter : public ObjectExporter
{
public:
    explicit StateObjectExporter (uint32_t flags = 0);

    /** The object's State, written with these flags. */
    static std::shared_ptr<State> make (const Object& object, uint32_t flags, bool writeClass);

    const std::shared_ptr<State>& getRootState() const  { return stack.front(); }
    const std::shared_ptr<State>& getCurrentState() const { return stack.back(); }

    void save (const Object& object, bool writeClass) override;
    void setClass (Class* objectClass) override;
    void setVersionNumber (uint64_t version) override        { current().setVersionNumber (version); }
    void enterVariable (const juce::String& name) override;
    void leaveVariable() override                            { stack.pop_back(); }
    void reserveVariables (uint64_t count) override          { current().reserveVariables ((size_t) count); }
    void writeBoolean (bool value) override                  { current().setBoolean (value); }
    void writeInteger (int64_t value) override               { current().setInteger (value); }
    void writeReal (double value) override                   { current().setReal (value); }
    void writeString (const juce::String& value) override    { current().setString (value); }
    void writeClass (const Class* value) override            { current().setClassValue (value); }
    void writeOwnedPointer (const Object* object, Class* declaredClass) override;
    void writeUniqueIdentifier (const UniqueIdentifier& value) override { current().setUniqueIdentifierValue (value); }
    void writeNativePointer (const Object* object) override  { current().setNativePointer (object); }
    void writeState (const std::shared_ptr<State>& state) override;
    void writeBuffer (uint64_t size, void* data, bool copy) override;

private:
    // Room for the depth of most objects, so that a small one (a message) grows it not at all.
    static constexpr size_t typicalDepth = 8;
    std::vector<std::shared_ptr<State>> stack;

    State& current() const { return *stack.back(); }
};

} // namespace tov
