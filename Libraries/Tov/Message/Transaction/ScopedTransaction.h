#pragma once

#include <juce_core/juce_core.h>

namespace tov
{

class ExecutionContext;
class Object;
class ObjectSpace;
class TransactionBuilderImplementation;

/** Records the edits made during its life as one undoable transaction of the context's space.

        {
            ScopedTransaction transaction ("Rename layer", *layer);
            layer->name.set ("Background");
        }   // the space's transaction maker has made and performed the transaction here

    The context object is stored as it is before anything changes (deep stores what it owns too).
    Without a space, or while the space's transactions are disabled, the scope does nothing and
    the edits still happen, unrecorded. The scope is also a block of the execution context,
    "Transaction " + description.
*/
class ScopedTransaction
{
public:
    ScopedTransaction (const juce::String& description, const Object& context, bool deep = false);
    ~ScopedTransaction();
    ScopedTransaction (const ScopedTransaction&) = delete;
    ScopedTransaction& operator= (const ScopedTransaction&) = delete;

    void addObjectCurrentValue (const Object& object);
    void addObjectWithUndoValue (const Object& object, const Object& undoValue);
    /** Stores the object before it is touched, or a parent that constrains it. */
    void store (const Object& object, bool deep);
    void flush();

    TransactionBuilderImplementation* getBuilder() const noexcept  { return builder; }

private:
    ExecutionContext& context;
    ObjectSpace* space;
    TransactionBuilderImplementation* builder = nullptr;
};

} // namespace tov
