#pragma once

#include <QColor>
#include <QObject>

class BroadCastSender;
class QTimer;

// The quiet connect to the machine used last time: asks discovery for it for a while and
// reports it once found; every machine that answers is remembered for the host meanwhile.
class SilentConnector final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(SilentConnector)

public:
    explicit SilentConnector(QObject* parent = nullptr);

    void SetSearchDuration(int milliseconds) { m_nSearchMs = milliseconds; }
    BroadCastSender* DiscoverySender() const { return m_pDiscoverySender; }
    // False when the user turned automatic connection off or no machine was used before.
    bool Start();
    // One discovery answer "…*sn*…*ip*…*interface".
    void OnReply(const QString& reply);

Q_SIGNALS:
    void SignalAppendLog(const QString& text, const QColor& color);
    void SignalFound(const QString& ip, const QString& sn);

private:
    void OnSearchEnded();

    BroadCastSender* m_pDiscoverySender;
    QTimer* m_pSearchTimer;
    int m_nSearchMs = 15000;
};
