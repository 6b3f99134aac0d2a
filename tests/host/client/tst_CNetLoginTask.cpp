#include "CNetLoginTask.h"
#include "KorvPaths.h"

#include <QFutureWatcher>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSettings>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>
#include <QtConcurrent>

// The account request against a small HTTP responder on loopback; the task runs on
// the thread pool as the dialogs run it, while this thread serves.
class tst_CNetLoginTask : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void postsToTheConfiguredService_data();
    void postsToTheConfiguredService();
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
    if (!QTest::qWaitFor([&watcher] { return watcher.isFinished(); }, 20000))
        return {};
    return watcher.result();
}

void tst_CNetLoginTask::postsToTheConfiguredService_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QVariant>("parameters");
    QTest::addColumn<QByteArray>("path");
    const QJsonObject phone{{"nation-code", "86"}, {"mobile", "13800000000"}};
    QTest::newRow("image-code-json") << 1 << QVariant(phone) << QByteArray("POST /api/v1/captcha/image ");
    QTest::newRow("bind-map") << 3 << QVariant(phone.toVariantMap()) << QByteArray("POST /api/v1/device/bind ");
}

void tst_CNetLoginTask::postsToTheConfiguredService()
{
    QFETCH(int, kind);
    QFETCH(QVariant, parameters);
    QFETCH(QByteArray, path);
    const QByteArray xml = "<xml><code>0</code><data><imgid>7</imgid></data></xml>";
    m_response =
        "HTTP/1.1 200 OK\r\nContent-Type: application/xml\r\nContent-Length: " + QByteArray::number(xml.size()) +
        "\r\nConnection: close\r\n\r\n" + xml;
    const Outcome outcome = RunTask(kind, parameters);
    QVERIFY2(outcome.ok, qPrintable(outcome.error));
    QCOMPARE(outcome.result, xml);
    QVERIFY2(m_request.startsWith(path), m_request.constData());
    const QJsonObject body = QJsonDocument::fromJson(m_request.mid(m_request.indexOf("\r\n\r\n") + 4)).object();
    QCOMPARE(body.value("mobile").toString(), QString("13800000000"));
    QCOMPARE(body.value("nation-code").toString(), QString("86"));
}

void tst_CNetLoginTask::failures()
{
    m_response = "HTTP/1.1 503 Service Unavailable\r\nContent-Length: 4\r\nConnection: close\r\n\r\nbusy";
    Outcome outcome = RunTask(2, QVariantMap{{"mobile", "1"}});
    QVERIFY(!outcome.ok);
    QCOMPARE(outcome.result, QByteArray("busy"));
    QCOMPARE(outcome.error, QString("HTTP status 503"));

    outcome = RunTask(99, QVariant());
    QVERIFY(!outcome.ok);
    QVERIFY(outcome.error.contains("unknown request kind"));

    QTcpServer closed;
    QVERIFY(closed.listen(QHostAddress::LocalHost));
    const quint16 port = closed.serverPort();
    closed.close();
    QSettings settings(KorvPaths::SettingsFile(), QSettings::IniFormat);
    const QVariant saved = settings.value("Account/BaseUrl");
    settings.setValue("Account/BaseUrl", QString("http://127.0.0.1:%1").arg(port));
    settings.sync();
    outcome = RunTask(1, QVariant());
    settings.setValue("Account/BaseUrl", saved);
    QVERIFY(!outcome.ok);
    QVERIFY(!outcome.error.isEmpty());
}

QTEST_GUILESS_MAIN(tst_CNetLoginTask)
#include "tst_CNetLoginTask.moc"
