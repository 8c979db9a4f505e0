#pragma once

#include "../Core/SingletonMethod.h"

namespace tov
{

/** A method whose singleton is the running Program. */
class ProgramMethod : public SingletonMethod
{
public:
    TOV_DECLARE_CLASS (ProgramMethod, SingletonMethod)

    /** Program::get(), or null once the program has stopped. */
    Object* getSingleton() const override;
};

} // namespace tov
