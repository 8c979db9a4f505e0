#pragma once

#include <Tov/Core/View.h>
#include <functional>

namespace tov::test
{

/** Calls a function of the test at each changed() of the object it watches. */
class ChangeCallback : public View
{
public:
    ChangeCallback (Object& object, std::function<void()> callback) : callback (std::move (callback)) { attachObject (&object); }
    void changedCallback (Object*, Object*) override   { callback(); }

private:
    std::function<void()> callback;
};

} // namespace tov::test
