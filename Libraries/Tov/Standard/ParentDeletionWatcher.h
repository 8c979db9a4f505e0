#pragma once

#include "../Core/Object.h"

namespace tov
{

/** Watches the parent of an object that is not owned by it (an object that merely follows
    another one): when the parent goes, the object's parent becomes null, so that it never
    climbs into freed memory.

        ParentDeletionWatcher watcher (&follower);
        watcher.attachObject (follower.getParent());
*/
class ParentDeletionWatcher : public View
{
public:
    explicit ParentDeletionWatcher (Object* object = nullptr) : object (object) {}

    Object* getObject() const noexcept               { return object; }
    void setObject (Object* newObject) noexcept      { object = newObject; }

    void deletedCallback (Object*) override;

private:
    Object* object;
};

} // namespace tov
