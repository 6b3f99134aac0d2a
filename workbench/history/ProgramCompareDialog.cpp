#include "ProgramCompareDialog.h"

#include "WorkPool.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFile>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>
#include <QtConcurrent>

namespace {
QStringList ReadLines(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QString text = QString::fromUtf8(file.readAll());
    if (text.endsWith(QLatin1Char('\n')))
        text.chop(1);
    return text.isEmpty() ? QStringList() : text.split(QLatin1Char('\n'));
}

// On the work pool, with copies only: the dialog may close before it ends. Paths are given the
// first time, when the lines are still to be read.
ProgramComparison CompareOffThread(ProgramComparison comparison, const QString& leftPath, const QString& rightPath,
                                   const GcodeDiffOptions& options)
{
    if (!leftPath.isEmpty()) {
        comparison.listLeft = ReadLines(leftPath);
        comparison.listRight = ReadLines(rightPath);
    }
    comparison.listRows = GcodeDiff::Compare(comparison.listLeft, comparison.listRight, options);
    comparison.iChanged = GcodeDiff::ChangedCount(comparison.listRows);
    return comparison;
}
} // namespace

ProgramCompareDialog::ProgramCompareDialog(const QString& leftTitle, const QString& leftPath, const QString& rightTitle,
                                           const QString& rightPath, QWidget* parent)
    : QDialog(parent), m_strLeftPath(leftPath), m_strRightPath(rightPath),
      m_pIgnoreSpace(new QCheckBox(tr("忽略空白"), this)), m_pIgnoreComments(new QCheckBox(tr("忽略注释"), this)),
      m_pIgnoreNumbers(new QCheckBox(tr("忽略程序段号"), this)), m_pSummary(new QLabel(this)),
      m_pModel(new ProgramCompareModel(leftTitle, rightTitle, this)), m_pTable(new QTableView(this))
{
    setObjectName(QStringLiteral("ProgramCompareDialog"));
    setWindowTitle(tr("比较"));
    resize(1000, 600);
    auto* options = new QHBoxLayout;
    for (QCheckBox* box : {m_pIgnoreSpace, m_pIgnoreComments, m_pIgnoreNumbers}) {
        options->addWidget(box);
        connect(box, &QCheckBox::stateChanged, this, &ProgramCompareDialog::Compare);
    }
    options->addStretch();
    options->addWidget(m_pSummary);
    m_pTable->setModel(m_pModel);
    m_pTable->verticalHeader()->hide();
    m_pTable->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_pTable->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    m_pTable->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_pTable->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_pTable->setShowGrid(false);
    m_pTable->setWordWrap(false);
    m_pTable->horizontalHeader()->setSectionResizeMode(ProgramCompareModel::ColumnLeftText, QHeaderView::Stretch);
    m_pTable->horizontalHeader()->setSectionResizeMode(ProgramCompareModel::ColumnRightText, QHeaderView::Stretch);
    m_pTable->setStyleSheet(QStringLiteral("QTableView{font-family:monospace;}"));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    buttons->button(QDialogButtonBox::Close)->setText(tr("关闭"));
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(options);
    layout->addWidget(m_pTable);
    layout->addWidget(buttons);
    connect(&m_watcher, &QFutureWatcher<ProgramComparison>::finished, this, &ProgramCompareDialog::ShowComparison);
    Compare();
}

GcodeDiffOptions ProgramCompareDialog::Options() const
{
    return {m_pIgnoreSpace->isChecked(), m_pIgnoreComments->isChecked(), m_pIgnoreNumbers->isChecked()};
}

void ProgramCompareDialog::SetOptions(const GcodeDiffOptions& options)
{
    const QSignalBlocker space(m_pIgnoreSpace);
    const QSignalBlocker comments(m_pIgnoreComments);
    const QSignalBlocker numbers(m_pIgnoreNumbers);
    m_pIgnoreSpace->setChecked(options.bIgnoreWhiteSpace);
    m_pIgnoreComments->setChecked(options.bIgnoreComments);
    m_pIgnoreNumbers->setChecked(options.bIgnoreBlockNumbers);
    Compare();
}

void ProgramCompareDialog::Compare()
{
    if (m_bComparing) {
        m_bCompareAgain = true;
        return;
    }
    m_bComparing = true;
    m_pSummary->setText(tr("正在比较…"));
    m_watcher.setFuture(QtConcurrent::run(WorkPool::Instance(), CompareOffThread, m_pModel->Comparison(),
                                          m_bRead ? QString() : m_strLeftPath, m_bRead ? QString() : m_strRightPath,
                                          Options()));
}

void ProgramCompareDialog::ShowComparison()
{
    m_bRead = true;
    m_bComparing = false;
    m_pModel->SetComparison(m_watcher.result());
    if (m_bCompareAgain) {
        m_bCompareAgain = false;
        Compare();
        return;
    }
    const int changed = ChangedCount();
    m_pSummary->setText(changed == 0 ? tr("内容相同") : tr("%1 行不同").arg(changed));
    m_pTable->resizeColumnToContents(ProgramCompareModel::ColumnLeftLine);
    m_pTable->resizeColumnToContents(ProgramCompareModel::ColumnRightLine);
}
