#pragma once

#include <QHash>
#include <QObject>
#include <memory>

// The one owner of "a transfer is running" (the host's g_bTranslating): a count of the running
// transfer jobs per machine. A job holds a Hold while it runs; the flag follows the count of the
// connected machine and drops the moment the last Hold goes, however its job ended.
class TransferActivity final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(TransferActivity)

public:
    // Counts one running job of the machine at ip for as long as it lives.
    using Hold = std::shared_ptr<void>;

    explicit TransferActivity(QObject* parent = nullptr);
    ~TransferActivity() override;

    Hold Begin(const QString& ip);
    // The machine whose transfers the flag and SignalBusyChanged follow.
    void SetConnectedIp(const QString& ip);
    bool IsBusy() const { return Count(m_strConnectedIp) > 0; }
    int Count(const QString& ip) const { return m_hashCount.value(ip); }

Q_SIGNALS:
    // The connected machine's first transfer started (true) or its last one ended (false).
    void SignalBusyChanged(bool busy);

private:
    void Change(const QString& ip, int delta);
    void Publish();

    QHash<QString, int> m_hashCount;
    QString m_strConnectedIp;
    bool m_bBusy = false;
    // Holds may outlive this object (a job deleted later); they then change nothing.
    std::shared_ptr<TransferActivity*> m_pSelf;
};
