#pragma once

#include <QString>
#include <QtGlobal>

// How much program history one machine keeps, from the host settings, so that a shop can trade
// disk space against how far back it can go.
struct HistorySettings
{
    static constexpr int DefaultKeepPerProgram = 20;
    static constexpr qint64 DefaultTotalBytes = 500LL * 1024 * 1024;
    static constexpr qint64 DefaultMaxFileBytes = 50LL * 1024 * 1024;

    bool bEnabled = true;
    int iKeepPerProgram = DefaultKeepPerProgram;
    qint64 nTotalBytes = DefaultTotalBytes;
    // Larger programs are replaced without a copy: keeping them would crowd out all the others.
    qint64 nMaxFileBytes = DefaultMaxFileBytes;

    static HistorySettings Load(const QString& sn);
    static void SetEnabled(const QString& sn, bool bEnabled);
};
