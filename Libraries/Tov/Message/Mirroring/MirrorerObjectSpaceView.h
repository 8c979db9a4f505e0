#pragma once

#include "DiffObjectSpaceMessage.h"
#include "../../Container/ObjectOwnedVector.h"
#include "../../Core/ObjectSpaceView.h"
#include "../../Pointer/OwnedPointer.h"
#include <set>

namespace tov
{

class Message;

/** The view of a space that mirrors it: it collects what was created and changed, and at most
    once per period turns that into one DiffObjectSpaceMessage, posted to every target.

    It belongs to the thread of the space's service, and has no lock. ObjectSpace makes it with
    its first target and deletes it with its last (see ObjectSpace::addMirroringTargetIdentifier).
*/
class MirrorerObjectSpaceView : public ObjectSpaceView
{
public:
    /** Diffs go out in the name of a clone of the sender identifier. */
    MirrorerObjectSpaceView (ObjectSpace& space, const Object& senderIdentifier);
    ~MirrorerObjectSpaceView() override;

    void objectCreated (Object* object) override;
    void objectChanged (Object* object) override;
    void objectPreDeleted (Object* object) override;

    //==============================================================================
    /** Appends a clone of the target unless an equal one is there. What was collected so far
        goes to the targets before it, so that the new one starts clean after its snapshot. */
    void addTarget (const Object& targetIdentifier);
    /** Takes out the target equal to that one; false when there was none. */
    bool removeTarget (const Object& targetIdentifier);
    size_t getNumTargets() const noexcept                { return targetIdentifiers.size(); }
    const Object* getTarget (size_t index) const         { return targetIdentifiers.get (index); }
    const Object* getSenderIdentifier() const noexcept   { return senderIdentifier.get(); }

    /** Sends what changed when the period has passed since the last diff that went out, or when
        time is -1.0, which also makes the next regular update due at once. */
    void update (double timeInSeconds, double periodInSeconds);

    /** Turns what changed into the diff, and posts it unless it is empty. False when a post
        failed; an empty diff is kept for later, and that counts as done. */
    bool makeMessage();
    /** Takes ownership of the message and posts a copy of it to each target; a target that is
        not found leaves the list. True when every post succeeded, or there is no target. */
    bool postMessage (Message* message);

    double getLastUpdateTime() const noexcept            { return lastUpdateTime; }
    const std::set<Object*>& getChangedObjects() const noexcept  { return changedObjects; }
    /** The diff being built, or null. */
    const DiffObjectSpaceMessage* getDiffMessage() const noexcept  { return diffMessage.get(); }

private:
    ObjectOwnedPointer senderIdentifier;
    ObjectOwnedVector targetIdentifiers;
    double lastUpdateTime = -1.0;
    std::set<Object*> changedObjects;
    OwnedPointer<DiffObjectSpaceMessage> diffMessage;
    bool insideUpdate = false;

    DiffObjectSpaceMessage& getDiffMessageToChange();
    /** makeMessage under the re-entrance guard; false when the guard was set already. */
    bool makeMessageOnce (bool& succeeded);
    int findTarget (const Object& targetIdentifier) const;
};

} // namespace tov
