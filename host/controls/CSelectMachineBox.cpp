#include "CSelectMachineBox.h"

#include "FtpSettings.h"
#include "KorvFonts.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QPainter>
#include <QPushButton>
#include <QRegularExpression>
#include <QStyle>

namespace {
QIcon dotIcon(const QColor& colour)
{
    QPixmap pixmap(20, 20);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    painter.drawEllipse(QRectF(2, 2, 16, 16));
    return QIcon(pixmap);
}
} // namespace

CSelectMachineBox::CSelectMachineBox(QWidget* parent) : CVarnokSelectBox(parent)
{
    SetTitle(tr("连接机床"));
    SetCaption(tr("局域网内的机床"));
    ConfirmButton()->setText(tr("连接"));
    SetPopSize(QSize(440, 460));

    m_pEditIp = new QLineEdit(this);
    m_pEditIp->setObjectName(QStringLiteral("m_editIp"));
    m_pEditIp->setFont(FontCn_14);
    m_pEditIp->setPlaceholderText(tr("手动输入机床IP地址，如 192.168.1.100"));
    m_pEditIp->setMaxLength(15);
    ExtraLayout()->addWidget(m_pEditIp);

    // Controllers that spell file names in GBK or Shift-JIS need it set per machine.
    m_pComboEncoding = new QComboBox(this);
    m_pComboEncoding->setObjectName(QStringLiteral("m_comboNameEncoding"));
    m_pComboEncoding->setFont(FontCn_14);
    m_pComboEncoding->setToolTip(tr("机床的文件名编码"));
    m_pComboEncoding->addItem(QStringLiteral("UTF-8"), QByteArray("UTF-8"));
    m_pComboEncoding->addItem(QStringLiteral("GBK"), QByteArray("GBK"));
    m_pComboEncoding->addItem(QStringLiteral("Shift-JIS"), QByteArray("Shift_JIS"));
    ExtraLayout()->addWidget(m_pComboEncoding);

    connect(m_pEditIp, &QLineEdit::textEdited, this, [this](const QString& text) {
        MarkIpInvalid(false);
        if (!text.isEmpty())
            List()->clearSelection();
        if (IsValidIpv4(text.trimmed()))
            ShowNameEncoding(text.trimmed());
    });
    connect(List(), &QListWidget::itemSelectionChanged, this, [this] {
        if (!List()->selectedItems().isEmpty()) {
            m_pEditIp->clear();
            MarkIpInvalid(false);
            ShowNameEncoding(List()->selectedItems().first()->data(RoleIp).toString());
        }
    });
    connect(List(), &QListWidget::itemDoubleClicked, this, &CSelectMachineBox::SlotConfirm);
    connect(this, &CVarnokSelectBox::SignalRefresh, this, [this] {
        List()->clear();
        SetStatus(tr("正在搜索机床..."), StatusBusy);
        emit SignalSelectRefresh();
    });
}

bool CSelectMachineBox::IsValidIpv4(const QString& text)
{
    static const QRegularExpression pattern(
        QStringLiteral("^((25[0-5]|2[0-4]\\d|1\\d\\d|[1-9]?\\d)\\.){3}(25[0-5]|2[0-4]\\d|1\\d\\d|[1-9]?\\d)$"));
    return pattern.match(text).hasMatch();
}

bool CSelectMachineBox::SetMachineInfo(QString reply, bool bOnline)
{
    const QStringList parts = reply.split(QLatin1Char('*'));
    if (parts.size() < 4)
        return false;
    const QString sn = parts.at(1).trimmed();
    const QString ip = parts.at(3).trimmed();
    if (!IsValidIpv4(ip))
        return false;
    QListWidgetItem* item = FindItem(ip, sn);
    if (!item)
        item = new QListWidgetItem(List());
    const QString name = sn.isEmpty() ? tr("未知序列号") : sn;
    item->setText(QStringLiteral("%1    %2    %3").arg(name, ip, bOnline ? tr("在线") : tr("离线")));
    item->setToolTip(QStringLiteral("SN: %1\nIP: %2").arg(name, ip));
    item->setIcon(dotIcon(bOnline ? QColor(0x17, 0xa0, 0x61) : QColor(0xb0, 0xb4, 0xba)));
    item->setData(RoleIp, ip);
    item->setData(RoleSn, sn);
    item->setData(RoleOnline, bOnline);
    // A machine that does not answer cannot be connected to; it stays listed so the user sees it.
    item->setFlags(bOnline ? Qt::ItemIsEnabled | Qt::ItemIsSelectable : Qt::NoItemFlags);
    if (!m_bConnecting && StatusText() == tr("正在搜索机床..."))
        SetStatus(QString(), StatusPlain);
    return true;
}

QListWidgetItem* CSelectMachineBox::FindItem(const QString& ip, const QString& sn) const
{
    for (int i = 0; i < List()->count(); ++i) {
        QListWidgetItem* item = List()->item(i);
        const QString itemSn = item->data(RoleSn).toString();
        if (sn.isEmpty() ? (itemSn.isEmpty() && item->data(RoleIp).toString() == ip) : itemSn == sn)
            return item;
    }
    return nullptr;
}

int CSelectMachineBox::MachineCount() const
{
    return List()->count();
}

void CSelectMachineBox::ClearBoxInfo()
{
    List()->clear();
    m_pEditIp->clear();
    MarkIpInvalid(false);
    SetConnecting(false);
    SetStatus(QString(), StatusPlain);
}

void CSelectMachineBox::SlotConfirm()
{
    if (m_bConnecting)
        return;
    const QString typed = m_pEditIp->text().trimmed();
    QString ip;
    QString sn;
    if (!typed.isEmpty()) {
        if (!IsValidIpv4(typed)) {
            MarkIpInvalid(true);
            SetStatus(tr("IP地址格式不正确，请重新输入"), StatusFailure);
            return;
        }
        ip = typed;
    } else if (const QList<QListWidgetItem*> selected = List()->selectedItems(); !selected.isEmpty()) {
        ip = selected.first()->data(RoleIp).toString();
        sn = selected.first()->data(RoleSn).toString();
    } else {
        SetStatus(tr("请选择机床或输入机床IP地址"), StatusFailure);
        return;
    }
    FtpSettings::SetNameEncodingFor(ip, m_pComboEncoding->currentData().toByteArray());
    SetConnecting(true);
    SetStatus(tr("正在连接机床，请稍候..."), StatusBusy);
    emit SignalMachineSelected(ip, sn);
}

void CSelectMachineBox::OnConnectResult(bool bSuccess)
{
    SetConnecting(false);
    if (bSuccess) {
        SetStatus(QString(), StatusPlain);
        accept();
    } else {
        SetStatus(tr("连接失败，请检查网络连接和机床IP地址"), StatusFailure);
    }
}

void CSelectMachineBox::SetConnecting(bool bConnecting)
{
    m_bConnecting = bConnecting;
    ConfirmButton()->setEnabled(!bConnecting);
    RefreshButton()->setEnabled(!bConnecting);
    List()->setEnabled(!bConnecting);
    m_pEditIp->setEnabled(!bConnecting);
}

void CSelectMachineBox::ShowNameEncoding(const QString& ip)
{
    const int index = m_pComboEncoding->findData(FtpSettings::NameEncodingFor(ip));
    m_pComboEncoding->setCurrentIndex(qMax(0, index));
}

void CSelectMachineBox::MarkIpInvalid(bool bInvalid)
{
    m_pEditIp->setProperty("invalid", bInvalid);
    m_pEditIp->style()->unpolish(m_pEditIp);
    m_pEditIp->style()->polish(m_pEditIp);
}
