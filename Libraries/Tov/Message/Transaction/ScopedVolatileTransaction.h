#pragma once

namespace tov
{

class Object;
class ObjectSpace;
class TransactionBuilderImplementation;

/** Sends the edits made during its life to the other peer without making a history step.
    Inside a normal scope it becomes part of that scope's transaction instead. */
class ScopedVolatileTransaction
{
public:
    /** On the object's space; nothing without one. */
    explicit ScopedVolatileTransaction (const Object& object);
    /** On that space; nothing with null. */
    explicit ScopedVolatileTransaction (ObjectSpace* space);
    ~ScopedVolatileTransaction();
    ScopedVolatileTransaction (const ScopedVolatileTransaction&) = delete;
    ScopedVolatileTransaction& operator= (const ScopedVolatileTransaction&) = delete;

    /** True when every object changed so far lies at or below the object; true with no builder. */
    bool checkThatAllChangedObjectsAreChildOf (const Object& object) const;

    TransactionBuilderImplementation* getBuilder() const noexcept  { return builder; }

private:
    ObjectSpace* space;
    TransactionBuilderImplementation* builder = nullptr;
};

} // namespace tov
