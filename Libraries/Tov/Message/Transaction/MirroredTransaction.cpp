#include "MirroredTransaction.h"
#include "ChildTransactionsScope.h"
#include "CreateObjectMirroredTransaction.h"
#include "DestroyObjectMirroredTransaction.h"
#include "UpdateObjectMirroredTransaction.h"
#include "../Envelop.h"
#include "../MessageTarget.h"
#include "../Mirroring/MirroringMessage.h"
#include "../Peer.h"
#include "../RemoteCall/ThreadAwareEnvelopQueueMessageTarget.h"
#include "../../Atomic/Number.h"
#include "../../Atomic/String.h"
#include "../../Container/ObjectOwnedVector.h"
#include "../../Core/CachedDynamicCast.h"
#include "../../Core/ClassExpression.h"
#include "../../Core/ObjectSpace.h"
#include "../../Core/ObjectSpaceProvider.h"
#include "../../Core/StateObjectExporter.h"
#include "../../Pointer/ObjectOwnedPointer.h"
#include "../../Standard/ExecutionContext.h"

namespace tov
{

TOV_BEGIN_CLASS (MirroredTransaction)
TOV_END_CLASS()

TOV_BEGIN_CLASS (CreateObjectMirroredTransaction)
TOV_END_CLASS()

TOV_BEGIN_CLASS (UpdateObjectMirroredTransaction)
TOV_END_CLASS()

TOV_BEGIN_CLASS (DestroyObjectMirroredTransaction)
TOV_END_CLASS()

// Export flags of the snapshots: shallow writes owned objects as their identifiers.
static constexpr uint32_t shallowFlags = exportOwnedPointersAsIdentifiers;

MirroredTransaction::MirroredTransaction (Object& object)
    : MirroredTransaction()
{
    pointer.setAddressOf (&object, false);
}

// Inside a composite the climb above the composite's list is made once for all its children.
ObjectSpace* MirroredTransaction::findSpace (const MirroringMessage& message, const VariableAddress& address,
                                             ChildTransactionsScope* scope) const
{
    if (scope == nullptr || cachedDynamicCast<ObjectSpaceProvider> (message) != nullptr
         || cachedDynamicCast<ObjectSpaceProvider> (*this) != nullptr)
        return address.getObjectSpaceFromProvider (ObjectSpaceProvider::get (message, false));
    return scope->getSpaceAboveChildren (address);
}

Peer* MirroredTransaction::findPeer (ChildTransactionsScope* scope) const
{
    return scope != nullptr ? scope->getPeerOf (*this) : Peer::get (*this);
}

Peer* MirroredTransaction::getPeerToApplyTo (const Envelop& envelop, ChildTransactionsScope* scope) const
{
    return envelop.getSenderIdentifier() != nullptr ? findPeer (scope) : nullptr;
}

void MirroredTransaction::applyAndAddMessage (MirroringMessage* message, Envelop& envelop) const
{
    message->setParent (const_cast<MirroredTransaction*> (this));
    if (auto* peer = getPeerToApplyTo (envelop, ChildTransactionsScope::findFor (*this)))
        message->process (ExecutionContext::get(), *envelop.getSenderIdentifier(), *peer->getIncomingMessageTarget());
    envelop.addMessage (message);
}

void MirroredTransaction::applyAndAddMessage (MirroringMessage* message, Envelop& envelop, Object* object, ObjectSpace* space,
                                              ChildTransactionsScope* scope) const
{
    message->setParent (const_cast<MirroredTransaction*> (this));
    if (space != nullptr && getPeerToApplyTo (envelop, scope) != nullptr)
        message->processAt (scope != nullptr ? scope->getExecutionContext() : ExecutionContext::get(), object, *space);
    envelop.addMessage (message);
}

juce::String MirroredTransaction::describeState (const juce::String& verb, const State& state)
{
    const auto* expression = state.getClassExpression();
    return verb + " " + (expression != nullptr ? expression->toString() : juce::String ("<noclass>")) + " " + state.toShortString();
}

//==============================================================================
void CreateObjectMirroredTransaction::perform (Envelop& envelop)
{
    if (state == nullptr)
        if (auto* object = pointer.get())
            state = StateObjectExporter::make (*object, shallowFlags, true);
    if (state != nullptr)
        envelop.addMessage (new MirroringMessage (pointer, state));
}

void CreateObjectMirroredTransaction::redo (Envelop& envelop)
{
    if (state != nullptr)
        applyAndAddMessage (new MirroringMessage (pointer, state), envelop);
}

juce::String CreateObjectMirroredTransaction::toString() const
{
    if (getDescription().isNotEmpty())
        return getDescription();
    if (state == nullptr)
        return "Create Object";
    return describeState ("Create", *state) + " " + state->getUniqueIdentifier().to64BitsHexadecimalString();
}

//==============================================================================
void UpdateObjectMirroredTransaction::perform (Envelop& envelop)
{
    Object* object = nullptr;
    ObjectSpace* space = nullptr;
    envelop.addMessage (makeMessage (state, ChildTransactionsScope::findFor (*this), object, space));
}

void UpdateObjectMirroredTransaction::undo (Envelop& envelop)
{
    if (undoState != nullptr)
        applyAndAddState (undoState, envelop);
}

void UpdateObjectMirroredTransaction::redo (Envelop& envelop)
{
    applyAndAddState (state, envelop);
}

// The address is resolved once, for the exclusion and for the load.
void UpdateObjectMirroredTransaction::applyAndAddState (const std::shared_ptr<State>& stateToLoad, Envelop& envelop) const
{
    Object* object = nullptr;
    ObjectSpace* space = nullptr;
    auto* scope = ChildTransactionsScope::findFor (*this);
    auto* message = makeMessage (stateToLoad, scope, object, space);
    applyAndAddMessage (message, envelop, object, space, scope);
}

MirroringMessage* UpdateObjectMirroredTransaction::makeMessage (const std::shared_ptr<State>& stateToLoad, ChildTransactionsScope* scope,
                                                                Object*& object, ObjectSpace*& space) const
{
    // The state, counted by the message and read by the load, is fetched while the message is made.
    __builtin_prefetch (stateToLoad.get());
    auto* message = new MirroringMessage (pointer, stateToLoad);
    message->setParent (const_cast<UpdateObjectMirroredTransaction*> (this));

    const auto& address = pointer.getAddress();
    space = findSpace (*message, address, scope);
    object = space != nullptr ? address.getObjectInSpace (*space) : nullptr;
    if (object != nullptr && object->hasSpace() && isExcludedFromMirroringWhenSent (*object, scope))
        object->getSpace()->addToMirroringExclusionList (*object, 2);
    return message;
}

bool UpdateObjectMirroredTransaction::isExcludedFromMirroringWhenSent (const Object& object, ChildTransactionsScope* scope) const
{
    auto* objectClass = object.getClass();
    auto* signature = object.getSignature();
    auto decide = [objectClass, signature]
    {
        const bool isValueOrHolder = Class::inheritsFrom (objectClass, &Number::staticClass)
                                  || Class::inheritsFrom (objectClass, &String::staticClass)
                                  || Class::inheritsFrom (objectClass, &ObjectOwnedVector::staticClass)
                                  || Class::inheritsFrom (objectClass, &ObjectOwnedPointer::staticClass);
        return isValueOrHolder && objectClass->getBooleanAttribute (signature, "mirroringExclusion", true);
    };
    // The siblings of a composite mostly change objects of one class and signature.
    return scope != nullptr ? scope->decideForClassAndSignature (objectClass, signature, decide) : decide();
}

juce::String UpdateObjectMirroredTransaction::toString() const
{
    if (getDescription().isNotEmpty() || state == nullptr)
        return getDescription();
    return describeState ("Update", *state);
}

//==============================================================================
void DestroyObjectMirroredTransaction::undo (Envelop& envelop)
{
    if (state != nullptr)
        applyAndAddMessage (new MirroringMessage (pointer, state), envelop);
}

juce::String DestroyObjectMirroredTransaction::toString() const
{
    if (getDescription().isNotEmpty() || state == nullptr)
        return getDescription();
    return describeState ("Delete", *state);
}

} // namespace tov
