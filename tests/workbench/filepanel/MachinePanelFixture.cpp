#include "MachinePanelFixture.h"

#include "CamBaseTextHelper.h"
#include "KorvBaseGlobals.h"
#include "filepanel/FileItemRoles.h"
#include "filepanel/FileSelectPanel.h"
#include "filepanel/FileTreeView.h"

#include <QFile>
#include <QSignalSpy>

bool MachinePanelFixture::Start(const QString& root, QString* error)
{
    SimOptions options;
    options.rootDir = root;
    options.ftpPort = options.infoPort = options.snPort = options.discoveryPort = 0;
    m_pSimulator = std::make_unique<CncSimulator>(options);
    if (!m_pSimulator->Start(error)) {
        return false;
    }
    // The tasks address the machine on port 21; the mapping sends them to the simulator.
    CamBaseTextHelper::instance()->SetLocalSettingCache(CamBaseTextHelper::SettingTypeLocal,
                                                        QString::fromLatin1(g_strSettingFtpPortMapping),
                                                        m_pSimulator->FtpPort(), true);
    return true;
}

void MachinePanelFixture::Stop()
{
    m_pSimulator.reset();
}

bool MachinePanelFixture::WaitForListing(FileSelectPanel& panel, const std::function<void()>& action, bool* ok)
{
    QSignalSpy spy(&panel, &FileSelectPanel::SignalListingFinished);
    action();
    // The simulator serves on this thread, so the wait must keep the event loop turning.
    if (spy.isEmpty() && !spy.wait(20000)) {
        return false;
    }
    if (ok) {
        *ok = spy.last().at(1).toBool();
    }
    return true;
}

QStringList MachinePanelFixture::ShownNames(const FileSelectPanel& panel)
{
    QStringList names;
    const QAbstractItemModel* model = panel.TreeView()->model();
    for (int row = 0; row < model->rowCount(); ++row) {
        names << model->index(row, 0).data(FileItemRole::Name).toString();
    }
    return names;
}

QModelIndex MachinePanelFixture::RowNamed(const FileSelectPanel& panel, const QString& name)
{
    const QAbstractItemModel* model = panel.TreeView()->model();
    for (int row = 0; row < model->rowCount(); ++row) {
        if (model->index(row, 0).data(FileItemRole::Name).toString() == name) {
            return model->index(row, 0);
        }
    }
    return QModelIndex();
}

void MachinePanelFixture::WriteFile(const QString& path, int bytes)
{
    QFile file(path);
    if (file.open(QIODevice::WriteOnly)) {
        file.write(QByteArray(bytes, 'x'));
    }
}
