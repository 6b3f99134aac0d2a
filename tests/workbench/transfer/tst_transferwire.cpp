#include "CamBaseTextHelper.h"
#include "CncSimServer.h"
#include "KorvBaseGlobals.h"
#include "MachineFileService.h"
#include "MachineJob.h"
#include "transfer/CProgressDelegate.h"
#include "transfer/TransList.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QStandardItemModel>
#include <QTemporaryDir>
#include <QTest>

namespace {
constexpr qint64 MiB = 1024 * 1024;

void SetSetting(const char* key, const QVariant& value)
{
    CamBaseTextHelper::instance()->SetLocalSettingCache(CamBaseTextHelper::SettingTypeLocal, QString::fromLatin1(key),
                                                        value, true);
}

// "1.02 MB/s", "980.00 KB/s", "0 B/s" back to bytes per second.
double BytesPerSecond(const QString& text)
{
    const QStringList parts = text.split(QLatin1Char(' '));
    const double value = parts.value(0).toDouble();
    if (parts.value(1) == QLatin1String("MB/s"))
        return value * MiB;
    if (parts.value(1) == QLatin1String("KB/s"))
        return value * 1024;
    return value;
}
} // namespace

// Transfers through the funnel with the host's real tasks against cnc-sim with a rate limit:
// what a cancel leaves on the machine, and the speeds the list shows.
class TransferWireTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { qputenv("KORV_CONFIG_DIR", m_configDir.path().toUtf8()); }
    void cleanup()
    {
        m_files.reset();
        m_sim.reset();
    }
    void cancelledUploadLeavesNothingOnTheMachine();
    void shownSpeedsFollowTheRate();

private:
    // Starts the simulator limited to `rate` bytes a second and a funnel pointed at it.
    void StartMachine(qint64 rate);
    QString LocalFile(const QString& name, qint64 size);
    QStringList MachineEntries() const
    {
        return QDir(m_sim->RootDir()).entryList(QDir::Files | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    QTemporaryDir m_configDir;
    QTemporaryDir m_local;
    std::unique_ptr<CncSimServer> m_sim;
    std::unique_ptr<MachineFileService> m_files;
};

void TransferWireTest::StartMachine(qint64 rate)
{
    m_sim = std::make_unique<CncSimServer>(QStringList{QStringLiteral("--ftp-rate"), QString::number(rate)});
    QVERIFY2(m_sim->Start(), qPrintable(m_sim->ErrorString()));
    SetSetting(g_strSettingFtpUser, m_sim->User());
    SetSetting(g_strSettingFtpPassword, m_sim->Password());
    SetSetting(g_strSettingFtpPortMapping, int(m_sim->Port()));
    m_files = std::make_unique<MachineFileService>();
    m_files->SetEndpoint(MachineEndpoint::For(QStringLiteral("127.0.0.1"), QStringLiteral("PB01SIM0001")));
    m_files->SetOverwriteAsker([](const QList<OverwriteEntry>&, std::function<void(bool)> answer) { answer(true); });
}

QString TransferWireTest::LocalFile(const QString& name, qint64 size)
{
    const QString path = m_local.filePath(name);
    QFile file(path);
    if (file.open(QIODevice::WriteOnly))
        file.write(QByteArray(size, 'g'));
    return path;
}

void TransferWireTest::cancelledUploadLeavesNothingOnTheMachine()
{
    StartMachine(256 * 1024);
    if (QTest::currentTestFailed())
        return;
    QSignalSpy rows(m_files.get(), &MachineFileService::SignalTransferUpdated);
    const QString source = LocalFile(QStringLiteral("part.nc"), 4 * MiB);
    MachineJob::Result result = MachineJob::Result::Running;
    MachineJob* job =
        m_files->Upload(m_files->Endpoint(), source, QStringLiteral("/part.nc"), OperationCut, RequestOrigin::FilePage);
    connect(job, &MachineJob::SignalResult, this, [&result](MachineJob* done) { result = done->GetResult(); });
    // Under way: the temporary file is on the machine and bytes have moved.
    QTRY_VERIFY_WITH_TIMEOUT(
        !MachineEntries().isEmpty() && !rows.isEmpty() && rows.last().at(0).value<TanslateInfo>().doneSize > 0, 15000);
    QVERIFY(m_files->Cancel(rows.last().at(1).toString()));
    QTRY_VERIFY_WITH_TIMEOUT(result != MachineJob::Result::Running, 15000);
    QCOMPARE(result, MachineJob::Result::Cancelled);
    QCOMPARE(rows.last().at(0).value<TanslateInfo>().state, int(TanslateInfo::StateCancelled));
    QVERIFY(!MachineEntries().contains(QStringLiteral("part.nc")));
    // The stopped task's clean-up DELE runs under the same stop check as the transfer, so it
    // is never sent and the hidden temporary file stays.
    QEXPECT_FAIL("", "a stopped upload does not delete its temporary file yet", Continue);
    QCOMPARE(MachineEntries(), QStringList());
    QVERIFY(QFile::exists(source));
}

void TransferWireTest::shownSpeedsFollowTheRate()
{
    StartMachine(MiB);
    if (QTest::currentTestFailed())
        return;
    TransList list;
    struct Shown
    {
        qint64 ms;
        int state;
        QString speed;
    };
    QList<Shown> shown;
    connect(m_files.get(), &MachineFileService::SignalTransferUpdated, &list, &TransList::SlotUpdateTransfer);
    connect(m_files.get(), &MachineFileService::SignalTransferUpdated, &list,
            [&](const TanslateInfo& info, const QString& key) {
                const QModelIndex cell = list.Model()->index(list.RowOfKey(key), TransList::ColumnProgress);
                shown.append({QDateTime::currentMSecsSinceEpoch(), info.state,
                              cell.data(CProgressDelegate::SpeedTextRole).toString()});
            });
    const QString source = LocalFile(QStringLiteral("big.nc"), 10 * MiB);
    m_files->Upload(m_files->Endpoint(), source, QStringLiteral("/big.nc"), OperationCopy, RequestOrigin::FilePage);
    QTRY_VERIFY_WITH_TIMEOUT(!shown.isEmpty() && shown.last().state == TanslateInfo::StateSucceeded, 30000);

    const qint64 start = shown.first().ms;
    const qint64 end = shown.last().ms;
    QStringList judged;
    bool bAllClose = true;
    for (const Shown& report : shown) {
        if (report.ms < start + 2000 || report.ms > end - 1000)
            continue;
        const double speed = BytesPerSecond(report.speed);
        judged.append(QStringLiteral("%1 at %2 ms").arg(report.speed).arg(report.ms - start));
        bAllClose = bAllClose && speed >= 0.8 * MiB && speed <= 1.2 * MiB;
    }
    qInfo().noquote() << "speeds shown:" << judged.join(QStringLiteral(", ")) << "of" << (end - start) << "ms";
    QVERIFY2(judged.size() >= 5, qPrintable(judged.join(QStringLiteral(", "))));
    // The task counts the bytes handed to the socket; the kernel's send buffer holds megabytes
    // ahead of the machine, so the count runs early and then stands still while the buffer drains.
    QEXPECT_FAIL("", "upload progress counts bytes buffered by the socket, not bytes the machine took", Continue);
    QVERIFY2(bAllClose, qPrintable(judged.join(QStringLiteral(", "))));
}

QTEST_MAIN(TransferWireTest)
#include "tst_transferwire.moc"
