#include "ProgramGetSoftwareVersionMethod.h"
#include "Program.h"

namespace tov
{

TOV_BEGIN_CLASS (ProgramGetSoftwareVersionMethod,
                 { "httpUri", ProgramGetSoftwareVersionMethod::httpUri },
                 { "httpVerb", ProgramGetSoftwareVersionMethod::httpVerb })
TOV_END_CLASS()

Object* ProgramGetSoftwareVersionMethod::callOnThis (Object& object) const
{
    auto* program = dynamic_cast<Program*> (&object);
    return program != nullptr ? new SoftwareVersion (program->getSoftwareVersion()) : nullptr;
}

} // namespace tov
