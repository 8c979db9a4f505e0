#pragma once

#include <Tov/Core/View.h>

namespace tov::test
{

/** Hears of the deletion of the object it watches. */
struct DeletionWatcher : View
{
    explicit DeletionWatcher (Object& object)        { attachObject (&object); }
    void deletedCallback (Object*) override          { deleted = true; }
    bool deleted = false;
};

} // namespace tov::test
