#pragma once

#include "KorvBaseExport.h"

#include <QHostAddress>
#include <QList>
#include <QString>

// Addresses that discovery asks one by one, for networks where a broadcast does not reach the
// machines (loopback, routed or filtered shop networks). The setting holds single addresses and
// ranges, separated by commas, semicolons or spaces: "192.168.5.20, 10.1.0.10-10.1.0.40, 127.0.0.2-51".
class KORVBASE_EXPORT DiscoveryAddressList final
{
public:
    static constexpr const char* SettingKey = "Discovery/Addresses";
    // A typo such as 10.0.0.1-10.9.0.1 must not send a million datagrams every round.
    static constexpr int MaxAddresses = 1024;

    // The addresses of the text in order, each once; parts that are not IPv4 addresses or
    // ranges are skipped, and anything past MaxAddresses is dropped.
    static QList<QHostAddress> Parse(const QString& text);
    // The addresses of the host's setting.
    static QList<QHostAddress> Configured();
};
