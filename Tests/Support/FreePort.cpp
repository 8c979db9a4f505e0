#include "FreePort.h"
#include <Tov/Network/TcpSocket.h>

namespace tov::test
{

int findFreePort()
{
    auto listener = TcpSocket::listen ("127.0.0.1", 0);
    return listener != nullptr ? listener->getBoundPort() : -1;
}

} // namespace tov::test
