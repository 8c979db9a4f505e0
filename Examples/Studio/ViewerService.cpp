#include "ViewerService.h"
#include <Tov/Message/Envelop.h>
#include <Tov/Message/RemoteCall/ThreadAwareEnvelopQueueMessageTarget.h>
#include <Tov/Message/InterprocessConnectionMessageTarget.h>
#include <Tov/Message/RemoteCall/MethodRemoteCall.h>
#include <Tov/Message/RemoteCall/SingletonMethodRemoteCall.h>
#include <Tov/Network/HostIdentifier.h>
#include <Tov/Network/LastNetworkServerFootprint.h>
#include <Tov/Network/NetworkDiscoverer.h>
#include <Tov/Standard/ProgramGetSoftwareVersionMethod.h>

namespace studio
{

namespace
{
/** The result of a remote call, which belongs to the caller. */
using CallResult = std::unique_ptr<tov::Object, tov::ObjectDeleter>;
} // namespace

ViewerService::ViewerService (int port) : ScriptedService ("Viewer"), discoveryPort (port)
{
    editorName.set ("editor", false);
    connection.setListener (&listener);
}

ViewerService::~ViewerService() = default;

void ViewerService::serviceStopped()
{
    connection.disconnect();
    ScriptedService::serviceStopped();
}

int ViewerService::runScript()
{
    juce::String ip;
    int port = 0;
    if (! discoverEditor (ip, port))
        return 3;
    connection.connect (tov::HostIdentifier (ip), tov::NetworkAddress (ip, (unsigned int) port), 1000);
    if (! passUntil ("the connection", [this] { return connection.isConnected(); }))
        return 3;

    peer.asyncRequestMirroringFrom (getEditor());
    if (! passUntil ("the mirror", [this] { return peer.getScene() != nullptr; }))
        return 3;
    say ("viewer: mirrors " + peer.getScene()->describe());
    if (! askForTheVersion() || ! askForANewLayer())
        return 4;

    auto* done = new ViewerDoneMessage();
    done->sceneTextHash.set (juce::String::toHexString ((juce::int64) peer.getSceneText().hashCode64()), false);
    getEditor().postEnvelop (peer.getIncomingMessageTarget()->createEnvelopAsSender (done, nullptr));
    return connection.waitUntilAllMessagesAreSent (10000) ? 0 : 3;
}

bool ViewerService::discoverEditor (juce::String& ip, int& port)
{
    tov::NetworkDiscoverer discoverer;
    if (! discoverer.startDiscovering (getExecutionContext(), tov::LocalNetworkAddress ("127.0.0.1", (unsigned int) discoveryPort), true))
        return false;
    tov::LastNetworkServerFootprint footprint;
    StudioAnnouncement* found = nullptr;
    if (! passUntil ("the editor's announcement", [&]
        {
            while (found == nullptr && discoverer.getNetworkServerFootPrint (getExecutionContext(), footprint))
                found = dynamic_cast<StudioAnnouncement*> (footprint.getInformation());
            return found != nullptr;
        }))
        return false;
    ip = footprint.getAddress().getHost();
    port = (int) found->port.get();
    say ("viewer: found the " + found->name.get() + " (" + found->version.toString() + ") at " + ip + ":" + juce::String (port));
    return true;
}

tov::MessageTarget& ViewerService::getEditor()
{
    return tov::InterprocessConnectionMessageTarget::getOrCreateThrough (connection, editorName);
}

bool ViewerService::askForTheVersion()
{
    const tov::SingletonMethodRemoteCall call (new tov::ProgramGetSoftwareVersionMethod());
    const CallResult version (call.callPerform (peer, getEditor(), 10000, nullptr));
    if (version == nullptr)
        return false;
    say ("viewer: the editor's getSoftwareVersion answered " + version->toString());
    return true;
}

bool ViewerService::askForANewLayer()
{
    auto& scene = *peer.getScene();
    const tov::MethodRemoteCall call (scene, new AddLayerMethod ("Titles"));
    const CallResult name (call.callPerform (peer, getEditor(), 10000, nullptr));
    if (name == nullptr)
        return false;
    say ("viewer: the editor's addLayer (\"Titles\") answered \"" + name->toString() + "\"");
    if (! passUntil ("the new layer", [&scene] { return scene.findLayer ("Titles") != nullptr; }))
        return false;
    say ("viewer: mirrors " + scene.describe());
    return true;
}

} // namespace studio
