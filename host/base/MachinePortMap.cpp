#include "MachinePortMap.h"

#include "KorvPaths.h"

#include <QSettings>

namespace {
QString keyFor(quint16 port)
{
    return QStringLiteral("PortMap/%1").arg(port);
}
} // namespace

quint16 MachinePortMap::Resolve(quint16 wellKnownPort)
{
    const QSettings settings(KorvPaths::SettingsFile(), QSettings::IniFormat);
    bool ok = false;
    const uint port = settings.value(keyFor(wellKnownPort)).toUInt(&ok);
    return ok && port > 0 && port <= 65535 ? static_cast<quint16>(port) : wellKnownPort;
}

void MachinePortMap::Set(quint16 wellKnownPort, quint16 actualPort)
{
    QSettings settings(KorvPaths::SettingsFile(), QSettings::IniFormat);
    settings.setValue(keyFor(wellKnownPort), actualPort);
}
