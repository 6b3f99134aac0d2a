#include "CNetLoginTask.h"
#include "KorvPaths.h"

#include <QFutureWatcher>
#include <QSettings>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>
#include <QtConcurrent>

// The account request's failures against a small HTTP responder on loopback; the task runs on
// the thread pool as the dialogs run it, while this thread serves. Requests that succeed, and a
// service that does not answer, are the binding dialogs' tests' business.
class tst_CNetLoginTask : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void failures();

private:
    struct Outcome
    {
        bool ok = false;
        QByteArray result;
        QString error;
    };
    Outcome RunTask(int kind, const QVariant& parameters);

    QTemporaryDir m_config;
    QTcpServer m_server;
    QByteArray m_request;
    QByteArray m_response;
};

void tst_CNetLoginTask::initTestCase()
{
    qputenv("KORV_CONFIG_DIR", m_config.path().toUtf8());
    QVERIFY(m_server.listen(QHostAddress::LocalHost));
    QSettings(KorvPaths::SettingsFile(), QSettings::IniFormat)
        .setValue("Account/BaseUrl", QString("http://127.0.0.1:%1/").arg(m_server.serverPort()));
    connect(&m_server, &QTcpServer::newConnection, this, [this] {
        QTcpSocket* socket = m_server.nextPendingConnection();
        connect(socket, &QTcpSocket::readyRead, socket, [this, socket] {
            m_request += socket->readAll();
            const int headerEnd = m_request.indexOf("\r\n\r\n");
            if (headerEnd < 0)
                return;
            const int lengthAt = m_request.toLower().indexOf("content-length: ");
            const int length = lengthAt < 0 ? 0 : m_request.mid(lengthAt + 16).split('\r').first().toInt();
            if (m_request.size() < headerEnd + 4 + length)
                return;
            socket->write(m_response);
            socket->disconnectFromHost();
        });
        connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
    });
}

tst_CNetLoginTask::Outcome tst_CNetLoginTask::RunTask(int kind, const QVariant& parameters)
{
    m_request.clear();
    QFutureWatcher<Outcome> watcher;
    watcher.setFuture(QtConcurrent::run([kind, parameters] {
        CNetLoginTask task;
        Outcome outcome;
        outcome.ok = task.Start(kind, parameters);
        outcome.result = task.GetResult().toByteArray();
        outcome.error = task.ErrorString();
        return outcome;
    }));
    return QTest::qWaitFor([&watcher] { return watcher.isFinished(); }, 20000) ? watcher.result() : Outcome{};
}

void tst_CNetLoginTask::failures()
{
    m_response = "HTTP/1.1 503 Service Unavailable\r\nContent-Length: 4\r\nConnection: close\r\n\r\nbusy";
    Outcome outcome = RunTask(2, QVariantMap{{"mobile", "1"}});
    // The service's own words reach the dialog next to the status.
    QVERIFY(!outcome.ok);
    QCOMPARE(outcome.result, QByteArray("busy"));
    QCOMPARE(outcome.error, QString("HTTP status 503"));

    outcome = RunTask(99, QVariant());
    QVERIFY(!outcome.ok);
    QVERIFY(outcome.error.contains("unknown request kind"));
}

QTEST_GUILESS_MAIN(tst_CNetLoginTask)
#include "tst_CNetLoginTask.moc"
