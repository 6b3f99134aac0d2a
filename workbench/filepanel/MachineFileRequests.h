#pragma once

#include "FileRequest.h"

#include <QList>
#include <QObject>
#include <QStringList>

// Where every act of the file page that touches the machine becomes one request: arrows, paste,
// drop, menu and keys of both panels. The workspace hands each signal to the funnel, which makes
// the checks; nothing here decides.
class MachineFileRequests final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(MachineFileRequests)

public:
    using QObject::QObject;

Q_SIGNALS:
    // One batch: one overwrite question for all of its files.
    void SignalTransfer(const QList<TransferItem>& items);
    void SignalDelete(const QStringList& files, const QStringList& folders);
    void SignalRename(const QString& oldPath, const QString& newPath);
    void SignalMakeDir(const QString& path);
    // The kept versions of a program; an empty path: of all the machine's programs.
    void SignalShowHistory(const QString& machinePath);
};
