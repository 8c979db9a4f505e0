#pragma once

#include "Object.h"

namespace tov
{

/** An operation in object form.

    A class lists its methods among its members (TOV_METHOD in its declaration, see
    ClassDeclaration.h); each names the Method class that performs it. A method object carries
    its arguments as its member variables, so that it can be saved, sent over a connection in a
    remote call, rebuilt on the far side and performed there on some object.
*/
class Method : public Object
{
public:
    TOV_DECLARE_CLASS (Method, Object)

    /** Performs the method on the object; the result, which may be null, belongs to the caller. */
    virtual Object* callOnThis (Object& object) const = 0;
};

} // namespace tov
