#pragma once

#include "FtpTaskThread.h"

#include <QList>
#include <QStringList>

// Deletes several remote files and folders (folders with their contents). Every item is
// tried; the task fails if any item failed, and the message names the failed items.
// url/encodedUrl name the server; machine is the caller's name for the machine (its IP),
// used in the message.
class KORVBASE_EXPORT DeleteFtpItems : public FtpTaskThread
{
    Q_OBJECT

public:
    DeleteFtpItems(const QString& url, const QString& encodedUrl, const QList<QString>& files,
                   const QList<QString>& folders, const QString& machine, QObject* parent = nullptr);

protected:
    bool Execute(FtpSession& session, QString* message) override;

private:
    QStringList m_listFiles;
    QStringList m_listFolders;
    QString m_strMachine;
};
