#include "MirroringRequestAsyncCompletionRoutine.h"
#include "../../Core/ObjectSpace.h"
#include "../../Standard/ExecutionContext.h"
#include "../../Standard/StateObject.h"

namespace tov
{

TOV_BEGIN_CLASS (MirroringRequestAsyncCompletionRoutine)
TOV_END_CLASS()

MirroringRequestAsyncCompletionRoutine::MirroringRequestAsyncCompletionRoutine()
{
    space.setParent (this);
}

MirroringRequestAsyncCompletionRoutine::MirroringRequestAsyncCompletionRoutine (ObjectSpace& target)
    : MirroringRequestAsyncCompletionRoutine()
{
    space.set (&target, false);
}

void MirroringRequestAsyncCompletionRoutine::complete (const Object&, Object* result)
{
    if (result != nullptr)
    {
        if (auto* target = dynamic_cast<ObjectSpace*> (space.get()))
            loadSnapshot (*target, *result);
        result->deleteThis();
    }
    deleteThis();
}

// The snapshot is the state of the source's root pointer; loaded into a pointer of the
// mirror's space, it makes the root object with every object below it.
void MirroringRequestAsyncCompletionRoutine::loadSnapshot (ObjectSpace& target, const Object& result)
{
    auto* snapshot = dynamic_cast<const StateObject*> (&result);
    if (snapshot == nullptr || snapshot->get() == nullptr)
        return;

    auto state = std::make_shared<State> (*snapshot->get());
    state->setUniqueIdentifier (UniqueIdentifier());
    ExecutionContext context;
    ObjectOwnedPointer root;
    root.setParent (&target);
    root.loadFromState (context, state);
    if (auto* object = root.release())
        target.setRootObject (object, true);
    else
        target.deleteRootObject();
}

} // namespace tov
