#pragma once

#include "MultiLineString.h"

namespace tov
{

/** A program or document text, which editors leave out of parameter panels. */
class SourceCode : public MultiLineString
{
public:
    TOV_DECLARE_CLASS (SourceCode, MultiLineString)

    using MultiLineString::MultiLineString;
};

} // namespace tov
