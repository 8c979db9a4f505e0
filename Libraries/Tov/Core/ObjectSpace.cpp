#include "ObjectSpace.h"
#include "../Message/Message.h"
#include "../Message/Mirroring/MirrorerObjectSpaceView.h"
#include "../Message/Transaction/TransactionMakerObjectSpaceView.h"
#include "../Standard/ExecutionContext.h"
#include "../Standard/Profiler/ProfilerScope.h"
#include "../Standard/Service.h"

namespace tov
{

TOV_BEGIN_CLASS (ObjectSpace)
TOV_END_CLASS()

ObjectSpace::ObjectSpace()
{
    rootObject.setParent (this);
    mirroringExclusionList.setParent (this);
}

ObjectSpace::ObjectSpace (const juce::String& spaceName)
    : ObjectSpace()
{
    name.set (spaceName, false);
}

ObjectSpace::~ObjectSpace()
{
    disableMirroring();
    deleteRootObject();
    disableTransactions();
    deleteViews();
}

//==============================================================================
Object* ObjectSpace::getObject (UniqueIdentifier identifier) const
{
    return objectTable.find (identifier);
}

void ObjectSpace::addObject (Object* object, UniqueIdentifier& identifier)
{
    if (object->hasStaticAllocationFlag())
        return;

    const bool isRoot = identifier == UniqueIdentifier::getRootIdentifier();
    if (identifier.isNull())
    {
        // A random value is taken as it comes: the table is not asked, and a collision overwrites.
        identifier = makeRandomIdentifier();
    }
    else
    {
        while (auto* holder = objectTable.find (identifier))
        {
            logIdentifierConflict (*holder, *object, identifier);
            identifier.setFromInt64 (identifier.getInt64() + 1);
        }
    }

    objectTable.set (identifier, object);
    if (isRoot)
        holdRoot (object);
}

void ObjectSpace::removeObject (UniqueIdentifier identifier)
{
    objectTable.erase (identifier);
}

// The generator of the service above the space, or else of the current service. Objects often
// enter in a row (the children of a list, of a composite transaction), and a large table is read
// at random: the slot of the identifier that the object a few entries later will draw is fetched
// now, so that its entry does not wait for memory.
UniqueIdentifier ObjectSpace::makeRandomIdentifier() const
{
    constexpr size_t identifiersFetchedAhead = 8;
    auto& generator = Service::getRandomGeneratorFor (getParent());
    const UniqueIdentifier identifier ((uint64_t) generator.sampleInt64());
    objectTable.prefetch (UniqueIdentifier ((uint64_t) generator.peekInt64 (identifiersFetchedAhead - 1)));
    return identifier;
}

void ObjectSpace::logIdentifierConflict (const Object& holder, const Object& newcomer, UniqueIdentifier identifier) const
{
    ExecutionContext::get().error ("!!!!!!!!! UID Conflict !!!!!!!!!" + holder.getFriendlyName() + " vs. " + newcomer.getFriendlyName()
                                   + " both have UID " + identifier.to64BitsHexadecimalString());
}

void ObjectSpace::getObjectDescriptions (std::vector<ObjectDescription>& out, const Class* filter, bool exactClass) const
{
    if (filter == nullptr)
    {
        out.resize (objectTable.size());
        size_t i = 0;
        objectTable.forEach ([&] (UniqueIdentifier identifier, Object* object)
        {
            out[i++] = { identifier, object->getClass(), object->getFriendlyName() };
        });
        return;
    }

    objectTable.forEach ([&] (UniqueIdentifier identifier, Object* object)
    {
        const Class* objectClass = object->getClass();
        if (exactClass ? objectClass == filter : Class::inheritsFrom (objectClass, filter))
            out.emplace_back (identifier, objectClass, object->getFriendlyName());
    });
}

//==============================================================================
void ObjectSpace::setRootObject (Object* object, bool byIdentifier)
{
    if (object == nullptr)
        return;
    object->removeStaticAllocationFlag();
    if (byIdentifier)
        object->setUniqueIdentifier (UniqueIdentifier::getRootIdentifier());
    else
        holdRoot (object);
    object->callInitializeObject (this, nullptr, this);
}

void ObjectSpace::holdRoot (Object* object)
{
    // The pointer owns the root, but the root's parent is the space itself, so that names and
    // paths go from the space straight to the root.
    rootObject.set (object, true);
    object->setParent (this);
}

void ObjectSpace::deleteRootObject()
{
    if (rootObject.get() == nullptr)
        return;
    rootObject.set (nullptr, false);
    objectTable.clear();
}

//==============================================================================
void ObjectSpace::addView (ObjectSpaceView* view)
{
    views.push_back (view);
}

void ObjectSpace::removeView (ObjectSpaceView* view)
{
    const auto found = std::find (views.begin(), views.end(), view);
    if (found == views.end())
        return;
    views.erase (found);
    view->resetObjectSpace();
}

void ObjectSpace::deleteViews()
{
    // Taken out first, so that a view that removes itself as it goes cannot make another be skipped.
    std::vector<ObjectSpaceView*> deleted;
    deleted.swap (views);
    for (auto* view : deleted)
        delete view;
}

//==============================================================================
// Every switch answers as for a space whose transactions are disabled while there is no maker.
void ObjectSpace::enableTransactions (MessageTarget& receiver, MessageTarget& sender)
{
    if (transactionMaker != nullptr)
        return;
    transactionMaker = new TransactionMakerObjectSpaceView (*this, receiver, sender);
    addView (transactionMaker);
}

void ObjectSpace::disableTransactions()
{
    if (transactionMaker == nullptr)
        return;
    removeView (transactionMaker);
    delete transactionMaker;
    transactionMaker = nullptr;
}

TransactionBuilderImplementation* ObjectSpace::startTransaction (const juce::String& description, const Object& context)
{
    return transactionMaker != nullptr ? transactionMaker->startTransaction (description, context) : nullptr;
}

TransactionBuilderImplementation* ObjectSpace::startVolatileTransaction()
{
    return transactionMaker != nullptr ? transactionMaker->startVolatileTransaction() : nullptr;
}

// The maker finishes the top of its stack, which is this builder when scopes nest properly.
void ObjectSpace::finishTransaction (TransactionBuilderImplementation*)
{
    if (transactionMaker != nullptr)
        transactionMaker->leave();
}

void ObjectSpace::startBypassTransaction()
{
    if (transactionMaker != nullptr)
        transactionMaker->startBypassTransaction();
}

void ObjectSpace::finishBypassTransaction()
{
    if (transactionMaker != nullptr)
        transactionMaker->leave();
}

bool ObjectSpace::isInsideNonVolatileTransaction() const
{
    return transactionMaker != nullptr && transactionMaker->isInsideNonVolatileTransaction();
}

bool ObjectSpace::isInsideVolatileTransaction() const
{
    return transactionMaker != nullptr && transactionMaker->isInsideVolatileTransaction();
}

void ObjectSpace::storeValueForTransaction (const Object& object, bool deep, bool climb)
{
    if (transactionMaker != nullptr)
        transactionMaker->storeValueForTransaction (object, deep, climb);
}

//==============================================================================
// The mirrorer exists from the first target to the last.
void ObjectSpace::addMirroringTargetIdentifier (const Object& senderIdentifier, const Object& targetIdentifier)
{
    if (mirrorer == nullptr)
    {
        mirrorer = new MirrorerObjectSpaceView (*this, senderIdentifier);
        addView (mirrorer);
    }
    mirrorer->addTarget (targetIdentifier);
}

void ObjectSpace::removeMirroringTargetIdentifier (const Object& targetIdentifier)
{
    if (mirrorer == nullptr)
        return;
    mirrorer->removeTarget (targetIdentifier);
    if (mirrorer->getNumTargets() == 0)
        disableMirroring();
}

void ObjectSpace::disableMirroring()
{
    if (mirrorer == nullptr)
        return;
    removeView (mirrorer);
    delete mirrorer;
    mirrorer = nullptr;
}

void ObjectSpace::updateMirroring (double timeInSeconds, double periodInSeconds)
{
    if (mirrorer != nullptr)
    {
        // The name is made only for a profiler that will see it.
        const ProfilerScope scope (Profiler::get() != nullptr ? "UpdateOutputMirrorer " + getName() : juce::String());
        mirrorer->update (timeInSeconds, periodInSeconds);
        if (mirrorer != nullptr && mirrorer->getNumTargets() == 0)
            disableMirroring();
    }
    ageMirroringExclusionList();
}

bool ObjectSpace::pushMessageToMirroringTargets (Message* message)
{
    if (mirrorer != nullptr)
        return mirrorer->postMessage (message);
    if (message != nullptr)
        message->deleteThis();
    return false;
}

//==============================================================================
// The two cache lines where an object's header and first variables are.
static void fetchObject (const Object* object)
{
    __builtin_prefetch (object);
    __builtin_prefetch (reinterpret_cast<const char*> (object) + 64);
}

void ObjectSpace::addToMirroringExclusionList (const Object& object, int lifeCounter)
{
    // A key that holds the object equals any other key that holds it: the entry found before
    // is the one the list would find. The entry's counter is fetched while its key is checked:
    // both are read from the entry, and each is out of the caches when undo comes back to it.
    auto* known = mirroringExclusionEntries.find (&object);
    if (known != nullptr)
        fetchObject (MirroringExclusionList::TypedIterator (*known).getValue());
    if (known == nullptr || MirroringExclusionList::TypedIterator (*known).getKey()->getIfAlreadyCached() != &object)
    {
        auto* key = static_cast<ObjectWeakPointer*> (ObjectWeakPointer::staticClass.createObject());
        key->set (const_cast<Object*> (&object), false);
        // The map keeps the entry of an equal key, and destroys this one.
        known = &(mirroringExclusionEntries[&object] = mirroringExclusionList.getEntry (key, false).getPosition());
    }
    MirroringExclusionList::TypedIterator (*known).getValue()->set (lifeCounter, false);
}

bool ObjectSpace::isInMirroringExclusionList (const Object& object) const
{
    for (auto entry : mirroringExclusionList)
    {
        // Never resolved here: an entry whose object went stays dead.
        const Object* excluded = entry.getKey()->getIfAlreadyCached();
        if (excluded == nullptr)
            continue;
        // The object itself, or an owner across embedding only.
        for (const Object* level = &object; level != nullptr; level = level->hasStaticAllocationFlag() ? level->getParent() : nullptr)
            if (level == excluded)
                return true;
    }
    return false;
}

// 1 on a live entry ends it; 1 on a dead one stays, and the walk above ignores it; larger
// values count down; 0 and negative values stay as they are.
void ObjectSpace::ageMirroringExclusionList()
{
    for (auto entry = mirroringExclusionList.begin(); entry != mirroringExclusionList.end();)
    {
        auto current = entry;
        ++entry;
        const auto lifeCounter = current.getValue()->get();
        if (lifeCounter == 1 && current.getKey()->getIfAlreadyCached() != nullptr)
        {
            forgetMirroringExclusionEntry (current);
            mirroringExclusionList.remove (current, false);
        }
        else if (lifeCounter > 1)
            current.getValue()->set (lifeCounter - 1, false);
    }
}

void ObjectSpace::forgetMirroringExclusionEntry (const MirroringExclusionList::TypedIterator& entry)
{
    const auto* object = entry.getKey()->getIfAlreadyCached();
    auto* known = mirroringExclusionEntries.find (object);
    if (known != nullptr && *known == entry.getPosition())
        mirroringExclusionEntries.erase (object);
}

} // namespace tov
