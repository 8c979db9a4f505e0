#pragma once

namespace tov
{

/** Stands in for Service::getCurrentService until services exist: code that must run on a
    service's thread (resolving addresses) asks whether the calling thread has one, and a
    Scope gives the calling thread one for its life.
*/
class CurrentServiceStandIn
{
public:
    static bool exists() noexcept;

    class Scope
    {
    public:
        Scope() noexcept;
        ~Scope();
        Scope (const Scope&) = delete;
        Scope& operator= (const Scope&) = delete;
    };
};

} // namespace tov
