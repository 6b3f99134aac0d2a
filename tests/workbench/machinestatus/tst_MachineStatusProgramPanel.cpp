#include "CVarnokMessageBox.h"
#include "MachineFileService.h"
#include "SimWorkspaceFixture.h"
#include "machinestatus/MachineStatusFileActionWidget.h"
#include "machinestatus/MachineStatusFileDelegate.h"
#include "machinestatus/MachineStatusFtpManager.h"
#include "machinestatus/MachineStatusProgramPanel.h"

#include <QDir>
#include <QSignalSpy>
#include <QStandardItemModel>
#include <QTest>
#include <QTreeView>
#include <memory>

namespace {
FtpFileInfo Entry(const QString& name, const QString& type)
{
    FtpFileInfo info;
    info.name = name;
    info.type = type;
    return info;
}

QStringList Names(const QStandardItem* parent)
{
    QStringList names;
    for (int row = 0; row < parent->rowCount(); ++row)
        names << parent->child(row)->text();
    return names;
}
} // namespace

// The program panel's texts and file tree, and its FTP broker against the simulator's FTP server.
class TestMachineStatusProgramPanel : public QObject, public SimWorkspaceFixture
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void programLinesHighlight_data();
    void programLinesHighlight();
    void fileTreeFromListings();
    void renameAndLoadRefusals();
    void brokerNormalisesAndSharesListings();
    void brokerDeletesOneAtATime();
    void panelRenamesAndDeletesOnTheMachine();
};

void TestMachineStatusProgramPanel::initTestCase()
{
    SetUpFixture();
    QDir root(m_rootDir.path());
    QVERIFY(root.mkpath(QStringLiteral("a/b/c")));
    QVERIFY(root.mkpath(QStringLiteral("x/prog")));
    QVERIFY(root.mkpath(QStringLiteral("empty")));
    for (const QString& name : {QStringLiteral("a/b/one.nc"), QStringLiteral("prog.nc"), QStringLiteral("notes.txt")})
        Write(MachineFile(name), "G0 X0\n");
    StartSimulator(DefaultSimOptions());
}

void TestMachineStatusProgramPanel::init()
{
    m_listBoxes.clear();
}

void TestMachineStatusProgramPanel::programLinesHighlight_data()
{
    QTest::addColumn<int>("curLine");
    QTest::addColumn<int>("highlighted");
    QTest::newRow("inside") << 11 << 2;
    QTest::newRow("first") << 9 << 0;
    QTest::newRow("before the window") << 8 << -1;
    QTest::newRow("after the window") << 12 << -1;
}

void TestMachineStatusProgramPanel::programLinesHighlight()
{
    QFETCH(int, curLine);
    QFETCH(int, highlighted);
    MachineStatusProgramPanel panel;
    panel.SetCurrentLines({9, 11, {QStringLiteral("G0 X0"), QStringLiteral("G1 X5"), QStringLiteral("G1 Y5")}},
                          curLine);
    QStandardItemModel* model = panel.ProgramModel();
    QCOMPARE(model->rowCount(), 3);
    QCOMPARE(model->item(0, 0)->text(), QStringLiteral("00009"));
    QCOMPARE(panel.HighlightedRow(), highlighted);
    panel.SetCurrentLines({}, curLine);
    QCOMPARE(model->rowCount(), 0);
}

void TestMachineStatusProgramPanel::fileTreeFromListings()
{
    MachineStatusProgramPanel panel;
    QStandardItem* root = panel.FileModel()->invisibleRootItem();
    QCOMPARE(Names(root), QStringList{QStringLiteral("加载中")});
    panel.SlotOnListResult(QStringLiteral("/"), true,
                           {Entry("z.nc", "file"), Entry("sub", "dir"), Entry("odd", "Dir"), Entry("b", "dir")});
    // Folders first in listing order, then files; "Dir" is not a folder.
    QCOMPARE(Names(root), QStringList({"sub", "b", "z.nc", "odd"}));
    QCOMPARE(Names(root->child(0)), QStringList{QStringLiteral("加载中...")});
    QCOMPARE(root->child(0)->data(MachineStatusProgramPanel::RolePath).toString(), QStringLiteral("/sub"));
    panel.SlotOnListResult(QStringLiteral("/sub"), true, {});
    QCOMPARE(Names(root->child(0)), QStringList{QStringLiteral("无文件")});
    // Collapsed, the folder is listed afresh on the next expand.
    panel.SlotTreeCollapsed(root->child(0)->index());
    QCOMPARE(Names(root->child(0)), QStringList{QStringLiteral("加载中...")});
    // Folder rows have no "设为加工程序".
    auto* tree = panel.findChild<QTreeView*>(QStringLiteral("treeViewFiles"));
    auto* folderActions = qobject_cast<MachineStatusFileActionWidget*>(tree->indexWidget(root->child(0, 2)->index()));
    auto* fileActions = qobject_cast<MachineStatusFileActionWidget*>(tree->indexWidget(root->child(2, 2)->index()));
    QVERIFY(folderActions && fileActions);
    QVERIFY(!folderActions->LoadButton());
    QVERIFY(fileActions->LoadButton());
}

