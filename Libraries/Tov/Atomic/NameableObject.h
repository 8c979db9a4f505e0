#pragma once

#include "String.h"

namespace tov
{

/** The base of objects that users name, through their variable "name", which also labels them. */
class NameableObject : public Object
{
public:
    TOV_DECLARE_CLASS (NameableObject, Object)

    String name;
};

} // namespace tov
