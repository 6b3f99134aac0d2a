#include "ProgramHistoryDialog.h"

#include "CVarnokMessageBox.h"
#include "HistorySettings.h"
#include "HistoryStore.h"
#include "MachineCopyCompare.h"
#include "ProgramCompareDialog.h"
#include "ProgramHistory.h"
#include "filepanel/FileSizeText.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QSplitter>
#include <QTemporaryDir>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>

namespace {
constexpr int PathRole = Qt::UserRole;
constexpr int IndexRole = Qt::UserRole + 1;

QString TimeText(const QDateTime& time)
{
    return time.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
}

// Versions are numbered from the oldest kept one, so that two saved in the same second differ.
QString Title(int number, const HistoryVersion& version)
{
    return ProgramHistoryDialog::tr("版本 %1（%2）").arg(number).arg(TimeText(version.time));
}
} // namespace

ProgramHistoryDialog::ProgramHistoryDialog(ProgramHistory* history, MachineFileService* files,
                                           const MachineEndpoint& endpoint, const QString& machinePath, QWidget* parent)
    : QDialog(parent), m_pHistory(history), m_pFiles(files), m_endpoint(endpoint), m_pError(new QLabel(this)),
      m_pPrograms(new QTreeWidget(this)), m_pVersions(new QTreeWidget(this)),
      m_pCompare(new QPushButton(tr("比较所选版本"), this)),
      m_pCompareMachine(new QPushButton(tr("与机床当前版本比较"), this)),
      m_pRestore(new QPushButton(tr("恢复此版本"), this))
{
    setObjectName(QStringLiteral("ProgramHistoryDialog"));
    setWindowTitle(tr("历史版本"));
    resize(900, 520);
    m_pError->setStyleSheet(QStringLiteral("color:rgb(220,50,50);"));
    m_pError->setWordWrap(true);
    m_pError->hide();
    m_pPrograms->setRootIsDecorated(false);
    m_pPrograms->setHeaderLabels({tr("程序"), tr("状态")});
    m_pPrograms->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    m_pVersions->setRootIsDecorated(false);
    m_pVersions->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_pVersions->setHeaderLabels({tr("版本"), tr("保存时间"), tr("大小"), tr("替换原因")});
    m_pVersions->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_pVersions->header()->setSectionResizeMode(ColumnCause, QHeaderView::Stretch);
    auto* splitter = new QSplitter(this);
    splitter->addWidget(m_pPrograms);
    splitter->addWidget(m_pVersions);
    splitter->setSizes({300, 600});
    // The per-machine switch sits where the history is seen, so that turning it off is a choice made in view of it.
    auto* enabled = new QCheckBox(tr("替换或删除前保留此机床程序的历史版本"), this);
    enabled->setChecked(HistorySettings::Load(endpoint.strSn).bEnabled);
    connect(enabled, &QCheckBox::toggled, this,
            [sn = endpoint.strSn](bool checked) { HistorySettings::SetEnabled(sn, checked); });
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(m_pCompare);
    buttons->addWidget(m_pCompareMachine);
    buttons->addWidget(m_pRestore);
    buttons->addStretch();
    auto* close = new QDialogButtonBox(QDialogButtonBox::Close, this);
    close->button(QDialogButtonBox::Close)->setText(tr("关闭"));
    buttons->addWidget(close);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_pError);
    layout->addWidget(splitter);
    layout->addWidget(enabled);
    layout->addLayout(buttons);
    connect(close, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_pPrograms, &QTreeWidget::currentItemChanged, this, &ProgramHistoryDialog::ListVersions);
    connect(m_pVersions, &QTreeWidget::itemSelectionChanged, this, &ProgramHistoryDialog::UpdateButtons);
    connect(m_pCompare, &QPushButton::clicked, this, &ProgramHistoryDialog::CompareSelected);
    connect(m_pCompareMachine, &QPushButton::clicked, this, &ProgramHistoryDialog::CompareWithMachine);
    connect(m_pRestore, &QPushButton::clicked, this, &ProgramHistoryDialog::RestoreSelected);
    // A restore or any other replacement adds a version: the lists follow.
    connect(history, &ProgramHistory::SignalChanged, this, [this](const QString& sn) {
        if (sn == m_endpoint.strSn) {
            const QTreeWidgetItem* current = m_pPrograms->currentItem();
            ListPrograms(current ? current->data(0, PathRole).toString() : QString());
        }
    });
    ListPrograms(machinePath);
}

void ProgramHistoryDialog::ListPrograms(const QString& current)
{
    QString error;
    HistoryStore* store = m_pHistory->Store(m_endpoint.strSn, &error);
    m_pError->setText(error);
    m_pError->setVisible(!store);
    m_pPrograms->clear();
    if (!store) {
        ListVersions();
        return;
    }
    QTreeWidgetItem* chosen = nullptr;
    for (const HistoryVersion& newest : store->Programs()) {
        auto* item =
            new QTreeWidgetItem(m_pPrograms, {newest.strMachinePath,
                                              newest.eCause == HistoryCause::Deleted ? tr("已从机床删除") : QString()});
        item->setData(0, PathRole, newest.strMachinePath);
        if (newest.strMachinePath == current || !chosen)
            chosen = item;
    }
    m_pPrograms->setCurrentItem(chosen);
    ListVersions();
}