void TestMachineStatusProgramPanel::renameAndLoadRefusals()
{
    MachineStatusProgramPanel panel;
    panel.SlotOnListResult(QStringLiteral("/"), true,
                           {Entry("prog.nc", "file"), Entry("other.nc", "file"), Entry("notes.txt", "file")});
    QStandardItem* root = panel.FileModel()->invisibleRootItem();
    QSignalSpy renamed(panel.FtpManager(), &MachineStatusFtpManager::SignalRenameResult);
    emit panel.FileDelegate()->signalRenameCommit(QPersistentModelIndex(root->child(1)->index()), "other.nc",
                                                  "PROG.NC");
    QTRY_COMPARE(m_listBoxes.size(), 1);
    QCOMPARE(m_listBoxes.first().strText, QStringLiteral("同级目录下已存在相同名称的条目！"));
    QCOMPARE(renamed.count(), 0);

    QSignalSpy load(&panel, &MachineStatusProgramPanel::SignalLoadProgramRequested);
    panel.SlotActionLoadProgram(QPersistentModelIndex(root->child(2)->index()));
    QTRY_COMPARE(m_listBoxes.size(), 2);
    QVERIFY(m_listBoxes.last().strText.contains(QStringLiteral("notes.txt")));
    panel.SlotActionLoadProgram(QPersistentModelIndex(root->child(0)->index()));
    QCOMPARE(load.count(), 1);
    QCOMPARE(load.first().first().toString(), QStringLiteral("/prog.nc"));
}

void TestMachineStatusProgramPanel::brokerNormalisesAndSharesListings()
{
    MachineStatusFtpManager broker;
    QSignalSpy results(&broker, &MachineStatusFtpManager::SignalListResult);
    broker.RequestList(QStringLiteral("/a/b"));
    QCOMPARE(broker.ListingsInFlight(), 0); // no machine yet
    broker.SetIp(QStringLiteral("127.0.0.1"));
    broker.RequestList(QStringLiteral("/a/b///"));
    broker.RequestList(QStringLiteral("/a/b"));
    broker.RequestList(QStringLiteral("/"));
    QCOMPARE(broker.ListingsInFlight(), 2);
    QTRY_COMPARE_WITH_TIMEOUT(results.count(), 2, 10000);
    QMap<QString, QStringList> listed;
    for (const QList<QVariant>& result : std::as_const(results)) {
        QVERIFY(result.at(1).toBool());
        QStringList names;
        for (const FtpFileInfo& item : result.at(2).value<QList<FtpFileInfo>>())
            names << item.name;
        names.sort();
        listed.insert(result.at(0).toString(), names);
    }
    QCOMPARE(listed.value(QStringLiteral("/a/b")), QStringList({"c", "one.nc"}));
    QVERIFY(listed.value(QStringLiteral("/")).contains(QStringLiteral("prog.nc")));

    g_bTranslating = true;
    broker.RequestList(QStringLiteral("/a"));
    g_bTranslating = false;
    QCOMPARE(broker.ListingsInFlight(), 0);
}

void TestMachineStatusProgramPanel::brokerDeletesOneAtATime()
{
    QFile victim(MachineFile(QStringLiteral("victim.nc")));
    QVERIFY(victim.open(QIODevice::WriteOnly));
    victim.close();
    MachineFileService files;
    MachineStatusFtpManager broker;
    QSignalSpy results(&broker, &MachineStatusFtpManager::SignalDeleteResult);
    broker.RequestDelete({QStringLiteral("/victim.nc")}, {});
    QCOMPARE(results.count(), 1); // no machine
    files.SetEndpoint(MachineEndpoint::For(QStringLiteral("127.0.0.1"), QStringLiteral("PB01SIM0001")));
    broker.SetFileService(&files);
    broker.SetIp(QStringLiteral("127.0.0.1"));
    broker.RequestDelete({QStringLiteral("/victim.nc")}, {});
    broker.RequestDelete({QStringLiteral("/x/one.nc")}, {});
    QTRY_COMPARE_WITH_TIMEOUT(results.count(), 3, 10000);
    QVERIFY(!results.at(1).at(0).toBool()); // one delete at a time
    QVERIFY(results.at(2).at(0).toBool());
    QVERIFY(!victim.exists());
}

void TestMachineStatusProgramPanel::panelRenamesAndDeletesOnTheMachine()
{
    MachineFileService files;
    files.SetEndpoint(MachineEndpoint::For(QStringLiteral("127.0.0.1"), QStringLiteral("PB01SIM0001")));
    MachineStatusProgramPanel panel;
    panel.FtpManager()->SetFileService(&files);
    QStandardItem* root = panel.FileModel()->invisibleRootItem();
    panel.SetMachineIp(QStringLiteral("127.0.0.1"));
    QTRY_VERIFY_WITH_TIMEOUT(Names(root).contains(QStringLiteral("notes.txt")), 10000);

    const int row = int(Names(root).indexOf(QStringLiteral("notes.txt")));
    panel.SlotRenameCommit(QPersistentModelIndex(root->child(row)->index()), "notes.txt", "readme.txt");
    QTRY_VERIFY_WITH_TIMEOUT(Names(root).contains(QStringLiteral("readme.txt")), 10000);
    QVERIFY(QFile::exists(MachineFile(QStringLiteral("readme.txt"))));

    const int emptyRow = int(Names(root).indexOf(QStringLiteral("empty")));
    panel.SlotActionDelete(QPersistentModelIndex(root->child(emptyRow)->index()));
    QTRY_COMPARE(m_listBoxes.size(), 1);
    QTRY_VERIFY_WITH_TIMEOUT(!Names(root).contains(QStringLiteral("empty")), 10000);
    QVERIFY(!QDir(MachineFile(QStringLiteral("empty"))).exists());

    panel.SetMachineIp(QString());
    QCOMPARE(Names(root), QStringList{QStringLiteral("加载中")});
}

QTEST_MAIN(TestMachineStatusProgramPanel)
#include "tst_MachineStatusProgramPanel.moc"
