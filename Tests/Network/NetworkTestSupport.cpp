#include "NetworkTestSupport.h"
#include "ServerAnnouncement.h"
#include "Support/TestProcess.h"
#include <sched.h>
#include <cerrno>
#include <cstring>
#include <thread>

namespace tov::test
{

TOV_BEGIN_CLASS (NetworkSettings)
    TOV_VARIABLE (stats)
    TOV_VARIABLE (localIp)
TOV_END_CLASS()

void ensureNetworkTestLibrary()
{
    auto* root = Library::getRootLibrary();
    if (root == nullptr || root->getLibraryByName ("NetworkTests") != nullptr)
        return;
    auto* library = new NamedLibrary ("NetworkTests", {});
    library->addClass<NetworkSettings>();
    library->addClass<ServerAnnouncement>();
    root->addLibrary (library);
}

NetworkInterfaceTable::Entry makeEntry (const juce::String& address, const juce::String& adapterName, bool connected, bool dhcp)
{
    NetworkInterfaceTable::Entry entry;
    entry.address = juce::IPAddress (address);
    entry.adapterName = adapterName;
    entry.connected = connected;
    entry.dhcp = dhcp;
    return entry;
}

NetworkInterfaceTable makeWorkstationTable()
{
    return NetworkInterfaceTable ({ makeEntry ("127.0.0.1", "lo", true, false),
                                    makeEntry ("10.0.0.10", "eth1", true, false),
                                    makeEntry ("192.168.1.20", "wlan0", false, true),
                                    makeEntry ("10.0.0.9", "eth1", true, false),
                                    makeEntry ("172.16.0.2", "eth0", true, false) });
}

//==============================================================================
namespace
{
bool runSetupCommand (const juce::String& command, juce::String& failure)
{
    TestProcess process ({ "/bin/sh", "-c", command }, {});
    if (process.isStarted() && process.waitForExit (10000) == 0)
        return true;
    failure = "the namespace's adapters cannot be made here: \"" + command + "\" failed: "
            + juce::String (process.getOutput()).trim();
    return false;
}
} // namespace

bool NetworkNamespace::run (const juce::StringArray& setupCommands, const std::function<void()>& body, juce::String& failure)
{
    bool ready = false;
    std::thread thread ([&]
    {
        if (::unshare (CLONE_NEWNET) != 0)
        {
            failure = "no network namespace for adapter tests here (unshare: " + juce::String (std::strerror (errno))
                    + "); they need root or CAP_SYS_ADMIN";
            return;
        }
        for (const auto& command : setupCommands)
            if (! runSetupCommand (command, failure))
                return;
        ready = true;
        body();
    });
    thread.join();
    return ready;
}

juce::String NetworkNamespace::waitForLinkState (const juce::String& adapter, const juce::String& state)
{
    return "for i in $(seq 200); do ip -o link show " + adapter + " | grep -q ' state " + state
         + " ' && exit 0; sleep 0.05; done; echo " + adapter + " never reached " + state + "; exit 1";
}

} // namespace tov::test
