#pragma once

#include "../Core/ValueObject.h"

namespace tov
{

/** A variable whose value is a whole State, saved and loaded as it is; values compare by content. */
class StateObject : public ValueObject<std::shared_ptr<State>>
{
public:
    TOV_DECLARE_CLASS (StateObject, Object)

    using ValueObject::ValueObject;
};

} // namespace tov
