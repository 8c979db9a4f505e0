#include "LocalIp.h"
#include "HostIdentifier.h"
#include "NetworkStats.h"

namespace tov
{

TOV_BEGIN_CLASS (LocalIp)
TOV_END_CLASS()

namespace
{
/** Calls the function with the stats above the object, or with fresh ones of this machine. */
template <class Function>
auto withNetworkStats (const Object& object, Function&& function)
{
    if (auto* stats = NetworkStats::get (object))
        return function (*stats);
    NetworkStats local;
    local.refreshFromLocalSystem();
    return function (local);
}
} // namespace

std::vector<juce::String> LocalIp::getChoices() const
{
    return withNetworkStats (*this, [] (const NetworkStats& stats)
    {
        std::vector<juce::String> choices { HostIdentifier::any, HostIdentifier::localhost };
        for (auto* adapter : stats.networkAdapters)
            for (auto* address : adapter->ipAddresses)
                choices.push_back (address->get());
        return choices;
    });
}

juce::String LocalIp::getChoiceAnnotation (const juce::String& ip) const
{
    if (ip == HostIdentifier::any)
        return "(Any Interface)";
    if (ip == HostIdentifier::localhost)
        return "(Local Host)";

    return withNetworkStats (*this, [&ip] (const NetworkStats& stats)
    {
        auto* adapter = stats.findNetworkAdapterFromIp (HostIdentifier (ip));
        if (adapter == nullptr)
            return juce::String();
        juce::String annotation = adapter->name.get();
        if (annotation.isNotEmpty())
            annotation = "(" + annotation + ")";
        if (adapter->dhcp.get())
            annotation = "<dhcp> " + annotation;
        if (! adapter->connected.get())
            annotation = "<disconnected> " + annotation;
        return annotation;
    });
}

} // namespace tov
