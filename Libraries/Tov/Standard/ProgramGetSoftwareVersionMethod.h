#pragma once

#include "Program.h"

namespace tov
{

/** The body and the attributes of the program's remote-callable getSoftwareVersion.

    It becomes the reflected singleton method class (base ProgramMethod, whose singleton is
    Program::get()) once methods exist; the class carries the same two attributes as the
    method of Program.
*/
struct ProgramGetSoftwareVersionMethod
{
    static constexpr const char* httpUri = "\"/api/live/softwareVersion\"";
    static constexpr const char* httpVerb = "\"GET\"";

    /** A clone of the program's version, which the caller owns. */
    static SoftwareVersion* callOnThis (const Program& program)  { return new SoftwareVersion (program.getSoftwareVersion()); }
};

} // namespace tov
