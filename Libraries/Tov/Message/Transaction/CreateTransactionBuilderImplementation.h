#pragma once

#include "TransactionBuilderImplementation.h"
#include "../../Core/ObjectPointerMap.h"
#include "../../Core/State.h"
#include <memory>
#include <vector>

namespace tov
{

class CompositeTransaction;
class History;
class ObjectMap;
class ObjectOwnedVector;
class Transaction;

/** Builds an undoable CompositeTransaction out of the changes of a scope.

    Each object's state is taken when it is first stored or touched (its undo value) and again
    when the next object is touched (its new value). Consecutive changes of one object thus make
    one entry; an object whose state ends equal to its undo value makes none. Destructions wait
    until the end, so that undoing, which runs backwards, brings destroyed objects back before
    their holders take their older states.
*/
class CreateTransactionBuilderImplementation : public TransactionBuilderImplementation
{
public:
    using UndoValues = ObjectPointerMap<std::shared_ptr<State>>;

    /** The composite is made at once, with the space as its parent. history is null for a nested
        builder and when the service gives none. */
    CreateTransactionBuilderImplementation (ObjectSpace& space, const juce::String& description, History* history);
    /** Deletes what is left unfinished. */
    ~CreateTransactionBuilderImplementation() override;

    void objectCreated (Object* object) override;
    void objectChanged (Object* object) override;
    void objectDestroyed (Object* object) override;
    void objectPreDeleted (Object* object) override;

    void addObjectCurrentValue (const Object& object) override;
    void addObjectWithUndoValue (const Object& object, const Object& undoValue) override;
    void store (const Object& object, bool deep, bool climb) override;
    void flush() override;

    /** The one way in: flushes the pending change, then appends. Takes ownership. */
    void appendTransaction (Transaction* transaction);
    /** Flushes, moves the held-back destructions to the end, and hands over the composite;
        null, and nothing left to hand over, when it is empty. */
    CompositeTransaction* takeFinishedTransaction();

    CompositeTransaction* getTransaction() const noexcept  { return transaction; }
    History* getHistory() const noexcept             { return history; }
    Object* getCurrentObject() const noexcept        { return currentObject; }
    /** The older state recorded for the object, or null. */
    std::shared_ptr<State> getUndoValue (const Object& object) const;

private:
    UndoValues undoValues;
    std::vector<Transaction*> destroyTransactions;
    CompositeTransaction* transaction;
    Object* currentObject = nullptr;
    History* history;

    void clearCurrentObjectWithin (const Object& object);
    std::shared_ptr<State> makeStoreSnapshot (const Object& object, bool deep) const;
    static bool isSameSnapshot (const State& state, const State& undoState);
    /** Enters the state as the undo value of the object and of everything below it, reducing
        owned targets to their identifiers: the form in which flush compares. A snapshot that
        is not deep holds identifiers already, and only its member variables are walked. */
    void walkSnapshot (const std::shared_ptr<State>& state, Object* object, bool deep);
    void walkOwnedPointer (const std::shared_ptr<State>& state, Object* object);
    void walkVector (State& state, ObjectOwnedVector& vector);
    void walkMap (const State& state, ObjectMap& map);
    void walkVariables (const State& state, Object* object, bool deep);
};

} // namespace tov
