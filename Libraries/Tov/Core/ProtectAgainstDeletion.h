#pragma once

#include "Object.h"

namespace tov
{

/** Keeps an object alive while code that may release it runs, such as a change callback.

    An embedded object lives as long as its owner, so the guard holds the nearest object,
    the given one or one of its parents, that somebody owns through its reference counter,
    and takes a reference on it. A release during the guard's life only lowers the count;
    if that was the last reference, the object is deleted when the guard ends. An object
    that nobody owns yet (count 0) is left alone: a reference taken and given back would
    announce it to its space and then delete it.
*/
class ProtectAgainstDeletion
{
public:
    explicit ProtectAgainstDeletion (Object& object);
    ~ProtectAgainstDeletion();

    /** The object that holds the reference, or null when none could be taken. */
    Object* getProtectedObject() const noexcept     { return holder; }

private:
    Object* holder = nullptr;

    JUCE_DECLARE_NON_COPYABLE (ProtectAgainstDeletion)
};

} // namespace tov
