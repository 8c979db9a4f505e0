#pragma once

#include "../Atomic/Integer.h"
#include "../Atomic/NameableObject.h"
#include "../Container/Map.h"
#include "ObjectPointerMap.h"
#include "ObjectSpaceView.h"
#include "ObjectTable.h"
#include "../Pointer/ObjectOwnedPointer.h"
#include "../Pointer/ObjectWeakPointer.h"
#include "UniqueIdentifier.h"
#include <array>
#include <tuple>
#include <vector>

namespace tov
{

class Message;
class MessageTarget;
class MirrorerObjectSpaceView;
class TransactionBuilderImplementation;
class TransactionMakerObjectSpaceView;

/** The registry of the live objects of one world: a table from identifier to object, the
    root object of that world, and the views that hear of every creation, change and
    destruction inside it.

    The space owns its root; the root owns the rest through its pointers and containers.
    The table owns nothing: objects enter it when they are initialised in the space and
    leave it when they are deinitialised. Member variables never enter it, as they are
    reached through their owner.

    What the views hear, in an object's life:
    1. Initialisation: the object enters the table with its final identifier, initialises
       its variables, then objectCreated, unless the object is a member variable or nobody
       holds it yet; such an object is announced when it gets its first holder.
    2. Each change of an initialised object: objectChanged, after the parents' variable
       callbacks and before the object's own views.
    3. Destruction: objectDestroyed with the object still whole, then objectPreDeleted as
       it is deinitialised, then it leaves the table.

    Two views feed on this stream and are switched on and off at run time: the transaction
    maker (undoable edits) and the mirrorer (copies of the world on other peers). Every
    operation on them answers as for a space without them while they are off.

    A space has no lock: it belongs to the thread of the service that owns it.
*/
class ObjectSpace : public NameableObject
{
public:
    TOV_DECLARE_CLASS (ObjectSpace, NameableObject)

    using ObjectDescription = std::tuple<UniqueIdentifier, const Class*, juce::String>;

    using MirroringExclusionList = Map<ObjectWeakPointer, Integer>;

    ObjectSpace();
    explicit ObjectSpace (const juce::String& name);
    /** Switches mirroring off, deletes the root, switches transactions off, deletes the views. */
    ~ObjectSpace() override;

    const juce::String& getName() const noexcept         { return name.get(); }
    void setName (const juce::String& newName, bool notify = true) { name.set (newName, notify); }

    //==============================================================================
    // The table
    /** The object of that identifier, or null. */
    virtual Object* getObject (UniqueIdentifier identifier) const;
    /** Asks getObject, so that a subclass that overrides it answers here too. */
    bool hasObject (UniqueIdentifier identifier) const   { return getObject (identifier) != nullptr; }
    size_t getNumObjects() const noexcept                { return objectTable.size(); }

    /** Enters an object being initialised in the space; called by Object::callInitializeObject.

        A null identifier gets a random one. A taken one is an error that is repaired: it is
        logged and the newcomer moves up by one until a free value is found. The root
        identifier makes the object the root, even when the newcomer had to move away from it.
    */
    void addObject (Object* object, UniqueIdentifier& identifier);
    /** Takes the entry out of the table, if there is one; the root pointer keeps its object. */
    void removeObject (UniqueIdentifier identifier);

    /** Identifier, class and friendly name of objects, in no meaningful order. Without a filter
        out becomes exactly the whole table; with one, the objects of that class (or, unless
        exactClass, of a class inheriting from it) are appended. */
    void getObjectDescriptions (std::vector<ObjectDescription>& out, const Class* filter, bool exactClass) const;

    //==============================================================================
    // The root
    /** Makes the object the root and initialises it in the space, with the space as parent.
        byIdentifier gives it the root identifier, which makes it the root as it enters the
        table and makes roots alike on every machine; otherwise it keeps its identifier. */
    void setRootObject (Object* object, bool byIdentifier);
    /** Deletes the root, and with it all it owns, then empties the table of whatever is left,
        without telling anybody. Nothing at all without a root. */
    void deleteRootObject();
    Object* getRootObject() const noexcept               { return rootObject.get(); }
    /** The pointer that holds the root, for code that waits for it to be set or reset. */
    const ObjectOwnedPointer& getRootObjectPointer() const noexcept { return rootObject; }

    //==============================================================================
    // Views
    using Object::addView;
    using Object::removeView;

    /** Appends the view, which the space then owns. A view added twice is called twice. */
    void addView (ObjectSpaceView* view);
    /** Takes out the first occurrence and clears the view's space; the others keep their order. */
    void removeView (ObjectSpaceView* view);
    /** Deletes every view in order, and empties the list. */
    void deleteViews();
    const std::vector<ObjectSpaceView*>& getObjectSpaceViews() const noexcept { return views; }

