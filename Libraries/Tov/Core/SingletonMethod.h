#pragma once

#include "Method.h"

namespace tov
{

/** A method that works on one process-wide object, which it names itself: a remote call
    of it needs no object on the far side, only the method. */
class SingletonMethod : public Method
{
public:
    TOV_DECLARE_CLASS (SingletonMethod, Method)

    /** The object the method works on; null when it is not there (any more). */
    virtual Object* getSingleton() const = 0;

    /** callOnThis on the singleton; null without one. */
    Object* call() const;
};

} // namespace tov
