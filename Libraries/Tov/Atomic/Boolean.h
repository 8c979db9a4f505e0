#pragma once

#include "../Core/ValueObject.h"

namespace tov
{

/** An on/off value, saved as a boolean State; "true" or "false" as text. */
class Boolean : public ValueObject<bool>
{
public:
    TOV_DECLARE_CLASS (Boolean, Object)

    using ValueObject::ValueObject;

    void toggle (bool notify = true)                 { set (! value, notify); }

    /** Numbers take 0 or 1. */
    bool isConvertibleTo (const Object& target) const override;
    void convertToObject (Object& target) const override;
};

} // namespace tov
