#pragma once

#include "String.h"

namespace tov
{

/** A text of several lines, which editors give a tall field. */
class MultiLineString : public String
{
public:
    TOV_DECLARE_CLASS (MultiLineString, String)

    using String::String;
};

} // namespace tov
