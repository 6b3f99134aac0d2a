#include "CamBaseTextHelper.h"
#include "FreeLoopbackPort.h"
#include "KorvBaseGlobals.h"
#include "workspace/TransferOrchestrator.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

// The checks the orchestrator makes before any FTP command leaves: they must refuse
// exactly what they should, and let the rest through to a task.
class TestTransferOrchestrator : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        qputenv("KORV_CONFIG_DIR", m_configDir.path().toUtf8());
        // Nothing listens there: a task that does start ends at once with a refused connection.
        CamBaseTextHelper::instance()->SetLocalSettingCache(CamBaseTextHelper::SettingTypeLocal,
                                                            QString::fromLatin1(g_strSettingFtpPortMapping),
                                                            FreeLoopbackPort(), true);
    }

    void requestChecks_data()
    {
        QTest::addColumn<QString>("program");
        QTest::addColumn<QString>("request");
        QTest::addColumn<QString>("path");
        QTest::addColumn<bool>("refused");
        QTest::newRow("bare name, delete that file") << "a.nc"
                                                     << "delete-file"
                                                     << "/x/a.nc" << true;
        QTest::newRow("bare name, delete a folder") << "a.nc"
                                                    << "delete-folder"
                                                    << "/x" << false;
        QTest::newRow("path, delete its folder") << "/x/a.nc"
                                                 << "delete-folder"
                                                 << "/x" << true;
        QTest::newRow("path, delete the root") << "/x/a.nc"
                                               << "delete-folder"
                                               << "/" << true;
        QTest::newRow("path, delete a look-alike folder") << "/x/a.nc"
                                                          << "delete-folder"
                                                          << "/xy" << false;
        QTest::newRow("path, rename it") << "/x/a.nc"
                                         << "rename-from"
                                         << "/x/a.nc" << true;
        QTest::newRow("path, rename onto it") << "/x/a.nc"
                                              << "rename-to"
                                              << "/x/a.nc" << true;
        QTest::newRow("path, batch holding it") << "/x/a.nc"
                                                << "delete-items"
                                                << "/x/a.nc" << true;
        QTest::newRow("nothing runs") << ""
                                      << "delete-file"
                                      << "/x/a.nc" << false;
        QTest::newRow("leading dot") << ""
                                     << "upload"
                                     << ".hidden.nc" << true;
    }

    void requestChecks()
    {
        QFETCH(QString, program);
        QFETCH(QString, request);
        QFETCH(QString, path);
        QFETCH(bool, refused);
        QTemporaryDir local;
        TransferOrchestrator transfers;
        transfers.SetMachineIp(QStringLiteral("127.0.0.1"));
        transfers.SetRunningProgram(program);
        QSignalSpy notices(&transfers, &TransferOrchestrator::SignalNotice);
        QSignalSpy ended(&transfers, &TransferOrchestrator::SignalMachineChanged);
        QSignalSpy rows(&transfers, &TransferOrchestrator::SignalTransferUpdated);
        if (request == QLatin1String("delete-file"))
            transfers.DeletePath(path, 1);
        else if (request == QLatin1String("delete-folder"))
            transfers.DeletePath(path, 0);
        else if (request == QLatin1String("rename-from"))
            transfers.Rename(path, QStringLiteral("/x/b.nc"));
        else if (request == QLatin1String("rename-to"))
            transfers.Rename(QStringLiteral("/x/b.nc"), path);
        else if (request == QLatin1String("delete-items"))
            transfers.DeleteItems({QStringLiteral("/y/c.nc"), path}, {});
        else
            transfers.Upload(local.filePath(path), QLatin1Char('/') + path, OperationCopy);
        QCOMPARE(notices.count(), refused ? 1 : 0);
        if (refused) {
            QCOMPARE(rows.count(), 0);
            QVERIFY(!transfers.IsBusy());
        } else {
            QVERIFY(ended.wait(5000));
        }
    }

    void quietRefusals()
    {
        TransferOrchestrator transfers;
        QSignalSpy notices(&transfers, &TransferOrchestrator::SignalNotice);
        QSignalSpy rows(&transfers, &TransferOrchestrator::SignalTransferUpdated);
        transfers.Upload(QStringLiteral("/tmp/tool.exe"), QStringLiteral("/tool.exe"), OperationCopy);
        QCOMPARE(notices.count(), 0); // a wrong type only reaches the debug log
        transfers.Upload(QStringLiteral("/tmp/PART.NC"), QStringLiteral("/PART.NC"), OperationCopy);
        QCOMPARE(notices.count(), 1); // upper case passes the type check, then no machine
        QCOMPARE(notices.first().first().toString(), QStringLiteral("当前未与机床进行连接！"));
        QCOMPARE(rows.count(), 0);
    }

private:
    QTemporaryDir m_configDir;
};

QTEST_MAIN(TestTransferOrchestrator)
#include "tst_transferorchestrator.moc"
