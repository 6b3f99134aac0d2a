#pragma once

#include "AccountOptions.h"
#include "AccountStore.h"

#include <QFile>
#include <QObject>
#include <QTcpServer>

class QTcpSocket;

// The account service on HTTP: a JSON body POSTed to one of four paths, an XML
// answer <response><code/><msg/><data>…</data></response>. Console lines (requests,
// and the SMS texts a phone would receive) go to stdout and to the log file.
class AccountService : public QObject
{
    Q_OBJECT
public:
    static constexpr int kMaxRequest = 64 * 1024;

    explicit AccountService(const AccountOptions& options, QObject* parent = nullptr);

    bool Start(QString* error);
    quint16 Port() const { return m_server.serverPort(); }
    QString BaseUrl() const;
    AccountStore* Store() { return &m_store; }

    // The answer to one request: routes by path, then writes the XML.
    QByteArray Answer(const QByteArray& path, const QByteArray& body);
    static QByteArray ToXml(const AccountAnswer& answer);

private:
    void OnReadyRead(QTcpSocket* socket);
    void WriteLine(const QString& line);

    const AccountOptions m_options;
    AccountStore m_store;
    QTcpServer m_server;
    QFile m_logFile;
};
