#pragma once

#include "StudioPeer.h"
#include <Tov/Network/InterprocessConnection.h>
#include <Tov/Standard/ProgramConnectionServer.h>

namespace studio
{

/** Finds the editor by its "Alife" packets, mirrors its scene, asks it for its version and for
    a new layer by remote calls, sees the layer arrive in its copy, and tells the editor the
    hash of what it holds. */
class ViewerService : public ScriptedService
{
public:
    explicit ViewerService (int discoveryPort);
    ~ViewerService() override;

    void getPeers (std::vector<tov::Peer*>& result) override   { result.push_back (&peer); }

protected:
    int runScript() override;
    void serviceStopped() override;

private:
    int discoveryPort;
    StudioPeer peer { "viewer" };
    tov::String editorName;
    tov::ProgramConnectionListener listener;
    tov::InterprocessConnection connection;

    /** The editor's address and port, from its announcement; false at the time-out. */
    bool discoverEditor (juce::String& ip, int& port);
    tov::MessageTarget& getEditor();
    bool askForTheVersion();
    bool askForANewLayer();
};

} // namespace studio
