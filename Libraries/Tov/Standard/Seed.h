#pragma once

#include "../Atomic/Boolean.h"
#include "../Atomic/PositiveInteger.h"

namespace tov
{

/** The seed of something random, which can move on by one each time its owner is activated,
    so that every activation gives a new sequence unless the user wants the same one. */
class Seed : public Object
{
public:
    TOV_DECLARE_CLASS (Seed, Object)

    explicit Seed (int64_t value = 0, bool incrementAtActivation = false);
    Seed (const Seed& other);
    Seed& operator= (const Seed& other)                   { other.copyTo (*this); return *this; }

    int64_t get() const noexcept                          { return value.get(); }
    void set (int64_t newValue, bool notify = true)       { value.set (newValue, notify); }
    bool doesIncrementAtActivation() const noexcept       { return incrementAtActivation.get(); }
    void setIncrementAtActivation (bool shouldIncrement, bool notify = true)  { incrementAtActivation.set (shouldIncrement, notify); }

    /** Adds one to the value when incrementAtActivation is set. */
    void activate (bool notify = true);

    /** Any integer takes the value. */
    bool isConvertibleTo (const Object& target) const override;
    void convertToObject (Object& target) const override;

private:
    PositiveInteger value;
    Boolean incrementAtActivation;
};

} // namespace tov
