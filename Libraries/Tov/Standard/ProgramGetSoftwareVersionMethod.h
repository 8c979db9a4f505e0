#pragma once

#include "ProgramMethod.h"

namespace tov
{

/** Performs the program's getSoftwareVersion, locally or as a remote call: its result is a
    clone of the program's SoftwareVersion. The class carries the same HTTP attributes as the
    method of Program, for the applications' servers that serve such methods. */
class ProgramGetSoftwareVersionMethod : public ProgramMethod
{
public:
    TOV_DECLARE_CLASS (ProgramGetSoftwareVersionMethod, ProgramMethod)

    /** The State texts of the attributes "httpUri" and "httpVerb". */
    static constexpr const char* httpUri = "\"/api/live/softwareVersion\"";
    static constexpr const char* httpVerb = "\"GET\"";

    /** A new SoftwareVersion, which the caller owns; null when the object is no Program. */
    Object* callOnThis (Object& object) const override;
};

} // namespace tov
