#pragma once

#include "../RemoteCall/AsyncCompletionRoutine.h"
#include "../../Pointer/ObjectWeakPointer.h"

namespace tov
{

class ObjectSpace;

/** Receives the snapshot that answers a MirroringRequestRemoteCall, on the mirror's service
    thread: the snapshot becomes the space's root, under the root identifier, or the root goes
    when the snapshot has none. A failed or cancelled request leaves the space as it was. The
    routine deletes itself once it has run. */
class MirroringRequestAsyncCompletionRoutine : public AsyncCompletionRoutine
{
public:
    TOV_DECLARE_CLASS (MirroringRequestAsyncCompletionRoutine, AsyncCompletionRoutine)

    MirroringRequestAsyncCompletionRoutine();
    explicit MirroringRequestAsyncCompletionRoutine (ObjectSpace& space);

    void complete (const Object& callIdentifier, Object* result) override;

    ObjectWeakPointer space;

private:
    void loadSnapshot (ObjectSpace& target, const Object& result);
};

} // namespace tov
