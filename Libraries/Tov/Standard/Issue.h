#pragma once

#include "../Core/Object.h"

namespace tov
{

/** One entry of an issues report: a LeafIssue, or a GroupIssue that holds others. Abstract. */
class Issue : public Object
{
public:
    TOV_DECLARE_CLASS (Issue, Object)

protected:
    Issue() = default;
};

} // namespace tov
