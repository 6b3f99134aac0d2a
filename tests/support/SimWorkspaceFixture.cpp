#include "SimWorkspaceFixture.h"

#include "CamBaseTextHelper.h"
#include "KorvBaseGlobals.h"
#include "MachinePortMap.h"
#include "filepanel/FileItemRoles.h"
#include "filepanel/FileManager.h"
#include "filepanel/FileSelectPanel.h"
#include "filepanel/FileTreeView.h"

#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTest>

QByteArray SimWorkspaceFixture::RandomBytes(int size)
{
    QByteArray bytes(size, '\0');
    for (char& byte : bytes)
        byte = char(QRandomGenerator::global()->bounded(256));
    return bytes;
}

void SimWorkspaceFixture::Write(const QString& path, const QByteArray& bytes)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

QByteArray SimWorkspaceFixture::Read(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool SimWorkspaceFixture::WaitForListing(FileSelectPanel& panel, const std::function<void()>& action, bool* ok)
{
    QSignalSpy spy(&panel, &FileSelectPanel::SignalListingFinished);
    action();
    // The simulator serves on this thread, so the wait must keep the event loop turning.
    if (spy.isEmpty() && !spy.wait(20000))
        return false;
    if (ok)
        *ok = spy.last().at(1).toBool();
    return true;
}

QStringList SimWorkspaceFixture::PanelNames(const FileSelectPanel& panel)
{
    QStringList names;
    const QAbstractItemModel* model = panel.TreeView()->model();
    for (int row = 0; row < model->rowCount(); ++row)
        names.append(model->index(row, 0).data(FileItemRole::Name).toString());
    return names;
}

QModelIndex SimWorkspaceFixture::PanelRow(const FileSelectPanel& panel, const QString& name)
{
    const int row = PanelNames(panel).indexOf(name);
    return row < 0 ? QModelIndex() : panel.TreeView()->model()->index(row, 0);
}

void SimWorkspaceFixture::SetUpFixture()
{
    qputenv("KORV_CONFIG_DIR", m_configDir.path().toUtf8());
    CVarnokMessageBox::SetTestResponder([this](const StructMsgBoxRequest& request) {
        m_listBoxes.append(request);
        const bool answerable = request.iButtons & (MsgButtonYes | m_iAnswer);
        return StructMsgBoxAnswer{answerable ? m_iAnswer : MsgButtonConfirm, m_bTickBoxes};
    });
    CamBaseTextHelper::instance()->SetLocalSettingCache(
        CamBaseTextHelper::SettingTypeLocal, QString::fromLatin1(g_strSettingFtpConnectTimeoutMs), 2000, true);
}

void SimWorkspaceFixture::ResetFixture()
{
    m_listBoxes.clear();
    m_iAnswer = MsgButtonYes;
    m_bTickBoxes = false;
    for (const QString& root : {m_rootDir.path(), m_localDir.path()}) {
        QDir dir(root);
        for (const QString& name : dir.entryList(QDir::Files | QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot))
            QFileInfo(dir.filePath(name)).isDir() ? QDir(dir.filePath(name)).removeRecursively() : dir.remove(name);
    }
}

void SimWorkspaceFixture::TearDownFixture()
{
    m_workspace.reset();
    m_sim.reset();
}

SimOptions SimWorkspaceFixture::DefaultSimOptions() const
{
    SimOptions options;
    options.rootDir = m_rootDir.path();
    options.ftpPort = options.infoPort = options.snPort = options.discoveryPort = 0;
    options.serialNumber = QString::fromLatin1(kSn);
    return options;
}

void SimWorkspaceFixture::StartSimulator(const SimOptions& options)
{
    m_sim = std::make_unique<CncSimulator>(options);
    QString error;
    QVERIFY2(m_sim->Start(&error), qPrintable(error));
    CamBaseTextHelper::instance()->SetLocalSettingCache(
        CamBaseTextHelper::SettingTypeLocal, QString::fromLatin1(g_strSettingFtpPortMapping), m_sim->FtpPort(), true);
    MachinePortMap::Set(30001, m_sim->InfoPort());
    MachinePortMap::Set(5002, m_sim->SnPort());
    MachinePortMap::Set(30002, m_sim->DiscoveryPort());
}

void SimWorkspaceFixture::CopyDemoPrograms()
{
    const QDir demo(qEnvironmentVariable("KORV_SOURCE_DIR") + QStringLiteral("/simulator/demo"));
    for (const QString& name : demo.entryList(QDir::Files))
        QVERIFY(QFile::copy(demo.filePath(name), MachineFile(name)));
}

void SimWorkspaceFixture::StartSimulator(const QStringList& switches)
{
    SimOptions options;
    QString error;
    QVERIFY2(SimOptions::Parse(QStringList{"cnc-sim", "--root", m_rootDir.path(), "--ftp-port", "0", "--info-port", "0",
                                           "--sn-port", "0", "--discovery-port", "0", "--sn", kSn} +
                                   switches,
                               &options, &error),
             qPrintable(error));
    StartSimulator(options);
}

void SimWorkspaceFixture::ShowWorkspace()
{
    m_workspace = std::make_unique<Workspace>();
    if (m_iCheckIntervalMs > 0)
        m_workspace->SetCheckInterval(m_iCheckIntervalMs);
    m_workspace->resize(1400, 900);
    m_workspace->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_workspace.get()));
    m_workspace->GetFileManager()->LocalPanel()->OpenFolder(m_localDir.path());
}

void SimWorkspaceFixture::ConnectWorkspace()
{
    ShowWorkspace();
    if (QTest::currentTestFailed())
        return;
    FileManager* manager = m_workspace->GetFileManager();
    m_workspace->ConnectToMachine(QString::fromLatin1(kIp), QString::fromLatin1(kSn));
    QTRY_VERIFY_WITH_TIMEOUT(manager->IsConnected(), 10000);
    QTRY_COMPARE_WITH_TIMEOUT(manager->MachinePanel()->CurrentPath(), QStringLiteral("/"), 10000);
    QTRY_VERIFY_WITH_TIMEOUT(!MachineNames().contains(QStringLiteral("加载中...")), 10000);
}

QStringList SimWorkspaceFixture::MachineNames() const
{
    return PanelNames(*m_workspace->GetFileManager()->MachinePanel());
}
