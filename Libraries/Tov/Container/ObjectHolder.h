#pragma once

#include "../Core/Object.h"

namespace tov
{

/** Embeds one object whose class is known only at run time, as a member variable is embedded
    in its owner: the object has the owner as parent, carries the static allocation flag (so it
    saves inline, without identifier, and never enters a space's table) and lives exactly as
    long as the holder or until the class changes.
*/
class ObjectHolder
{
public:
    ObjectHolder() = default;
    ObjectHolder (const ObjectHolder&) = delete;
    ObjectHolder& operator= (const ObjectHolder&) = delete;
    ~ObjectHolder();

    /** Makes the held object an object of that class, child of owner; nothing when it already is. */
    void initializeHolder (Class* objectClass, Object* owner);
    bool isInitialized() const noexcept              { return object != nullptr; }

    Object* get() const noexcept                     { return object; }
    /** The held object's class; null before initializeHolder. */
    Class* getClass() const;
    /** Replaces the held object by a new one of the class, keeping its owner. */
    void setClass (Class* objectClass);
    /** The held object's text; empty before initializeHolder. */
    juce::String toString() const;

private:
    Object* object = nullptr;
};

} // namespace tov
