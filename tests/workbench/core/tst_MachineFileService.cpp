#include "FakeMachineTasks.h"
#include "KorvBaseGlobals.h"
#include "MachineFileService.h"
#include "MachineJob.h"

#include <QFile>
#include <QPointer>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

namespace {
MachineEndpoint Machine()
{
    MachineEndpoint endpoint;
    endpoint.strIp = QStringLiteral("127.0.0.1");
    endpoint.strSn = QStringLiteral("PB01TEST");
    return endpoint;
}

FtpFileInfo FileEntry(const QString& name, qint64 size)
{
    FtpFileInfo entry;
    entry.name = name;
    entry.type = QStringLiteral("file");
    entry.size = size;
    return entry;
}

// Jobs delete themselves once they reported: a test keeps only the result it was told.
struct Outcome
{
    MachineJob::Result result = MachineJob::Result::Running;
};

std::shared_ptr<Outcome> Watch(MachineJob* job)
{
    auto outcome = std::make_shared<Outcome>();
    QObject::connect(job, &MachineJob::SignalResult,
                     [outcome](MachineJob* ended) { outcome->result = ended->GetResult(); });
    return outcome;
}

MachineJob::Result ResultOf(const std::shared_ptr<Outcome>& outcome)
{
    (void)QTest::qWaitFor([&] { return outcome->result != MachineJob::Result::Running; }, 5000);
    return outcome->result;
}
} // namespace

// The funnel with fake tasks: what it refuses and why, how many run at once, the one overwrite
// question per batch, cancel, and the busy flag that must drop however the last job ended.
class TestMachineFileService : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_local;
    std::shared_ptr<FakeTaskFactory> m_factory;
    std::unique_ptr<MachineFileService> m_files;
    QList<QList<OverwriteEntry>> m_listQuestions;
    bool m_bReplace = true;

    QString LocalFile(const QString& name, const QByteArray& bytes = "G0 X0\n")
    {
        const QString path = m_local.filePath(name);
        QFile file(path);
        file.open(QIODevice::WriteOnly);
        file.write(bytes);
        return path;
    }

    TransferItem UploadItem(const QString& name)
    {
        return {true, LocalFile(name), QStringLiteral("/nc/") + name, OperationCopy};
    }

