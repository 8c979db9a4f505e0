#include "ProgramMethod.h"
#include "Program.h"

namespace tov
{

TOV_BEGIN_CLASS (ProgramMethod)
TOV_END_CLASS()

Object* ProgramMethod::getSingleton() const
{
    return Program::isStillRunning() ? &Program::get() : nullptr;
}

} // namespace tov
