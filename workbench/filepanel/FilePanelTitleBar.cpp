#include "FilePanelTitleBar.h"

#include "ui_FileSelectPanel.h"

#include <QDir>
#include <QIcon>
#include <QMouseEvent>
#include <QStyle>
#include <algorithm>

FilePanelTitleBar::FilePanelTitleBar(Ui::FileSelectPanel* ui, bool bLocal, QWidget* panel)
    : QObject(panel), m_pUi(ui), m_bLocal(bLocal)
{
    panel->setStyleSheet(QStringLiteral(
        "QWidget#m_widgetTitle {background-color: rgb(242, 242, 242);}"
        "QWidget#m_widgetNavigation {background-color: rgb(250, 250, 250);}"
        "QLabel#m_labelTitle {color: rgb(51, 51, 51); font-weight: bold;}"
        "QFrame#m_widgetPathBox {background-color: white; border: 1px solid rgb(187, 187, 187); border-radius: 4px;}"
        "QFrame#m_widgetPathBox QLabel {color: rgb(51, 51, 51); border: none;}"
        "QLineEdit#pathLineEdit {border: none;}"
        "QPushButton {border: none; border-radius: 4px;}"
        "QPushButton:hover {background-color: rgb(227, 231, 237);}"));
    if (m_bLocal) {
        ui->m_labelTitleIcon->setPixmap(QIcon(QStringLiteral(":/icon/filepanel/ico_local.png")).pixmap(20, 20));
    } else {
        ui->m_labelTitle->setText(QStringLiteral("Varnok"));
        ui->m_labelTitleIcon->setStyleSheet(QStringLiteral("image: url(:/icon/filepanel/ico_machine.png);"));
        ui->filiterBox->hide();
        ui->m_labelComputer->hide();
        ui->m_labelComputerIcon->hide();
        ui->m_labelPathSeparator->hide();
    }
    QStyle* style = panel->style();
    ui->m_labelComputerIcon->setPixmap(style->standardIcon(QStyle::SP_ComputerIcon).pixmap(16, 16));
    ui->m_btnFront->setIcon(QIcon(QStringLiteral(":/icon/filepanel/ico_arrow_left_blue.png")));
    ui->m_btnBack->setIcon(QIcon(QStringLiteral(":/icon/filepanel/ico_arrow_right_green.png")));
    ui->m_btnUp->setIcon(style->standardIcon(QStyle::SP_FileDialogToParent));
    ui->m_btnReset->setIcon(QIcon(QStringLiteral(":/icon/filepanel/restart.png")));
    ui->pushButton_2->setIcon(style->standardIcon(QStyle::SP_ArrowDown));
    ui->m_btnReset->setCursor(Qt::PointingHandCursor);
    ui->pushButton_2->setCursor(Qt::PointingHandCursor);
    ui->pathLineEdit->hide();
    for (QWidget* watched : {static_cast<QWidget*>(ui->m_widgetPathBox), static_cast<QWidget*>(ui->m_labelComputer),
                             static_cast<QWidget*>(ui->m_labelComputerIcon)}) {
        watched->installEventFilter(this);
    }
    connect(ui->pathLineEdit, &QLineEdit::editingFinished, this, &FilePanelTitleBar::HidePathEdit);
}

void FilePanelTitleBar::SetPath(const QString& path)
{
    m_strPath = path;
    UpdatePathLabel();
}

void FilePanelTitleBar::UpdatePathLabel()
{
    const bool bComputerView = m_bLocal && m_strPath.isEmpty();
    const bool bEditing = m_pUi->pathLineEdit->isVisible();
    m_pUi->m_labelPathSeparator->setVisible(m_bLocal && !bComputerView && !bEditing);
    const QString shown = QDir::toNativeSeparators(m_strPath);
    QLabel* label = m_pUi->m_labelPath;
    label->setText(label->fontMetrics().elidedText(shown, Qt::ElideMiddle, std::max(0, label->width())));
    label->setToolTip(shown);
}

void FilePanelTitleBar::ShowPathEdit()
{
    m_pUi->m_labelPath->hide();
    m_pUi->m_labelComputer->hide();
    m_pUi->m_labelComputerIcon->hide();
    m_pUi->m_labelPathSeparator->hide();
    m_pUi->pathLineEdit->setText(QDir::toNativeSeparators(m_strPath));
    m_pUi->pathLineEdit->show();
    m_pUi->pathLineEdit->setFocus();
    m_pUi->pathLineEdit->selectAll();
}

void FilePanelTitleBar::HidePathEdit()
{
    m_pUi->pathLineEdit->hide();
    m_pUi->m_labelPath->show();
    m_pUi->m_labelComputer->setVisible(m_bLocal);
    m_pUi->m_labelComputerIcon->setVisible(m_bLocal);
    UpdatePathLabel();
}

QString FilePanelTitleBar::EditedText() const
{
    return m_pUi->pathLineEdit->text();
}

void FilePanelTitleBar::SetHistoryButtons(bool bBack, bool bForward)
{
    m_pUi->m_btnFront->setEnabled(bBack);
    m_pUi->m_btnBack->setEnabled(bForward);
}

void FilePanelTitleBar::SetLocked(bool locked)
{
    m_bLocked = locked;
    for (QPushButton* button : {m_pUi->m_btnFront, m_pUi->m_btnBack, m_pUi->m_btnUp, m_pUi->m_btnReset}) {
        button->setEnabled(!locked);
    }
}

bool FilePanelTitleBar::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::MouseButtonPress || static_cast<QMouseEvent*>(event)->button() != Qt::LeftButton) {
        return QObject::eventFilter(watched, event);
    }
    if (!m_bLocked) {
        if (watched == m_pUi->m_widgetPathBox) {
            ShowPathEdit();
        } else {
            Q_EMIT SignalComputerClicked();
        }
    }
    return true;
}
