#pragma once

#include "ObjectExporter.h"
#include "StateHasher.h"

namespace tov
{

/** Folds what an object writes into a 64-bit hash, as if its State were hashed.

    Buffers count by size and address, not content: two objects hash alike
    only if their buffers are literally the same block.
*/
class ComputeHashObjectExporter : public ObjectExporter
{
public:
    explicit ComputeHashObjectExporter (uint32_t flags = 0) : ObjectExporter (flags) {}

    uint64_t get() const noexcept                                   { return hasher.get(); }

    void save (const Object& object, bool writeClass) override;
    void setClass (Class* objectClass) override                      { hasher.pushPointer (objectClass); }
    void setVersionNumber (uint64_t) override                        {}
    void enterVariable (const juce::String& name) override           { hasher.pushInteger ((int64_t) name.hashCode64()); }
    void leaveVariable() override                                    {}
    void reserveVariables (uint64_t) override                        {}
    void writeBoolean (bool value) override                          { hasher.pushBoolean (value); }
    void writeInteger (int64_t value) override                       { hasher.pushInteger (value); }
    void writeReal (double value) override                           { hasher.pushReal (value); }
    void writeString (const juce::String& value) override            { hasher.pushString (value); }
    void writeClass (const Class* value) override                    { hasher.pushPointer (value); }
    void writeOwnedPointer (const Object* object, Class* declaredClass) override;
    void writeUniqueIdentifier (const UniqueIdentifier& value) override { hasher.pushUniqueIdentifier (value); }
    void writeNativePointer (const Object* object) override          { hasher.pushPointer (object); }
    void writeState (const std::shared_ptr<State>& state) override;
    void writeBuffer (uint64_t size, void* data, bool copy) override;

private:
    StateHasher hasher;
};

} // namespace tov
