#pragma once

namespace tov
{

class Object;
class ObjectSpace;

/** An observer of everything that is created, changed and destroyed in one ObjectSpace.

    A space calls its views in the order they were added. Once added, a view
    belongs to the space: ObjectSpace::deleteViews and the space's destructor
    delete it. The order of the four callbacks in an object's life is told in
    ObjectSpace.h.
*/
class ObjectSpaceView
{
public:
    explicit ObjectSpaceView (ObjectSpace& space) noexcept : space (&space) {}
    ObjectSpaceView (const ObjectSpaceView&) = delete;
    ObjectSpaceView& operator= (const ObjectSpaceView&) = delete;
    virtual ~ObjectSpaceView() = default;

    /** An object was initialised in the space while somebody held it, or got its first holder there. */
    virtual void objectCreated (Object* object) = 0;
    /** An initialised object of the space changed. */
    virtual void objectChanged (Object* object) = 0;
    /** An object is being destroyed and is still whole: the last chance to take its state. */
    virtual void objectDestroyed (Object* object) {}
    /** An object is being deinitialised, just before it leaves the space's table. */
    virtual void objectPreDeleted (Object* object) {}

    /** The space the view was made for; null once the space has removed it. */
    ObjectSpace* getObjectSpace() const noexcept { return space; }
    void resetObjectSpace() noexcept             { space = nullptr; }

private:
    ObjectSpace* space;
};

} // namespace tov
