#pragma once

#include "../../Core/ObjectSpaceView.h"

namespace tov
{

/** What ObjectSpace::startTransaction gives back: the builder of one scope of edits.

    Builders hear the space's changes only through the TransactionMakerObjectSpaceView, which
    hands each one to the builder on top of its stack; they are never among the space's views.
*/
class TransactionBuilderImplementation : public ObjectSpaceView
{
public:
    using ObjectSpaceView::ObjectSpaceView;

    /** Records the object's current value both as its new and as its older value. */
    virtual void addObjectCurrentValue (const Object& object) = 0;
    /** Records a change of the object in which undoValue stands for its older value. */
    virtual void addObjectWithUndoValue (const Object& object, const Object& undoValue) = 0;
    /** Records the state of an object before it is touched; deep also takes what it owns, climb
        lets a parent with constraints on it be stored instead. */
    virtual void store (const Object& object, bool deep, bool climb) = 0;
    /** Turns the pending change into a transaction. */
    virtual void flush() = 0;
    virtual bool checkThatAllChangedObjectsAreChildOf (const Object&) const  { return false; }
};

} // namespace tov
