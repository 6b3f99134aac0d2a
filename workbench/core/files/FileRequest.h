#pragma once

#include "CommonDefine.h"

#include <QDateTime>
#include <QList>
#include <QString>
#include <functional>

// Where a machine file request came from: the checks are the same for all, but a few answers
// differ (the status page keeps its refusal during transfers, a synchronisation has asked its
// own question already, a private fetch shows no row).
enum class RequestOrigin
{
    FilePage,   // arrows, paste, drop, menu and keys of the file page
    Sync,       // folder synchronisation
    StatusPage, // the status page's file list
    Retry,      // a failed row of the transfer list
    AutoCam,    // a program sent by the CAM side
    Fleet,      // a send to several machines: refusals are told on each machine's row, not in a box
};

// One file to move; an upload when bUpload, else a download.
struct TransferItem
{
    bool bUpload = true;
    QString strLocalPath;
    QString strMachinePath;
    OperationType operation = OperationCopy;
    // A folder the user picked: refused with the reason, for folders travel by synchronisation.
    bool bFolder = false;
    // A download's size as a listing of its folder showed it; -1 when none is at hand.
    qint64 iListedSize = -1;
};

// A file that a batch would replace, with both sides for the user to compare.
struct OverwriteEntry
{
    bool bUpload = true; // the machine's file would be replaced, else the local one
    QString strTarget;   // the path that would be replaced
    qint64 nNewSize = -1;
    QDateTime newTime;
    qint64 nOldSize = -1;
    QDateTime oldTime;
    QString strSource; // the file that would replace it
};

// Asks once per batch whether the listed files may be replaced; answers through the callback,
// later or at once, never by a nested event loop in the caller.
using OverwriteAsker = std::function<void(const QList<OverwriteEntry>& entries, std::function<void(bool)> answer)>;