void ProgramHistoryDialog::ListVersions()
{
    m_pVersions->clear();
    const QTreeWidgetItem* program = m_pPrograms->currentItem();
    HistoryStore* store = m_pHistory->Store(m_endpoint.strSn);
    m_listVersions =
        program && store ? store->Versions(program->data(0, PathRole).toString()) : QList<HistoryVersion>();
    for (int i = 0; i < m_listVersions.size(); ++i) {
        const HistoryVersion& version = m_listVersions.at(i);
        QString cause = tr("已删除");
        if (version.eCause == HistoryCause::Replaced)
            cause = tr("被 %1 覆盖").arg(version.strBy);
        else if (version.eCause == HistoryCause::RenamedOver)
            cause = tr("被 %1 重命名覆盖").arg(version.strBy);
        auto* item =
            new QTreeWidgetItem(m_pVersions, {QString::number(m_listVersions.size() - i), TimeText(version.time),
                                              FileSizeText::Format(version.nSize), cause});
        item->setData(0, IndexRole, i);
    }
    if (m_pVersions->topLevelItemCount() > 0)
        m_pVersions->setCurrentItem(m_pVersions->topLevelItem(0));
    UpdateButtons();
}

QList<HistoryVersion> ProgramHistoryDialog::SelectedVersions() const
{
    QList<HistoryVersion> versions;
    for (const QTreeWidgetItem* item : m_pVersions->selectedItems())
        versions.append(m_listVersions.at(item->data(0, IndexRole).toInt()));
    // Older on the left.
    std::sort(versions.begin(), versions.end(),
              [](const HistoryVersion& a, const HistoryVersion& b) { return a.nId < b.nId; });
    return versions;
}

int ProgramHistoryDialog::Number(const HistoryVersion& version) const
{
    for (int i = 0; i < m_listVersions.size(); ++i) {
        if (m_listVersions.at(i).nId == version.nId)
            return int(m_listVersions.size()) - i;
    }
    return 0;
}

void ProgramHistoryDialog::UpdateButtons()
{
    const qsizetype count = m_pVersions->selectedItems().size();
    m_pCompare->setEnabled(count == 2);
    m_pCompareMachine->setEnabled(count == 1 && m_endpoint.IsValid());
    m_pRestore->setEnabled(count == 1 && m_endpoint.IsValid());
}

void ProgramHistoryDialog::CompareSelected()
{
    const QList<HistoryVersion> versions = SelectedVersions();
    if (versions.size() != 2)
        return;
    auto folder = std::make_shared<QTemporaryDir>();
    QStringList paths;
    QStringList titles;
    for (const HistoryVersion& version : versions) {
        paths.append(folder->filePath(version.strHash));
        titles.append(Title(Number(version), version));
        m_pHistory->Export(m_endpoint.strSn, version, paths.last());
    }
    auto* dialog = new ProgramCompareDialog(titles.at(0), paths.at(0), titles.at(1), paths.at(1), this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    // The exported copies are read off the window's thread: they go with the dialog.
    connect(dialog, &QObject::destroyed, [folder]() {});
    dialog->open();
}

void ProgramHistoryDialog::CompareWithMachine()
{
    const QList<HistoryVersion> versions = SelectedVersions();
    if (versions.size() != 1)
        return;
    auto folder = std::make_shared<QTemporaryDir>();
    const QString path = folder->filePath(versions.first().strHash);
    m_pHistory->Export(m_endpoint.strSn, versions.first(), path);
    MachineCopyCompare::Open(this, m_pFiles, m_endpoint, Title(Number(versions.first()), versions.first()), path,
                             versions.first().strMachinePath, [folder]() {});
}

void ProgramHistoryDialog::RestoreSelected()
{
    const QList<HistoryVersion> versions = SelectedVersions();
    if (versions.size() != 1)
        return;
    const HistoryVersion version = versions.first();
    // The machine's program is kept before it is replaced, but the machine runs another one
    // afterwards: a click alone does not do that.
    const QString question = tr("用%1替换机床上的%2？机床当前的程序会先保留为历史版本。")
                                 .arg(Title(Number(version), version), version.strMachinePath);
    CVarnokMessageBox::Open(this, MsgButtonConfirm | MsgButtonCancel, MsgIconWarning, tr("提示"), question, {},
                            [guard = QPointer<ProgramHistoryDialog>(this), version](int answer) {
                                if (guard && answer == MsgButtonConfirm)
                                    guard->m_pHistory->Restore(guard->m_endpoint, version);
                            });
}
