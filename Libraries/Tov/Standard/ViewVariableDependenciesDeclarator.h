#pragma once

#include "../Core/Object.h"

namespace tov
{

/** A declarator that watches what it is told about: each object that an answer depends on
    (an editability, a friendly name) is attached to, so that a subclass hears when any of them
    changes and can ask again. clear lets go of them all before a new round of declarations.
*/
class ViewVariableDependenciesDeclarator : public View, public VariableDependenciesDeclarator
{
public:
    ViewVariableDependenciesDeclarator() = default;

    /** Attaches to the object, once. */
    void add (Object* object) override;
    /** Detaches from every object declared so far. */
    void clear()                                     { detachAllObjects(); }
};

} // namespace tov
