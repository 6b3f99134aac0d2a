#include "FreeLoopbackPort.h"

#include <QHostAddress>
#include <QTcpServer>

quint16 FreeLoopbackPort()
{
    QTcpServer server;
    if (!server.listen(QHostAddress::LocalHost, 0))
        return 0;
    return server.serverPort();
}
