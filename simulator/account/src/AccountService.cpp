#include "AccountService.h"

#include <QDateTime>
#include <QJsonDocument>
#include <QTcpSocket>
#include <QTextStream>
#include <QTimer>
#include <QXmlStreamWriter>

namespace {
constexpr int kIdleMs = 30000;

QByteArray HttpReply(int status, const QByteArray& reason, const QByteArray& body)
{
    return "HTTP/1.1 " + QByteArray::number(status) + ' ' + reason +
           "\r\nContent-Type: application/xml; charset=utf-8\r\nContent-Length: " + QByteArray::number(body.size()) +
           "\r\nConnection: close\r\n\r\n" + body;
}

// Only the last four digits appear on the console, as on a real service's logs.
QString Masked(const QString& phone)
{
    return phone.size() <= 4 ? phone : QString(phone.size() - 4, QLatin1Char('*')) + phone.right(4);
}
} // namespace

AccountService::AccountService(const AccountOptions& options, QObject* parent)
    : QObject(parent), m_options(options), m_store(options)
{
    connect(&m_server, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket* socket = m_server.nextPendingConnection()) {
            socket->setParent(this);
            auto* idle = new QTimer(socket);
            idle->setSingleShot(true);
            connect(idle, &QTimer::timeout, socket, &QTcpSocket::abort);
            idle->start(kIdleMs);
            connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
            connect(socket, &QTcpSocket::readyRead, socket, [this, socket] { OnReadyRead(socket); });
        }
    });
    connect(&m_store, &AccountStore::SignalSmsSent, this, [this](const QString& phone, const QString& code) {
        WriteLine(tr("短信 → %1：您的验证码是 %2，%3 分钟内有效，请勿泄露。")
                      .arg(phone, code)
                      .arg(m_options.smsTtlMs / 60000.0, 0, 'g', 3));
    });
}

bool AccountService::Start(QString* error)
{
    if (!m_store.LoadError().isEmpty()) {
        *error = QStringLiteral("%1: %2").arg(m_options.dataFile, m_store.LoadError());
        return false;
    }
    if (!m_options.logFile.isEmpty()) {
        m_logFile.setFileName(m_options.logFile);
        if (!m_logFile.open(QIODevice::Append | QIODevice::Text)) {
            *error = QStringLiteral("%1: %2").arg(m_options.logFile, m_logFile.errorString());
            return false;
        }
    }
    if (!m_server.listen(m_options.bindAddress, m_options.port)) {
        *error = m_server.errorString();
        return false;
    }
    return true;
}

QString AccountService::BaseUrl() const
{
    return QStringLiteral("http://%1:%2").arg(m_server.serverAddress().toString()).arg(Port());
}

void AccountService::WriteLine(const QString& line)
{
    const QString stamped = QDateTime::currentDateTime().toString(QStringLiteral("hh:mm:ss ")) + line;
    QTextStream(stdout) << stamped << Qt::endl;
    if (m_logFile.isOpen()) {
        m_logFile.write(stamped.toUtf8() + '\n');
        m_logFile.flush();
    }
}

void AccountService::OnReadyRead(QTcpSocket* socket)
{
    const QByteArray pending = socket->property("pending").toByteArray() + socket->readAll();
    if (pending.size() > kMaxRequest) {
        socket->write(HttpReply(413, "Payload Too Large", ToXml({413, tr("请求过长"), {}})));
        socket->disconnectFromHost();
        return;
    }
    const int headerEnd = pending.indexOf("\r\n\r\n");
    if (headerEnd < 0) {
        socket->setProperty("pending", pending);
        return;
    }
    const QList<QByteArray> lines = pending.left(headerEnd).split('\n');
    const QList<QByteArray> requestLine = lines.first().trimmed().split(' ');
    qsizetype length = 0;
    for (const QByteArray& line : lines) {
        if (line.toLower().startsWith("content-length:"))
            length = line.mid(15).trimmed().toLongLong();
    }
    if (pending.size() < headerEnd + 4 + length) {
        socket->setProperty("pending", pending);
        return;
    }
    socket->setProperty("pending", QByteArray());
    if (requestLine.size() < 2 || requestLine.first() != "POST") {
        socket->write(HttpReply(405, "Method Not Allowed", ToXml({405, tr("只接受 POST 请求"), {}})));
    } else {
        socket->write(HttpReply(200, "OK", Answer(requestLine.at(1), pending.mid(headerEnd + 4, length))));
    }
    socket->disconnectFromHost();
}

QByteArray AccountService::Answer(const QByteArray& path, const QByteArray& body)
{
    const QJsonObject request = QJsonDocument::fromJson(body).object();
    auto text = [&request](const char* key) { return request.value(QLatin1String(key)).toString().trimmed(); };
    const QString nation = text("nation-code");
    const QString mobile = text("mobile");
    AccountAnswer answer;
    if (path == "/api/v1/captcha/image")
        answer = m_store.RequestImage(nation, mobile);
    else if (path == "/api/v1/captcha/sms")
        answer = m_store.RequestSms(nation, mobile, text("imgid"), text("imgcode"));
    else if (path == "/api/v1/device/bind")
        answer = m_store.Bind(nation, mobile, text("code"), text("sn"));
    else if (path == "/api/v1/device/unbind")
        answer = m_store.Unbind(nation, mobile, text("code"), text("sn"));
    else
        answer = {404, tr("未知请求"), {}};
    WriteLine(QStringLiteral("%1 +%2 %3 -> %4 %5")
                  .arg(QString::fromLatin1(path), nation, Masked(mobile))
                  .arg(answer.iCode)
                  .arg(answer.strMsg));
    return ToXml(answer);
}

QByteArray AccountService::ToXml(const AccountAnswer& answer)
{
    QByteArray xml;
    QXmlStreamWriter writer(&xml);
    writer.writeStartDocument();
    writer.writeStartElement(QStringLiteral("response"));
    writer.writeTextElement(QStringLiteral("code"), QString::number(answer.iCode));
    writer.writeTextElement(QStringLiteral("msg"), answer.strMsg);
    writer.writeStartElement(QStringLiteral("data"));
    for (auto it = answer.objData.begin(); it != answer.objData.end(); ++it)
        writer.writeTextElement(it.key(), it.value().toVariant().toString());
    writer.writeEndElement();
    writer.writeEndElement();
    writer.writeEndDocument();
    return xml;
}