private Q_SLOTS:
    void init()
    {
        m_factory = std::make_shared<FakeTaskFactory>();
        m_files = std::make_unique<MachineFileService>();
        m_files->SetTaskFactory(m_factory);
        m_files->SetMaxTransfers(MachineFileService::DefaultMaxTransfers);
        m_files->SetEndpoint(Machine());
        m_listQuestions.clear();
        m_bReplace = true;
        m_files->SetOverwriteAsker([this](const QList<OverwriteEntry>& entries, std::function<void(bool)> answer) {
            m_listQuestions.append(entries);
            answer(m_bReplace);
        });
    }

    void cleanup()
    {
        m_files.reset();
        QVERIFY(!g_bTranslating);
    }

    void refusals_data()
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
        QTest::newRow("path, upload over it") << "/x/a.nc"
                                              << "upload"
                                              << "/x/a.nc" << true;
        QTest::newRow("status page while nothing runs") << ""
                                                        << "status-delete"
                                                        << "/x/a.nc" << false;
        QTest::newRow("leading dot") << ""
                                     << "upload"
                                     << "/x/.hidden.nc" << true;
        QTest::newRow("not a program") << ""
                                       << "upload"
                                       << "/x/setup.exe" << true;
        QTest::newRow("climbing machine name") << ""
                                               << "download"
                                               << "/x/.." << true;
        QTest::newRow("no machine") << ""
                                    << "offline-upload"
                                    << "/x/a.nc" << true;
        QTest::newRow("no machine, delete") << ""
                                            << "offline-delete"
                                            << "/x/a.nc" << true;
    }

    void refusals()
    {
        QFETCH(QString, program);
        QFETCH(QString, request);
        QFETCH(QString, path);
        QFETCH(bool, refused);
        m_files->SetRunningProgram(program);
        QSignalSpy notices(m_files.get(), &MachineFileService::SignalNotice);
        QSignalSpy logs(m_files.get(), &MachineFileService::SignalAppendLog);
        const MachineEndpoint machine = request.startsWith(QLatin1String("offline")) ? MachineEndpoint() : Machine();
        const QString name = path.mid(path.lastIndexOf(QLatin1Char('/')) + 1);
        MachineJob* job = nullptr;
        if (request == QLatin1String("delete-file") || request == QLatin1String("offline-delete"))
            job = m_files->Delete(machine, {path}, {}, RequestOrigin::FilePage);
        else if (request == QLatin1String("status-delete"))
            job = m_files->Delete(machine, {path}, {}, RequestOrigin::StatusPage);
        else if (request == QLatin1String("delete-folder"))
            job = m_files->Delete(machine, {}, {path}, RequestOrigin::FilePage);
        else if (request == QLatin1String("rename-from"))
            job = m_files->Rename(machine, path, QStringLiteral("/x/b.nc"), RequestOrigin::FilePage);
        else if (request == QLatin1String("rename-to"))
            job = m_files->Rename(machine, QStringLiteral("/x/b.nc"), path, RequestOrigin::FilePage);
        else if (request == QLatin1String("delete-items"))
            job = m_files->Delete(machine, {QStringLiteral("/y/c.nc"), path}, {}, RequestOrigin::FilePage);
        else if (request == QLatin1String("download"))
            job = m_files->Download(machine, m_local.filePath(QStringLiteral("x.nc")), path, RequestOrigin::FilePage);
        else
            job = m_files->Upload(machine, LocalFile(name), path, OperationCopy, RequestOrigin::FilePage);
        const std::shared_ptr<Outcome> jobDone = Watch(job);
        QCOMPARE(job->GetResult() == MachineJob::Result::Refused, refused);
        if (refused) {
            // Every refusal tells the user, never only the developer's log.
            QVERIFY(!job->ErrorText().isEmpty());
            QCOMPARE(notices.count(), 1);
            QVERIFY(!logs.isEmpty());
            QCOMPARE(m_factory->m_listTasks.size(), 0);
            QVERIFY(!m_files->IsBusy());
        }
        for (const QString& kind : {QStringLiteral("delete"), QStringLiteral("rename")}) {
            for (FakeMachineTask* task : m_factory->Running(kind))
                task->End(true);
        }
        QCOMPARE(ResultOf(jobDone), refused ? MachineJob::Result::Refused : MachineJob::Result::Succeeded);
    }

    void statusPageKeepsOffWhileTransfersRun()
    {
        MachineJob* upload =
            m_files->Transfer(Machine(), {UploadItem(QStringLiteral("a.nc"))}, RequestOrigin::FilePage);
        const std::shared_ptr<Outcome> uploadDone = Watch(upload);
        QTRY_COMPARE(m_factory->Running(QStringLiteral("upload")).size(), 1);
        MachineJob* fromStatusPage =
            m_files->Delete(Machine(), {QStringLiteral("/nc/b.nc")}, {}, RequestOrigin::StatusPage);
        QCOMPARE(fromStatusPage->GetResult(), MachineJob::Result::Refused);
        MachineJob* fromFilePage =
            m_files->Delete(Machine(), {QStringLiteral("/nc/b.nc")}, {}, RequestOrigin::FilePage);
        QVERIFY(!fromFilePage->IsFinished());
        m_factory->Running(QStringLiteral("delete")).first()->End(true);
        m_factory->Running(QStringLiteral("upload")).first()->End(true);
        QCOMPARE(ResultOf(uploadDone), MachineJob::Result::Succeeded);
    }

    void queueRunsAFewAtOnceAndFlagFollowsTheCount()
    {
        QList<TransferItem> items;
        for (int i = 0; i < 7; ++i)
            items.append(UploadItem(QStringLiteral("p%1.nc").arg(i)));
        QSignalSpy busy(m_files->Activity(), &TransferActivity::SignalBusyChanged);
        MachineJob* batch = m_files->Transfer(Machine(), items, RequestOrigin::FilePage);
        const std::shared_ptr<Outcome> batchDone = Watch(batch);
        QTRY_COMPARE(m_factory->Running(QStringLiteral("upload")).size(), MachineFileService::DefaultMaxTransfers);
        QCOMPARE(m_files->WaitingCount(), 2);
        QVERIFY(g_bTranslating);
        // A second request for a file already queued is refused as busy.
        MachineJob* again = m_files->Transfer(Machine(), {items.last()}, RequestOrigin::FilePage);
        QCOMPARE(again->GetResult(), MachineJob::Result::Refused);
        m_factory->Running(QStringLiteral("upload")).first()->End(false, QStringLiteral("disk full"));
        QTRY_COMPARE(m_factory->Running(QStringLiteral("upload")).size(), MachineFileService::DefaultMaxTransfers);
        QCOMPARE(m_files->WaitingCount(), 1);
        while (!m_factory->Running(QStringLiteral("upload")).isEmpty()) {
            for (FakeMachineTask* task : m_factory->Running(QStringLiteral("upload")))
                task->End(true);
            QCoreApplication::processEvents();
        }
        QCOMPARE(ResultOf(batchDone), MachineJob::Result::Failed);
        QVERIFY(!g_bTranslating);
        QCOMPARE(busy.count(), 2);
        QCOMPARE(m_factory->Created(QStringLiteral("upload")), 7);
    }

    void anotherMachineHasItsOwnSlotsProgramAndFlag()
    {
        MachineEndpoint other = Machine();
        other.strIp = QStringLiteral("127.0.0.9");
        other.strSn = QStringLiteral("PB01OTHER");
        m_files->SetRunningProgramSource(
            [](const QString& ip) { return ip == QLatin1String("127.0.0.9") ? QStringLiteral("run.nc") : QString(); });
        QSignalSpy notices(m_files.get(), &MachineFileService::SignalNotice);
        QCOMPARE(m_files->Transfer(other, {UploadItem(QStringLiteral("run.nc"))}, RequestOrigin::Fleet)->GetResult(),
                 MachineJob::Result::Refused);
        QCOMPARE(notices.count(), 0);

        QList<TransferItem> items;
        for (int i = 0; i < MachineFileService::DefaultMaxTransfers; ++i)
            items.append(UploadItem(QStringLiteral("p%1.nc").arg(i)));
        QSignalSpy busy(m_files->Activity(), &TransferActivity::SignalBusyChanged);
        m_files->Transfer(other, items, RequestOrigin::Fleet, true);
        QTRY_COMPARE(m_factory->Running(QStringLiteral("upload")).size(), MachineFileService::DefaultMaxTransfers);
        QVERIFY(!g_bTranslating);
        // The other machine's full slots hold nothing of the connected machine back.
        m_files->Transfer(Machine(), {UploadItem(QStringLiteral("run.nc"))}, RequestOrigin::FilePage, true);
        QTRY_COMPARE(m_factory->Running(QStringLiteral("upload")).size(), MachineFileService::DefaultMaxTransfers + 1);
        QCOMPARE(busy.count(), 1);
        for (FakeMachineTask* task : m_factory->Running(QStringLiteral("upload")))
            task->End(true);
        QTRY_VERIFY(!g_bTranslating);
    }

    void everyEndClearsTheFlag_data()
    {
        QTest::addColumn<QString>("ending");
        QTest::newRow("success") << "success";
        QTest::newRow("failure") << "failure";
        QTest::newRow("cancel of the running job") << "cancel";
        QTest::newRow("machine gone") << "stop-all";
        QTest::newRow("private fetch") << "fetch";
    }

    void everyEndClearsTheFlag()
    {
        QFETCH(QString, ending);
        MachineJob* job =
            ending == QLatin1String("fetch")
                ? m_files->Fetch(Machine(), QStringLiteral("/nc/a.nc"), m_local.filePath(QStringLiteral("copy")))
                : m_files->Transfer(Machine(), {UploadItem(QStringLiteral("a.nc"))}, RequestOrigin::FilePage);
        const std::shared_ptr<Outcome> jobDone = Watch(job);
        const QString kind = ending == QLatin1String("fetch") ? QStringLiteral("download") : QStringLiteral("upload");
        QTRY_COMPARE(m_factory->Running(kind).size(), 1);
        QVERIFY(m_files->IsBusy());
        QVERIFY(g_bTranslating);
        FakeMachineTask* task = m_factory->Running(kind).first();
        const int stopsBefore = FakeMachineTask::s_nStops;
        if (ending == QLatin1String("success") || ending == QLatin1String("fetch"))
            task->End(true);
        else if (ending == QLatin1String("failure"))
            task->End(false, QStringLiteral("lost"));
        else if (ending == QLatin1String("cancel"))
            job->Cancel();
        else
            m_files->StopAll();
        const MachineJob::Result result = ResultOf(jobDone);
        QVERIFY(!m_files->IsBusy());
        QVERIFY(!g_bTranslating);
        if (ending == QLatin1String("cancel") || ending == QLatin1String("stop-all")) {
            QCOMPARE(FakeMachineTask::s_nStops, stopsBefore + 1);
            QCOMPARE(result, MachineJob::Result::Cancelled);
        }
    }

    void cancelOfAWaitingJobStartsNothing()
    {
        m_files->SetMaxTransfers(1);
        MachineJob* first = m_files->Transfer(Machine(), {UploadItem(QStringLiteral("a.nc"))}, RequestOrigin::FilePage);
        const std::shared_ptr<Outcome> firstDone = Watch(first);
        MachineJob* second =
            m_files->Transfer(Machine(), {UploadItem(QStringLiteral("b.nc"))}, RequestOrigin::FilePage);
        QTRY_COMPARE(m_factory->Running(QStringLiteral("upload")).size(), 1);
        QCOMPARE(m_files->WaitingCount(), 1);
        second->Cancel();
        QCOMPARE(m_files->WaitingCount(), 0);
        m_factory->Running(QStringLiteral("upload")).first()->End(true);
        QCOMPARE(ResultOf(firstDone), MachineJob::Result::Succeeded);
        QCOMPARE(m_factory->Created(QStringLiteral("upload")), 1);
    }

    void oneOverwriteQuestionPerBatch_data()
    {
        QTest::addColumn<bool>("replace");
        QTest::newRow("yes sends the batch") << true;
        QTest::newRow("no sends nothing") << false;
    }

    void oneOverwriteQuestionPerBatch()
    {
        QFETCH(bool, replace);
        m_bReplace = replace;
        m_factory->m_hashFolders.insert(
            QStringLiteral("/nc"), {FileEntry(QStringLiteral("a.nc"), 1526), FileEntry(QStringLiteral("b.nc"), 9)});
        MachineJob* batch = m_files->Transfer(Machine(),
                                              {UploadItem(QStringLiteral("a.nc")), UploadItem(QStringLiteral("b.nc")),
                                               UploadItem(QStringLiteral("c.nc"))},
                                              RequestOrigin::FilePage);
        const std::shared_ptr<Outcome> batchDone = Watch(batch);
        QTRY_COMPARE(m_listQuestions.size(), 1);
        const QList<OverwriteEntry> asked = m_listQuestions.first();
        QCOMPARE(asked.size(), 2);
        QCOMPARE(asked.first().strTarget, QStringLiteral("/nc/a.nc"));
        QCOMPARE(asked.first().nOldSize, 1526);
        QCOMPARE(asked.first().nNewSize, 6);
        if (!replace) {
            QCOMPARE(ResultOf(batchDone), MachineJob::Result::Cancelled);
            QCOMPARE(m_factory->Created(QStringLiteral("upload")), 0);
            return;
        }
        QTRY_COMPARE(m_factory->Running(QStringLiteral("upload")).size(), 3);
        for (FakeMachineTask* task : m_factory->Running(QStringLiteral("upload")))
            task->End(true);
        QCOMPARE(ResultOf(batchDone), MachineJob::Result::Succeeded);
    }

    void failedRowIsRetriedThroughTheChecks()
    {
        QSignalSpy rows(m_files.get(), &MachineFileService::SignalTransferUpdated);
        MachineJob* job = m_files->Transfer(Machine(), {UploadItem(QStringLiteral("a.nc"))}, RequestOrigin::FilePage);
        const std::shared_ptr<Outcome> jobDone = Watch(job);
        QTRY_COMPARE(m_factory->Running(QStringLiteral("upload")).size(), 1);
        m_factory->Running(QStringLiteral("upload")).first()->End(false, QStringLiteral("lost"));
        QCOMPARE(ResultOf(jobDone), MachineJob::Result::Failed);
        const QString key = rows.last().at(1).toString();
        QCOMPARE(rows.last().at(0).value<TanslateInfo>().state, int(TanslateInfo::StateFailed));
        // Meanwhile the machine started running that program: the retry is refused like a new request.
        m_files->SetRunningProgram(QStringLiteral("a.nc"));
        QCOMPARE(m_files->Retry(key)->GetResult(), MachineJob::Result::Refused);
        m_files->SetRunningProgram(QString());
        QCOMPARE(m_files->Retry(key)->GetResult(), MachineJob::Result::Refused); // asked once, consumed
    }

    void cutDeletesItsSourceOnlyAfterSuccess_data()
    {
        QTest::addColumn<bool>("ok");
        QTest::newRow("sent") << true;
        QTest::newRow("failed") << false;
    }

    void cutDeletesItsSourceOnlyAfterSuccess()
    {
        QFETCH(bool, ok);
        QSignalSpy cut(m_files.get(), &MachineFileService::SignalCutSucceeded);
        TransferItem item = UploadItem(QStringLiteral("cut.nc"));
        item.operation = OperationCut;
        MachineJob* job = m_files->Transfer(Machine(), {item}, RequestOrigin::FilePage);
        const std::shared_ptr<Outcome> jobDone = Watch(job);
        QTRY_COMPARE(m_factory->Running(QStringLiteral("upload")).size(), 1);
        QVERIFY(QFile::exists(item.strLocalPath));
        m_factory->Running(QStringLiteral("upload")).first()->End(ok);
        QCOMPARE(ResultOf(jobDone), ok ? MachineJob::Result::Succeeded : MachineJob::Result::Failed);
        QCOMPARE(QFile::exists(item.strLocalPath), !ok);
        QCOMPARE(cut.count(), ok ? 1 : 0);
    }

    void cancelFromTheRowEndsItCancelled_data()
    {
        QTest::addColumn<bool>("waiting");
        QTest::newRow("running cut") << false;
        QTest::newRow("waiting cut") << true;
    }

    void cancelFromTheRowEndsItCancelled()
    {
        QFETCH(bool, waiting);
        m_files->SetMaxTransfers(1);
        QSignalSpy rows(m_files.get(), &MachineFileService::SignalTransferUpdated);
        QSignalSpy cuts(m_files.get(), &MachineFileService::SignalCutSucceeded);
        m_files->Transfer(Machine(), {UploadItem(QStringLiteral("first.nc"))}, RequestOrigin::FilePage);
        TransferItem cut = UploadItem(QStringLiteral("a.nc"));
        cut.operation = OperationCut;
        const std::shared_ptr<Outcome> cutDone = Watch(m_files->Transfer(Machine(), {cut}, RequestOrigin::FilePage));
        QTRY_COMPARE(m_files->WaitingCount(), 1);
        if (!waiting) {
            m_factory->Running(QStringLiteral("upload")).first()->End(true);
            QTRY_COMPARE(m_files->WaitingCount(), 0);
            QTRY_VERIFY(
                m_factory->Running(QStringLiteral("upload")).first()->m_strPath.endsWith(QStringLiteral("a.nc")));
        }
        const QString key = rows.last().at(1).toString();
        QVERIFY(key.endsWith(QStringLiteral("/nc/a.nc*Upload")));
        QVERIFY(!m_files->Cancel(QStringLiteral("ftp://127.0.0.1:21/nc/none.nc*Upload")));
        QVERIFY(m_files->Cancel(key));
        QCOMPARE(ResultOf(cutDone), MachineJob::Result::Cancelled);
        const TanslateInfo last = rows.last().at(0).value<TanslateInfo>();
        QCOMPARE(rows.last().at(1).toString(), key);
        QCOMPARE(last.state, int(TanslateInfo::StateCancelled));
        QCOMPARE(last.localPath, cut.strLocalPath);
        QVERIFY(QFile::exists(cut.strLocalPath));
        QCOMPARE(cuts.count(), 0);
        QVERIFY(!m_files->Cancel(key));
        // A cancelled row is sent again like a failed one.
        QCOMPARE(m_files->Retry(key)->GetResult(), MachineJob::Result::Running);
    }
};

QTEST_GUILESS_MAIN(TestMachineFileService)
#include "tst_MachineFileService.moc"
