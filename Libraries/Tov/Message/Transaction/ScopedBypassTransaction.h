#pragma once

namespace tov
{

class Service;

/** Records nothing during its life, for history or for the other peer, in every space of every
    peer of the current service. Nested bypasses leave the work to the outermost one. */
class ScopedBypassTransaction
{
public:
    ScopedBypassTransaction();
    ~ScopedBypassTransaction();
    ScopedBypassTransaction (const ScopedBypassTransaction&) = delete;
    ScopedBypassTransaction& operator= (const ScopedBypassTransaction&) = delete;

private:
    Service* service;
    bool wasInsideBypass = false;
};

} // namespace tov
