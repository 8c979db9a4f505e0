#pragma once

#include "../Network/InterprocessConnectionServer.h"

namespace tov
{

/** A server on an address that the application gives, whose connections hand every block they
    receive to Program::processReceivedNetworkMessage: the envelop is rebuilt and queued on its
    target peer, whose service wakes. Port 0 lets the system choose.

    Blocks are handled under the server's lock, on the connection's thread; a subclass that does
    more with each block calls this class's processReceivedMessage first and stays as quick. */
class ProgramConnectionServer : public InterprocessConnectionServer
{
public:
    ProgramConnectionServer (const juce::String& localIp, int localPort);
    ~ProgramConnectionServer() override;

protected:
    void setServerStatus (const SuccessStatus&) override     {}
    juce::String getServerLocalIp() const override          { return localIp; }
    int getServerLocalPort() const override                 { return localPort; }
    InterprocessConnection* createConnection() override;
    void processReceivedMessage (InterprocessConnection& connection, const juce::MemoryBlock& block, bool lost) override;

private:
    juce::String localIp;
    int localPort;
};

/** For a connection that the application opened: every block it receives goes to
    Program::processReceivedNetworkMessage. */
class ProgramConnectionListener : public InterprocessConnectionListener
{
public:
    void messagesReceived (InterprocessConnection& connection, const juce::MemoryBlock& block) override;
};

} // namespace tov
