#pragma once

#include <Tov/Core/View.h>

namespace tov::test
{

/** Counts the changed() calls that reach an object. */
class ChangeCounter : public View
{
public:
    explicit ChangeCounter (Object& object)   { attachObject (&object); }
    void changedCallback (Object*, Object*) override { ++count; }
    int count = 0;
};

} // namespace tov::test
