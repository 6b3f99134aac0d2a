#pragma once

#include <QObject>
#include <QPointer>

class QTcpSocket;
class QTimer;

// Reads a machine's serial number: one JSON request on the serial-number port, one
// JSON answer. Whatever comes first (answer, error, time-out) settles the read; the
// rest find nothing left and do nothing, so a late answer changes nothing.
class SerialNumberReader : public QObject
{
    Q_OBJECT

public:
    explicit SerialNumberReader(QObject* parent = nullptr);
    ~SerialNumberReader() override;

    void Start(const QString& ip, quint16 port, int timeoutMs = 5000);
    bool IsRunning() const { return !m_pSocket.isNull(); }
    // Ends a running read without a result.
    void Cancel();

Q_SIGNALS:
    // ok with the serial number, or the text to show the user.
    void SignalFinished(bool ok, const QString& sn, const QString& errorText);

private:
    void OnConnected();
    void OnReadyRead();
    void OnError();
    void OnTimeout();
    void Settle(bool ok, const QString& sn, const QString& errorText);

    QPointer<QTcpSocket> m_pSocket;
    QPointer<QTimer> m_pTimer;
    QByteArray m_baReply;
};
