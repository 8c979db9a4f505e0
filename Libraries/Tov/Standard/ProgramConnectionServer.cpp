#include "ProgramConnectionServer.h"
#include "ExecutionContext.h"
#include "Program.h"
#include "../Network/InterprocessConnection.h"

namespace tov
{

ProgramConnectionServer::ProgramConnectionServer (const juce::String& ip, int port) : localIp (ip), localPort (port) {}

// The connections' threads must not outlive what their blocks reach.
ProgramConnectionServer::~ProgramConnectionServer()
{
    ExecutionContext context;
    stopServer (context);
}

InterprocessConnection* ProgramConnectionServer::createConnection()
{
    return new InterprocessConnection();
}

void ProgramConnectionServer::processReceivedMessage (InterprocessConnection& connection, const juce::MemoryBlock& block, bool)
{
    Program::get().processReceivedNetworkMessage (connection, block);
}

void ProgramConnectionListener::messagesReceived (InterprocessConnection& connection, const juce::MemoryBlock& block)
{
    Program::get().processReceivedNetworkMessage (connection, block);
}

} // namespace tov
