#pragma once

#include "View.h"

namespace tov
{

/** Stands in for a weak pointer to an object, until weak pointers exist as reflected objects.

    It watches its target as a view and forgets it when the target is deinitialised or
    deleted, as the real pointer forgets its cached object; having no address, it never
    finds the target again.
*/
class WeakPointerStandIn : private View
{
public:
    explicit WeakPointerStandIn (Object& target);

    /** The target, or null once it has been deinitialised or deleted. */
    Object* get() const noexcept { return target; }

private:
    Object* target;

    void deinitializedCallback (Object* object) override { forget (object); }
    void deletedCallback (Object* object) override       { forget (object); }
    void forget (Object* object);
};

} // namespace tov
