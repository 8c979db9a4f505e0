#include "CreateTransactionBuilderImplementation.h"
#include "CompositeTransaction.h"
#include "CreateObjectMirroredTransaction.h"
#include "DestroyObjectMirroredTransaction.h"
#include "TransactionMakerObjectSpaceView.h"
#include "UpdateObjectMirroredTransaction.h"
#include "../../Container/ObjectMap.h"
#include "../../Container/ObjectOwnedVector.h"
#include "../../Core/ObjectImporter.h"
#include "../../Core/ObjectSpace.h"
#include "../../Core/StateObjectExporter.h"
#include "../../Pointer/ObjectOwnedPointer.h"
#include "../../Pointer/ObjectWeakPointer.h"
#include "../../Standard/ExecutionContext.h"

namespace tov
{

// Snapshots keep transient variables; shallow ones write owned objects as their identifiers.
static constexpr uint32_t deepSnapshot = exportTransientVariables;
static constexpr uint32_t shallowSnapshot = exportTransientVariables | exportOwnedPointersAsIdentifiers;
// A destroyed object is kept whole, with what it owns, so that undo can bring it all back.
static constexpr uint32_t destroyedObjectSnapshot = 0;

// Builders follow one another on a thread, each touching about as many objects as the last:
// the table of the last one finished is kept, emptied, for the next, so that a large edit does
// not grow and fill a new table each time.
static thread_local CreateTransactionBuilderImplementation::UndoValues spareUndoValues;

CreateTransactionBuilderImplementation::CreateTransactionBuilderImplementation (ObjectSpace& space, const juce::String& description, History* history)
    : TransactionBuilderImplementation (space), undoValues (std::move (spareUndoValues)),
      transaction (new CompositeTransaction (description)), history (history)
{
    transaction->removeStaticAllocationFlag();
    transaction->setParent (&space);
}

CreateTransactionBuilderImplementation::~CreateTransactionBuilderImplementation()
{
    for (auto* destruction : destroyTransactions)
        destruction->deleteThis();
    if (transaction != nullptr)
        transaction->deleteThis();
    undoValues.removeAll();
    if (undoValues.getCapacity() > spareUndoValues.getCapacity())
        spareUndoValues = std::move (undoValues);
}

std::shared_ptr<State> CreateTransactionBuilderImplementation::getUndoValue (const Object& object) const
{
    const auto* found = undoValues.find (&object);
    return found != nullptr ? *found : nullptr;
}

//==============================================================================
void CreateTransactionBuilderImplementation::appendTransaction (Transaction* newTransaction)
{
    flush();
    transaction->addTransaction (newTransaction);
}

CompositeTransaction* CreateTransactionBuilderImplementation::takeFinishedTransaction()
{
    flush();
    for (auto* destruction : destroyTransactions)
        transaction->addTransaction (destruction);
    destroyTransactions.clear();

    auto* finished = transaction;
    transaction = nullptr;
    if (finished->getTransactions().size() > 0)
        return finished;
    finished->deleteThis();
    return nullptr;
}

//==============================================================================
void CreateTransactionBuilderImplementation::objectCreated (Object* object)
{
    flush();
    appendTransaction (new CreateObjectMirroredTransaction (*object));
}

void CreateTransactionBuilderImplementation::objectChanged (Object* object)
{
    if (undoValues.find (object) == nullptr)
    {
        // A weak pointer cleared by its target's deletion is no edit of its own.
        if (auto* weakPointer = dynamic_cast<ObjectWeakPointer*> (object))
            if (weakPointer->get() == nullptr)
                return;
        if (auto* objectClass = object->getClass())
            if (objectClass->getBooleanAttribute (object->getSignature(), "internal", false))
                return;
    }
    if (object == currentObject)
        return;
    flush();
    currentObject = object;
}

void CreateTransactionBuilderImplementation::flush()
{
    if (currentObject == nullptr)
        return;
    auto* object = currentObject;
    // Cleared first: the transaction appended below flushes again, and would only find the
    // undo value that the walk has just made equal to the object's state.
    currentObject = nullptr;

    auto state = StateObjectExporter::make (*object, shallowSnapshot, true);
    auto undoState = getUndoValue (*object);
    if (undoState != nullptr && isSameSnapshot (*state, *undoState))
        return;

    walkSnapshot (state, object, false);
    appendTransaction (new UpdateObjectMirroredTransaction (*object, state, undoState));
}

// An undo value taken inside its owner's state names no class where the declaration says it
// all, while the object's own state always names it: the class alone is no change.
bool CreateTransactionBuilderImplementation::isSameSnapshot (const State& state, const State& undoState)
{
    if (undoState.getClassExpression() != nullptr || state.getClassExpression() == nullptr)
        return state.equals (undoState);
    State withoutClass (state);
    withoutClass.setClassExpression (nullptr);
    return withoutClass.equals (undoState);
}

void CreateTransactionBuilderImplementation::clearCurrentObjectWithin (const Object& object)
{
    if (currentObject != nullptr && currentObject->isChildOf (&object, false))
        currentObject = nullptr;
}

void CreateTransactionBuilderImplementation::objectDestroyed (Object* object)
{
    clearCurrentObjectWithin (*object);
    destroyTransactions.push_back (new DestroyObjectMirroredTransaction (*object, StateObjectExporter::make (*object, destroyedObjectSnapshot, true)));
}

void CreateTransactionBuilderImplementation::objectPreDeleted (Object* object)
{
    clearCurrentObjectWithin (*object);
}

//==============================================================================
void CreateTransactionBuilderImplementation::addObjectCurrentValue (const Object& object)
{
    auto state = StateObjectExporter::make (object, shallowSnapshot, true);
    appendTransaction (new UpdateObjectMirroredTransaction (const_cast<Object&> (object), state, state));
}

void CreateTransactionBuilderImplementation::addObjectWithUndoValue (const Object& object, const Object& undoValue)
{
    auto& target = const_cast<Object&> (object);
    walkSnapshot (StateObjectExporter::make (undoValue, shallowSnapshot, true), &target, false);
    target.changed();
}

void CreateTransactionBuilderImplementation::store (const Object& object, bool deep, bool climb)
{
    auto* storeObject = const_cast<Object*> (&object);
    if (climb)
    {
        // Up to the first heap object above the object: a parent with constraints on what it
        // holds may change it along with the object, so the parent is stored whole instead.
        for (auto* level = storeObject; level->getParent() != nullptr; level = level->getParent())
        {
            if (level != &object && level->isReferenceCounted())
                break;
            if (level->getParent()->hasVariableConstraints (level))
            {
                storeObject = level->getParent();
                deep = true;
            }
        }
    }
    if (undoValues.find (storeObject) != nullptr)
        return;
    walkSnapshot (makeStoreSnapshot (*storeObject, deep), storeObject, deep);
}

// The first object a builder stores is its scope's context, of which the maker may hold a
// snapshot already. A shallow snapshot is never changed by the walk: owned objects are
// identifiers in it.
std::shared_ptr<State> CreateTransactionBuilderImplementation::makeStoreSnapshot (const Object& object, bool deep) const
{
    auto* maker = getObjectSpace() != nullptr ? getObjectSpace()->getTransactionMaker() : nullptr;
    if (deep || ! undoValues.empty() || maker == nullptr)
        return StateObjectExporter::make (object, deep ? deepSnapshot : shallowSnapshot, true);
    return maker->makeContextSnapshot (object, shallowSnapshot);
}

//==============================================================================
// The elements of a list or map in a shallow snapshot are identifiers already: a list of
// thousands is not read through for nothing.
void CreateTransactionBuilderImplementation::walkSnapshot (const std::shared_ptr<State>& state, Object* object, bool deep)
{
    if (state == nullptr)
        return;
    if (object != nullptr)
        undoValues[object] = state;

    if (state->getType() == StateType::ownedPointerType)
        walkOwnedPointer (state, object);
    else if (state->getType() == StateType::variablesType)
    {
        if (auto* vector = dynamic_cast<ObjectOwnedVector*> (object))
        {
            if (deep)
                walkVector (*state, *vector);
        }
        else if (auto* map = dynamic_cast<ObjectMap*> (object))
        {
            if (deep)
                walkMap (*state, *map);
        }
        else
            walkVariables (*state, object, deep);
    }
}

// A pointer's older value is its target's identity, not its target's content.
void CreateTransactionBuilderImplementation::walkOwnedPointer (const std::shared_ptr<State>& state, Object* object)
{
    auto* pointer = dynamic_cast<ObjectOwnedPointer*> (object);
    Object* child = pointer != nullptr ? pointer->get() : nullptr;
    walkSnapshot (state->getOwnedPointer(), child, true);
    if (child != nullptr)
        undoValues[object] = std::make_shared<State> (child->getUniqueIdentifier());
}

static bool isOwnedPointerWithTarget (const State* state)
{
    return state != nullptr && state->getType() == StateType::ownedPointerType && state->getOwnedPointer() != nullptr;
}

void CreateTransactionBuilderImplementation::walkVector (State& state, ObjectOwnedVector& vector)
{
    const size_t count = std::min (state.getNumVariables(), vector.size());
    for (size_t i = 0; i < count; ++i)
    {
        if (! isOwnedPointerWithTarget (state.getVariableState (i).get()))
            continue;
        auto* element = vector.get (i);
        walkSnapshot (state.getVariableState (i)->getOwnedPointer(), element, true);
        state.setVariableState (i, std::make_shared<State> (element->getUniqueIdentifier()));
    }
}

// The key is rebuilt from its state to find the value it stands for. It is a temporary: its
// own state is walked without it, so that no undo value outlives it under its address.
void CreateTransactionBuilderImplementation::walkMap (const State& state, ObjectMap& map)
{
    for (size_t i = 0; i < state.getNumVariables(); ++i)
    {
        const auto& entry = state.getVariableStateRef (i);
        const auto keyState = entry.getVariableStateByName ("key");
        const auto valueState = entry.getVariableStateByName ("value");
        if (! isOwnedPointerWithTarget (keyState.get()) || ! isOwnedPointerWithTarget (valueState.get()))
            continue;

        ObjectImporter importer (ExecutionContext::get(), keyState);
        Object* key = nullptr;
        if (! importer.readObject (nullptr, key, map.getKeyClass()) || key == nullptr)
            continue;
        key->incrementReferenceCounter();
        walkSnapshot (keyState->getOwnedPointer(), nullptr, true);
        if (auto* value = map.find (*key))
            walkSnapshot (valueState->getOwnedPointer(), value, true);
        key->decrementReferenceCounter();
    }
}

void CreateTransactionBuilderImplementation::walkVariables (const State& state, Object* object, bool deep)
{
    auto* space = getObjectSpace();
    for (size_t i = 0; i < state.getNumVariables(); ++i)
    {
        const auto& variableState = state.getVariableState (i);
        Object* child = object != nullptr ? object->getVariableByName (state.getVariableName (i)) : nullptr;
        if (child == nullptr && variableState != nullptr && variableState->getUniqueIdentifier().isNotNull() && space != nullptr)
            child = space->getObject (variableState->getUniqueIdentifier());
        walkSnapshot (variableState, child, deep);
    }
}

} // namespace tov
