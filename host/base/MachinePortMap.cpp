#include "MachinePortMap.h"

#include "CamBaseTextHelper.h"

namespace {
QString keyFor(quint16 port)
{
    return QStringLiteral("PortMap/%1").arg(port);
}
} // namespace

quint16 MachinePortMap::Resolve(quint16 wellKnownPort)
{
    bool ok = false;
    const uint port = CamBaseTextHelper::instance()
                          ->GetLocalSettingCache(CamBaseTextHelper::SettingTypeLocal, keyFor(wellKnownPort))
                          .toUInt(&ok);
    return ok && port > 0 && port <= 65535 ? static_cast<quint16>(port) : wellKnownPort;
}

void MachinePortMap::Set(quint16 wellKnownPort, quint16 actualPort)
{
    CamBaseTextHelper::instance()->SetLocalSettingCache(CamBaseTextHelper::SettingTypeLocal, keyFor(wellKnownPort),
                                                        actualPort, true);
}
