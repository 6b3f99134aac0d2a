#include "MachineStatusFileActionWidget.h"

#include <QHBoxLayout>
#include <QToolButton>

namespace {
QToolButton* MakeButton(QWidget* parent, const QString& icon, const QString& toolTip)
{
    auto* button = new QToolButton(parent);
    button->setIcon(QIcon(icon));
    button->setIconSize(QSize(16, 16));
    button->setToolTip(toolTip);
    button->setCursor(Qt::PointingHandCursor);
    button->setStyleSheet(QStringLiteral("QToolButton{border:none;background:transparent;}"));
    return button;
}
} // namespace

MachineStatusFileActionWidget::MachineStatusFileActionWidget(bool bFile, QWidget* parent) : QWidget(parent)
{
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(4, 0, 4, 0);
    layout->setSpacing(8);
    m_pBtnRename =
        MakeButton(this, QStringLiteral(":/icon/MachineStatus/ico_machine_status_files_edit.png"), tr("重命名"));
    m_pBtnDelete =
        MakeButton(this, QStringLiteral(":/icon/MachineStatus/ico_machine_status_files_del.png"), tr("删除"));
    layout->addWidget(m_pBtnRename);
    layout->addWidget(m_pBtnDelete);
    connect(m_pBtnRename, &QToolButton::pressed, this, &MachineStatusFileActionWidget::SignalRename);
    connect(m_pBtnDelete, &QToolButton::pressed, this, &MachineStatusFileActionWidget::SignalDelete);
    if (bFile) {
        m_pBtnLoad =
            MakeButton(this, QStringLiteral(":/icon/MachineStatus/ico_machine_status_run.png"), tr("设为加工程序"));
        layout->addWidget(m_pBtnLoad);
        connect(m_pBtnLoad, &QToolButton::pressed, this, &MachineStatusFileActionWidget::SignalLoadProgram);
        m_pBtnHistory = MakeButton(this, QString(), tr("历史版本…"));
        m_pBtnHistory->setText(tr("历史"));
        m_pBtnHistory->setToolButtonStyle(Qt::ToolButtonTextOnly);
        layout->addWidget(m_pBtnHistory);
        connect(m_pBtnHistory, &QToolButton::pressed, this, &MachineStatusFileActionWidget::SignalShowHistory);
    }
    layout->addStretch(1);
}
