#pragma once

namespace tov
{

class Object;

/** Stands in for the owned pointer that holds the root object of a space, until owned
    pointers exist as reflected objects.

    It holds one counted reference: setting another object, or destroying the holder,
    gives the old one up, which deletes it when nobody else counts it. Unlike the real
    pointer it is no object itself, so it becomes nobody's parent and has no change to
    announce.
*/
class OwnedPointerStandIn
{
public:
    OwnedPointerStandIn() = default;
    OwnedPointerStandIn (const OwnedPointerStandIn&) = delete;
    OwnedPointerStandIn& operator= (const OwnedPointerStandIn&) = delete;
    ~OwnedPointerStandIn();

    Object* get() const noexcept { return object; }

    /** Nothing when the object is the one held. Otherwise the old one is given up first, so
        that while it is being deleted get() still answers it, as the real pointer does. */
    void set (Object* newObject);

private:
    Object* object = nullptr;
};

} // namespace tov