    // Each calls the views in order, reading their number again after each call: a view added
    // on the way is called too, and one removed on the way may make the next one be skipped.
    void sendObjectCreated (Object* object);
    /** Nothing for an object that is not initialised: what loading does before initialisation is no edit. */
    void sendObjectChanged (Object* object);
    void sendObjectDestroyed (Object* object);
    void sendObjectPreDeleted (Object* object);

    //==============================================================================
    // Transactions: switches onto the transaction maker
    void enableTransactions (MessageTarget& receiver, MessageTarget& sender);
    void disableTransactions();
    bool areTransactionsEnabled() const noexcept         { return transactionMaker != nullptr; }
    TransactionMakerObjectSpaceView* getTransactionMaker() const noexcept { return transactionMaker; }

    TransactionBuilderImplementation* startTransaction (const juce::String& description, const Object& context);
    TransactionBuilderImplementation* startVolatileTransaction();
    void finishTransaction (TransactionBuilderImplementation* builder);
    void startBypassTransaction();
    void finishBypassTransaction();
    bool isInsideNonVolatileTransaction() const;
    bool isInsideVolatileTransaction() const;
    void storeValueForTransaction (const Object& object, bool deep, bool climb);

    //==============================================================================
    // Mirroring: switches onto the mirrorer
    void addMirroringTargetIdentifier (const Object& senderIdentifier, const Object& targetIdentifier);
    void removeMirroringTargetIdentifier (const Object& targetIdentifier);
    void disableMirroring();
    MirrorerObjectSpaceView* getMirrorer() const noexcept { return mirrorer; }

    /** Lets the mirrorer send what changed when its period has passed, then ages the exclusion
        list, also when there is no mirrorer. */
    void updateMirroring (double timeInSeconds, double periodInSeconds);
    /** Takes ownership of the message and posts it to the mirroring targets; without a
        mirrorer it deletes the message and answers false. */
    bool pushMessageToMirroringTargets (Message* message);

    /** Objects that mirroring leaves alone, each with a life counter: a negative one excludes
        until somebody changes the entry; 1 ends the entry at the next updateMirroring; a
        larger one is counted down by one at each updateMirroring.

        Creates the object's entry when it has none, and sets its counter. */
    void addToMirroringExclusionList (const Object& object, int lifeCounter);
    /** True when a live entry holds the object, or the object is a member variable (at any depth)
        of an object that a live entry holds. A dynamically owned child is not excluded with its owner. */
    bool isInMirroringExclusionList (const Object& object) const;
    /** The excluded objects and their life counters, in the order they were first excluded. */
    const MirroringExclusionList& getMirroringExclusionList() const noexcept { return mirroringExclusionList; }

private:
    ObjectTable objectTable;
    ObjectOwnedPointer rootObject;
    std::vector<ObjectSpaceView*> views;
    MirrorerObjectSpaceView* mirrorer = nullptr;
    TransactionMakerObjectSpaceView* transactionMaker = nullptr;
    /** Of class "Map({key=ObjectWeakPointer, value=Integer})", child of the space but not in it:
        its entries never enter the table, and changing them is no edit. */
    MirroringExclusionList mirroringExclusionList;
    /** The entry last found or made for each excluded object, so that excluding it again needs
        no key: undo and redo exclude every object they load. An entry counts only while its key
        still holds the object; entries leave here when they leave the list. */
    ObjectPointerMap<ObjectMap::Iterator> mirroringExclusionEntries;

    /** Random identifiers drawn ahead of the objects that take them, in the order drawn, each one's
        slot of the table being read meanwhile: objects entering in a row (a composite's children)
        would otherwise wait for a cache miss each. */
    std::array<UniqueIdentifier, 4> identifiersDrawnAhead;
    size_t nextIdentifierDrawnAhead = 0;

    UniqueIdentifier makeRandomIdentifier() const;
    UniqueIdentifier takeRandomIdentifier();
    void holdRoot (Object* object);
    void logIdentifierConflict (const Object& holder, const Object& newcomer, UniqueIdentifier identifier) const;
    void ageMirroringExclusionList();
    void forgetMirroringExclusionEntry (const MirroringExclusionList::TypedIterator& entry);

    template <class Callback>
    void callViews (Callback&& callback)
    {
        for (size_t i = 0; i < views.size(); ++i)
            callback (*views[i]);
    }
};

//==============================================================================
inline void ObjectSpace::sendObjectCreated (Object* object)    { callViews ([object] (ObjectSpaceView& view) { view.objectCreated (object); }); }
inline void ObjectSpace::sendObjectDestroyed (Object* object)  { callViews ([object] (ObjectSpaceView& view) { view.objectDestroyed (object); }); }
inline void ObjectSpace::sendObjectPreDeleted (Object* object) { callViews ([object] (ObjectSpaceView& view) { view.objectPreDeleted (object); }); }

inline void ObjectSpace::sendObjectChanged (Object* object)
{
    if (object->isObjectInitialized())
        callViews ([object] (ObjectSpaceView& view) { view.objectChanged (object); });
}

} // namespace tov
