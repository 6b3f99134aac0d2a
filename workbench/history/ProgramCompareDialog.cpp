#include "ProgramCompareDialog.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFile>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

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

QColor RowColour(GcodeDiffRow::Kind kind)
{
    switch (kind) {
    case GcodeDiffRow::Changed:
        return QColor(255, 236, 179);
    case GcodeDiffRow::LeftOnly:
        return QColor(255, 214, 214);
    case GcodeDiffRow::RightOnly:
        return QColor(214, 245, 214);
    default:
        return QColor();
    }
}
} // namespace

ProgramCompareDialog::ProgramCompareDialog(const QString& leftTitle, const QString& leftPath, const QString& rightTitle,
                                           const QString& rightPath, QWidget* parent)
    : QDialog(parent), m_listLeft(ReadLines(leftPath)), m_listRight(ReadLines(rightPath)),
      m_pIgnoreSpace(new QCheckBox(tr("忽略空白"), this)), m_pIgnoreComments(new QCheckBox(tr("忽略注释"), this)),
      m_pIgnoreNumbers(new QCheckBox(tr("忽略程序段号"), this)), m_pSummary(new QLabel(this)),
      m_pTable(new QTableWidget(this))
{
    setObjectName(QStringLiteral("ProgramCompareDialog"));
    setWindowTitle(tr("比较"));
    resize(1000, 600);
    auto* options = new QHBoxLayout;
    for (QCheckBox* box : {m_pIgnoreSpace, m_pIgnoreComments, m_pIgnoreNumbers}) {
        options->addWidget(box);
        connect(box, &QCheckBox::stateChanged, this, &ProgramCompareDialog::Refresh);
    }
    options->addStretch();
    options->addWidget(m_pSummary);
    m_pTable->setColumnCount(ColumnCount);
    m_pTable->setHorizontalHeaderLabels({QString(), leftTitle, QString(), rightTitle});
    m_pTable->verticalHeader()->hide();
    m_pTable->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    m_pTable->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_pTable->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_pTable->setShowGrid(false);
    m_pTable->setWordWrap(false);
    m_pTable->horizontalHeader()->setSectionResizeMode(ColumnLeftText, QHeaderView::Stretch);
    m_pTable->horizontalHeader()->setSectionResizeMode(ColumnRightText, QHeaderView::Stretch);
    m_pTable->setStyleSheet(QStringLiteral("QTableWidget{font-family:monospace;}"));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    buttons->button(QDialogButtonBox::Close)->setText(tr("关闭"));
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(options);
    layout->addWidget(m_pTable);
    layout->addWidget(buttons);
    Refresh();
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
    Refresh();
}

void ProgramCompareDialog::Refresh()
{
    const QList<GcodeDiffRow> rows = GcodeDiff::Compare(m_listLeft, m_listRight, Options());
    m_iChanged = GcodeDiff::ChangedCount(rows);
    m_pSummary->setText(m_iChanged == 0 ? tr("内容相同") : tr("%1 行不同").arg(m_iChanged));
    m_pTable->setRowCount(int(rows.size()));
    for (int i = 0; i < rows.size(); ++i) {
        const GcodeDiffRow& row = rows.at(i);
        const QColor colour = RowColour(row.eKind);
        const auto put = [&](int column, const QString& text) {
            auto* item = new QTableWidgetItem(text);
            if (colour.isValid())
                item->setBackground(colour);
            m_pTable->setItem(i, column, item);
        };
        put(ColumnLeftLine, row.iLeft < 0 ? QString() : QString::number(row.iLeft + 1));
        put(ColumnLeftText, row.iLeft < 0 ? QString() : m_listLeft.at(row.iLeft));
        put(ColumnRightLine, row.iRight < 0 ? QString() : QString::number(row.iRight + 1));
        put(ColumnRightText, row.iRight < 0 ? QString() : m_listRight.at(row.iRight));
    }
    m_pTable->resizeColumnToContents(ColumnLeftLine);
    m_pTable->resizeColumnToContents(ColumnRightLine);
}
