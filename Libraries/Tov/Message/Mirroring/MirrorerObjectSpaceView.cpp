#include "MirrorerObjectSpaceView.h"
#include "../../Standard/Profiler/ProfilerScope.h"
#include "../Envelop.h"
#include "../../Core/ObjectExporter.h"
#include "../../Core/ObjectSpace.h"
#include "../../Core/StateObjectExporter.h"
#include "../../Standard/Program.h"

namespace tov
{

// Shallow states with transient variables: a change to a container costs its list of
// identifiers, not its contents.
static constexpr uint32_t mirroredStateFlags = exportOwnedPointersAsIdentifiers | exportTransientVariables;

static bool isInternal (const Object& object)
{
    auto* objectClass = object.getClass();
    return objectClass != nullptr && objectClass->getBooleanAttribute (object.getSignature(), "internal", false);
}

MirrorerObjectSpaceView::MirrorerObjectSpaceView (ObjectSpace& space, const Object& sender)
    : ObjectSpaceView (space)
{
    senderIdentifier.set (sender.clone(), false);
}

MirrorerObjectSpaceView::~MirrorerObjectSpaceView() = default;

//==============================================================================
void MirrorerObjectSpaceView::objectCreated (Object* object)
{
    if (auto* parent = object->getParent())
        if (isInternal (*parent))
            return;
    getDiffMessageToChange().setCreation (object->getUniqueIdentifier(), StateObjectExporter::make (*object, mirroredStateFlags, true));
}

void MirrorerObjectSpaceView::objectChanged (Object* object)
{
    if (! isInternal (*object))
        changedObjects.insert (object);
}

// An object created and deleted between two diffs is never sent; a deletion as such is not
// sent at all, since it shows in the state of the container that held the object.
void MirrorerObjectSpaceView::objectPreDeleted (Object* object)
{
    changedObjects.erase (object);
    const auto identifier = object->getUniqueIdentifier();
    if (identifier.isNotNull() && diffMessage.get() != nullptr)
        diffMessage->eraseCreation (identifier);
}

DiffObjectSpaceMessage& MirrorerObjectSpaceView::getDiffMessageToChange()
{
    if (diffMessage.get() == nullptr)
        diffMessage.set (new DiffObjectSpaceMessage (getObjectSpace()->getName()), false);
    return *diffMessage;
}

//==============================================================================
int MirrorerObjectSpaceView::findTarget (const Object& targetIdentifier) const
{
    for (size_t i = 0; i < targetIdentifiers.size(); ++i)
        if (targetIdentifiers.get (i)->equals (targetIdentifier))
            return (int) i;
    return -1;
}

void MirrorerObjectSpaceView::addTarget (const Object& targetIdentifier)
{
    bool succeeded = false;
    makeMessageOnce (succeeded);
    if (findTarget (targetIdentifier) < 0)
        targetIdentifiers.append (targetIdentifier.clone(), false);
}

bool MirrorerObjectSpaceView::removeTarget (const Object& targetIdentifier)
{
    const int index = findTarget (targetIdentifier);
    if (index < 0)
        return false;
    targetIdentifiers.remove ((size_t) index, false);
    return true;
}

// A forced update (time -1.0) writes -1.0 into lastUpdateTime, so that the next regular
// update is due at once too.
void MirrorerObjectSpaceView::update (double timeInSeconds, double periodInSeconds)
{
    const bool isTime = timeInSeconds == -1.0 || lastUpdateTime == -1.0 || timeInSeconds >= lastUpdateTime + periodInSeconds;
    bool succeeded = false;
    if (isTime && makeMessageOnce (succeeded) && succeeded)
        lastUpdateTime = timeInSeconds;
}

bool MirrorerObjectSpaceView::makeMessageOnce (bool& succeeded)
{
    if (insideUpdate)
        return false;
    insideUpdate = true;
    succeeded = makeMessage();
    insideUpdate = false;
    return true;
}

//==============================================================================
bool MirrorerObjectSpaceView::makeMessage()
{
    const ProfilerScope scope ("MakeMessage");
    auto& diff = getDiffMessageToChange();
    for (auto* object : changedObjects)
        diff.addChange (VariableAddress (object), StateObjectExporter::make (*object, mirroredStateFlags, true));
    changedObjects.clear();

    if (diff.isEmpty())
        return true;
    return postMessage (diffMessage.release());
}

bool MirrorerObjectSpaceView::postMessage (Message* message)
{
    const ProfilerScope scope ("PostEnvelop");
    if (targetIdentifiers.isEmpty() || ! Program::isStillRunning())
    {
        message->deleteThis();
        return targetIdentifiers.isEmpty();
    }

    Envelop envelop (senderIdentifier->clone(), message);
    bool result = true;
    for (size_t i = 0; i < targetIdentifiers.size();)
    {
        bool targetNotFound = false;
        auto* copy = static_cast<Envelop*> (envelop.clone());
        result = Program::get().postEnvelopToMessageTarget (*targetIdentifiers.get (i), copy, &targetNotFound) && result;
        if (targetNotFound)
            targetIdentifiers.remove (i, false);
        else
            ++i;
    }
    return result;
}

} // namespace tov
