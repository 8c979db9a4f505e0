#include "CurrentServiceStandIn.h"

namespace tov
{

namespace
{
thread_local int numScopes = 0;
}

bool CurrentServiceStandIn::exists() noexcept   { return numScopes > 0; }
CurrentServiceStandIn::Scope::Scope() noexcept  { ++numScopes; }
CurrentServiceStandIn::Scope::~Scope()          { --numScopes; }

} // namespace tov
