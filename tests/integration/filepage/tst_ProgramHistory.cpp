#include "HistoryStore.h"
#include "KorvBaseGlobals.h"
#include "MachineConnection.h"
#include "MachineFileService.h"
#include "MachineJob.h"
#include "ProgramHistory.h"
#include "SimWorkspaceFixture.h"
#include "filepanel/FileManager.h"
#include "filepanel/FileSelectPanel.h"
#include "filepanel/FileTreeView.h"
#include "history/HistoryController.h"
#include "history/ProgramCompareDialog.h"

#include <CamBaseTextHelper.h>
#include <QApplication>
#include <QDropEvent>
#include <QItemSelectionModel>
#include <QMimeData>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <QTreeWidget>
#include <algorithm>

namespace {
const QString Ip = QStringLiteral("127.0.0.1");

void Select(FileSelectPanel* panel, const QString& name)
{
    QItemSelectionModel* selection = panel->TreeView()->selectionModel();
    selection->clearSelection();
    selection->select(SimWorkspaceFixture::PanelRow(*panel, name),
                      QItemSelectionModel::Select | QItemSelectionModel::Rows);
}

// The compare window open over `window`; closed ones wait for deletion a while.
ProgramCompareDialog* VisibleCompare(QWidget* window)
{
    for (ProgramCompareDialog* dialog : window->findChildren<ProgramCompareDialog*>()) {
        if (dialog->isVisible())
            return dialog;
    }
    return nullptr;
}

void Drop(FileSelectPanel* panel, const QString& localPath)
{
    QMimeData mime;
    mime.setUrls({QUrl::fromLocalFile(localPath)});
    const QPoint pos = panel->rect().center();
    QDragEnterEvent enter(pos, Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(panel, &enter);
    QDropEvent drop(QPointF(pos), Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(panel, &drop);
}
} // namespace

// The program history of a shown Workspace against the simulator: every way of replacing or
// deleting a machine program keeps its old bytes first, and a program that cannot be fetched
// is not replaced.
class TestProgramHistory : public QObject, public SimWorkspaceFixture
{
    Q_OBJECT

private:
    HistoryStore* Store() const { return m_workspace->History()->Store(QString::fromLatin1(kSn)); }

    // The bytes of the newest kept version of a machine program; empty when none is kept.
    QByteArray Kept(const QString& machinePath) const
    {
        const QList<HistoryVersion> versions = Store()->Versions(machinePath);
        return versions.isEmpty() ? QByteArray() : Read(Store()->ContentPath(versions.first().strHash));
    }

    MachineEndpoint Endpoint() const { return m_workspace->FileService()->Endpoint(); }

    bool Idle() const { return !g_bTranslating && !m_workspace->FileService()->IsBusy(); }

private Q_SLOTS:
    void initTestCase() { SetUpFixture(); }
    void init()
    {
        ResetFixture();
        QDir(m_configDir.filePath(QStringLiteral("ProgramHistory"))).removeRecursively();
    }
    void cleanup() { TearDownFixture(); }

    void everyWayOfReplacingKeepsTheEditedProgram()
    {
        StartSimulator(DefaultSimOptions());
        QMap<QString, QByteArray> edited;
        QMap<QString, QByteArray> office;
        for (const QString name : {"arrow.nc", "paste.nc", "drop.nc", "sync.nc"}) {
            edited.insert(name, RandomBytes(2000));
            office.insert(name, RandomBytes(3000));
            Write(MachineFile(name), edited.value(name));
            Write(LocalFile(name), office.value(name));
        }
        ConnectWorkspace();
        FileManager* manager = m_workspace->GetFileManager();
        FileSelectPanel* local = manager->LocalPanel();

        Select(local, QStringLiteral("arrow.nc"));
        QTest::mouseClick(manager->UploadButton(), Qt::LeftButton);
        QTRY_COMPARE_WITH_TIMEOUT(Read(MachineFile(QStringLiteral("arrow.nc"))), office.value("arrow.nc"), 15000);

        QTRY_VERIFY_WITH_TIMEOUT(Idle(), 10000);
        Select(local, QStringLiteral("paste.nc"));
        QTest::keyClick(local->TreeView(), Qt::Key_C, Qt::ControlModifier);
        QTest::keyClick(manager->MachinePanel()->TreeView(), Qt::Key_V, Qt::ControlModifier);
        QTRY_COMPARE_WITH_TIMEOUT(Read(MachineFile(QStringLiteral("paste.nc"))), office.value("paste.nc"), 15000);

        QTRY_VERIFY_WITH_TIMEOUT(Idle(), 10000);
        Drop(manager->MachinePanel(), LocalFile(QStringLiteral("drop.nc")));
        QTRY_COMPARE_WITH_TIMEOUT(Read(MachineFile(QStringLiteral("drop.nc"))), office.value("drop.nc"), 15000);

        // The synchronisation's conflict is answered "keep the local version".
        QTRY_VERIFY_WITH_TIMEOUT(Idle(), 10000);
        m_workspace->SlotFileSyncBtnClicked();
        QTRY_COMPARE_WITH_TIMEOUT(Read(MachineFile(QStringLiteral("sync.nc"))), office.value("sync.nc"), 15000);

        for (auto it = edited.cbegin(); it != edited.cend(); ++it) {
            QTRY_COMPARE_WITH_TIMEOUT(Kept(QLatin1Char('/') + it.key()), it.value(), 5000);
            const HistoryVersion version = Store()->Versions(QLatin1Char('/') + it.key()).first();
            QCOMPARE(version.eCause, HistoryCause::Replaced);
            QCOMPARE(version.strBy, it.key());
            QCOMPARE(version.nSize, 2000);
        }
    }

    void deletedProgramIsRestoredByteForByte()
    {
        StartSimulator(DefaultSimOptions());
        const QByteArray program = RandomBytes(5000);
        Write(MachineFile(QStringLiteral("gone.nc")), program);
        ConnectWorkspace();
        m_workspace->FileService()->Delete(Endpoint(), {QStringLiteral("/gone.nc")}, {}, RequestOrigin::FilePage);
        QTRY_VERIFY_WITH_TIMEOUT(!QFileInfo::exists(MachineFile(QStringLiteral("gone.nc"))), 10000);
        const QList<HistoryVersion> programs = Store()->Programs();
        QCOMPARE(programs.size(), 1);
        QCOMPARE(programs.first().eCause, HistoryCause::Deleted);

        QTRY_VERIFY_WITH_TIMEOUT(Idle(), 10000);
        m_workspace->History()->Restore(Endpoint(), programs.first());
        QTRY_COMPARE_WITH_TIMEOUT(Read(MachineFile(QStringLiteral("gone.nc"))), program, 15000);
        // Restoring over a program now on the machine keeps that one in turn, even where keeping
        // it drops the very version being restored.
        QTRY_VERIFY_WITH_TIMEOUT(Idle(), 10000);
        const QByteArray newer = RandomBytes(700);
        Write(MachineFile(QStringLiteral("gone.nc")), newer);
        const auto keepOnly = [](int count) {
            CamBaseTextHelper::instance()->SetLocalSettingCache(CamBaseTextHelper::SettingTypeLocal,
                                                                QStringLiteral("History/KeepPerProgram"), count, true);
        };
        keepOnly(1);
        m_workspace->History()->Restore(Endpoint(), programs.first());
        QTRY_COMPARE_WITH_TIMEOUT(Kept(QStringLiteral("/gone.nc")), newer, 15000);
        QTRY_COMPARE_WITH_TIMEOUT(Read(MachineFile(QStringLiteral("gone.nc"))), program, 15000);
        keepOnly(20);

        // The history window belongs to the machine it was opened for: it closes with the connection.
        m_workspace->HistoryViews()->ShowHistory(QStringLiteral("/gone.nc"));
        const QPointer<ProgramHistoryDialog> window = m_workspace->HistoryViews()->Dialog();
        QVERIFY(window && window->isVisible());
        m_workspace->DisconnectMachine(false);
        QTRY_VERIFY(!window || !window->isVisible());
        ConnectWorkspace();

        // A deleted folder takes the programs below it along: each is kept.
        QTRY_VERIFY_WITH_TIMEOUT(Idle(), 10000);
        const QByteArray nested = RandomBytes(900);
        Write(MachineFile(QStringLiteral("jobs/deep/part.nc")), nested);
        m_workspace->FileService()->Delete(Endpoint(), {}, {QStringLiteral("/jobs")}, RequestOrigin::FilePage);
        QTRY_VERIFY_WITH_TIMEOUT(!QFileInfo::exists(MachineFile(QStringLiteral("jobs"))), 10000);
        QCOMPARE(Kept(QStringLiteral("/jobs/deep/part.nc")), nested);
    }

    // Two kept versions compared from the history window: the files are read and compared off the
    // window's thread, and an option ticked meanwhile or after compares again. The newest is compared
    // with the machine's copy, then the oldest is put back.
    void keptVersionsAreComparedAndRestoredFromTheHistoryWindow()
    {
        StartSimulator(DefaultSimOptions());
        Write(MachineFile(QStringLiteral("part.nc")), "N10 G0 X0\nN20 G1 X1\nM30\n");
        Write(LocalFile(QStringLiteral("part.nc")), "G0 X9\n"); // listed by the local panel from the start
        ConnectWorkspace();
        FileManager* manager = m_workspace->GetFileManager();
        for (const QByteArray& text : {QByteArray("N1 G0 X0\nN2 G1 X1\nM30\n"), QByteArray("G0 X5\n")}) {
            QTRY_VERIFY_WITH_TIMEOUT(Idle(), 10000);
            Write(LocalFile(QStringLiteral("part.nc")), text);
            Select(manager->LocalPanel(), QStringLiteral("part.nc"));
            QTest::mouseClick(manager->UploadButton(), Qt::LeftButton);
            QTRY_COMPARE_WITH_TIMEOUT(Read(MachineFile(QStringLiteral("part.nc"))), text, 15000);
        }
        QTRY_COMPARE_WITH_TIMEOUT(Store()->Versions(QStringLiteral("/part.nc")).size(), 2, 5000);

        m_workspace->HistoryViews()->ShowHistory(QStringLiteral("/part.nc"));
        ProgramHistoryDialog* window = m_workspace->HistoryViews()->Dialog();
        QVERIFY(window);
        window->VersionTree()->selectAll();
        QVERIFY(window->CompareButton()->isEnabled());
        QTest::mouseClick(window->CompareButton(), Qt::LeftButton);
        ProgramCompareDialog* compare = VisibleCompare(window);
        QVERIFY(compare);
        QTRY_VERIFY_WITH_TIMEOUT(!compare->IsComparing(), 5000);
        // Only the block numbers differ.
        QCOMPARE(compare->Table()->model()->rowCount(), 3);
        QCOMPARE(compare->ChangedCount(), 2);
        QCOMPARE(compare->Table()->model()->index(1, ProgramCompareModel::ColumnLeftText).data().toString(),
                 QStringLiteral("N20 G1 X1"));
        QCOMPARE(compare->Table()->model()->index(1, ProgramCompareModel::ColumnRightText).data().toString(),
                 QStringLiteral("N2 G1 X1"));
        QVERIFY(compare->Table()->model()->index(1, 0).data(Qt::BackgroundRole).isValid());
        compare->SetOptions({false, false, true});
        compare->SetOptions({true, false, true});
        QTRY_VERIFY_WITH_TIMEOUT(!compare->IsComparing(), 5000);
        QCOMPARE(compare->ChangedCount(), 0);
        QVERIFY(!compare->Table()->model()->index(1, 0).data(Qt::BackgroundRole).isValid());
        compare->close();

        // The newest kept version against the machine's copy, fetched through the funnel.
        QTreeWidget* versions = window->VersionTree();
        versions->clearSelection();
        versions->topLevelItem(0)->setSelected(true);
        QTest::mouseClick(window->CompareMachineButton(), Qt::LeftButton);
        ProgramCompareDialog* withMachine = nullptr;
        QTRY_VERIFY_WITH_TIMEOUT((withMachine = VisibleCompare(window)) != nullptr, 15000);
        QTRY_VERIFY_WITH_TIMEOUT(!withMachine->IsComparing(), 5000);
        QCOMPARE(withMachine->Table()->model()->index(0, ProgramCompareModel::ColumnRightText).data().toString(),
                 QStringLiteral("G0 X5"));
        QCOMPARE(withMachine->ChangedCount(), 3);
        withMachine->close();

        // Putting the oldest version back asks first; a "no" leaves the machine as it is.
        versions->clearSelection();
        versions->topLevelItem(versions->topLevelItemCount() - 1)->setSelected(true);
        m_iAnswer = MsgButtonCancel;
        const qsizetype boxes = m_listBoxes.size();
        QTest::mouseClick(window->RestoreButton(), Qt::LeftButton);
        QTRY_COMPARE(m_listBoxes.size(), boxes + 1);
        QVERIFY(m_listBoxes.last().strText.contains(QStringLiteral("/part.nc")));
        // A restore would keep the machine's program first and then send: time for both to show.
        QTest::qWait(500);
        QVERIFY(Idle());
        QCOMPARE(Store()->Versions(QStringLiteral("/part.nc")).size(), 2);
        QCOMPARE(Read(MachineFile(QStringLiteral("part.nc"))), QByteArray("G0 X5\n"));
        m_iAnswer = MsgButtonYes;
        QTest::mouseClick(window->RestoreButton(), Qt::LeftButton);
        QTRY_COMPARE_WITH_TIMEOUT(Read(MachineFile(QStringLiteral("part.nc"))),
                                  QByteArray("N10 G0 X0\nN20 G1 X1\nM30\n"), 15000);
    }

    void programThatCannotBeFetchedIsNotReplaced()
    {
        StartSimulator(QStringList{"--ftp-refuse", "RETR:locked.nc"});
        const QByteArray machine = RandomBytes(1500);
        Write(MachineFile(QStringLiteral("locked.nc")), machine);
        Write(LocalFile(QStringLiteral("locked.nc")), RandomBytes(900));
        ConnectWorkspace();
        FileManager* manager = m_workspace->GetFileManager();
        Select(manager->LocalPanel(), QStringLiteral("locked.nc"));
        QTest::mouseClick(manager->UploadButton(), Qt::LeftButton);
        const auto refusals = [this] {
            return std::count_if(m_listBoxes.cbegin(), m_listBoxes.cend(), [](const StructMsgBoxRequest& box) {
                return box.strText.contains(QStringLiteral("无法从机床取回/locked.nc的当前版本"));
            });
        };
        QTRY_COMPARE_WITH_TIMEOUT(refusals(), 1, 15000);
        QTRY_VERIFY_WITH_TIMEOUT(Idle(), 10000);
        // A delete is refused the same way.
        m_workspace->FileService()->Delete(Endpoint(), {QStringLiteral("/locked.nc")}, {}, RequestOrigin::FilePage);
        QTRY_COMPARE_WITH_TIMEOUT(refusals(), 2, 15000);
        QTRY_VERIFY_WITH_TIMEOUT(Idle(), 10000);
        QCOMPARE(Read(MachineFile(QStringLiteral("locked.nc"))), machine);
        QVERIFY(Store()->Programs().isEmpty());
    }
};

QTEST_MAIN(TestProgramHistory)
#include "tst_ProgramHistory.moc"
