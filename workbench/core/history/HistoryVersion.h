#pragma once

#include <QDateTime>
#include <QString>

// What took a program's place on the machine.
enum class HistoryCause
{
    Replaced = 0,    // an upload replaced it
    RenamedOver = 1, // another file was renamed to its name
    Deleted = 2,
};

// One kept copy of a machine program, as it was just before it was lost.
struct HistoryVersion
{
    qint64 nId = 0;
    QString strMachinePath;
    QDateTime time;
    qint64 nSize = 0;
    QString strHash;
    HistoryCause eCause = HistoryCause::Replaced;
    // The file that replaced it, or the name renamed over it; empty for a delete.
    QString strBy;
};

// A machine path the funnel is about to replace, rename over or delete.
struct HistoryLoss
{
    QString strMachinePath;
    HistoryCause eCause = HistoryCause::Replaced;
    QString strBy;
    bool bFolder = false; // every program below it is lost
};
