#include "FilePageWidget.h"

#include "CamBaseTextHelper.h"
#include "filepanel/FileManager.h"
#include "filepanel/FileSelectPanel.h"

#include <QFileInfo>
#include <QSplitter>
#include <QVBoxLayout>

namespace {
constexpr char SizesKey[] = "FilePage/SplitterSizes";
constexpr char LocalFolderKey[] = "FilePage/LocalFolder";

QString Setting(const char* key)
{
    return CamBaseTextHelper::instance()
        ->GetLocalSettingCache(CamBaseTextHelper::SettingTypeLocal, QString::fromLatin1(key), QString())
        .toString();
}

void Save(const char* key, const QString& value)
{
    CamBaseTextHelper::instance()->SetLocalSettingCache(CamBaseTextHelper::SettingTypeLocal, QString::fromLatin1(key),
                                                        value, false);
}
} // namespace

FilePageWidget::FilePageWidget(QWidget* parent)
    : QWidget(parent), m_pFileManager(new FileManager), m_pSplitter(new QSplitter(Qt::Vertical))
{
    setObjectName(QStringLiteral("m_widgetFileTransferPage"));
    m_pSplitter->setObjectName(QStringLiteral("m_splitterFilePage"));
    m_pSplitter->setChildrenCollapsible(false);
    m_pSplitter->setHandleWidth(4);
    m_pSplitter->addWidget(m_pFileManager);
    connect(m_pSplitter, &QSplitter::splitterMoved, this, [this]() {
        QStringList sizes;
        for (const int size : m_pSplitter->sizes())
            sizes.append(QString::number(size));
        Save(SizesKey, sizes.join(QLatin1Char(',')));
    });
    FileSelectPanel* local = m_pFileManager->LocalPanel();
    const QString lastFolder = Setting(LocalFolderKey);
    if (!lastFolder.isEmpty() && QFileInfo(lastFolder).isDir())
        local->OpenFolder(lastFolder);
    connect(local, &FileSelectPanel::SignalListingFinished, this, [](const QString& path, bool ok) {
        if (ok && !path.isEmpty()) // empty: the computer view
            Save(LocalFolderKey, path);
    });
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_pSplitter);
}

void FilePageWidget::TakeTransferStrip(QWidget* strip)
{
    if (strip->parentWidget() == m_pSplitter)
        return;
    m_pSplitter->addWidget(strip);
    const QStringList saved = Setting(SizesKey).split(QLatin1Char(','));
    QList<int> sizes = {640, 300};
    if (saved.size() == 2 && saved.at(0).toInt() > 0 && saved.at(1).toInt() > 0)
        sizes = {saved.at(0).toInt(), saved.at(1).toInt()};
    m_pSplitter->setSizes(sizes);
}
