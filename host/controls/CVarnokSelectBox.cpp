#include "CVarnokSelectBox.h"

#include "KorvFonts.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

CVarnokSelectBox::CVarnokSelectBox(QWidget* parent) : CFixedSizePopWidget(parent)
{
    auto* header = new QHBoxLayout;
    m_pLabelCaption = new QLabel(this);
    m_pLabelCaption->setFont(FontCnMedium_14);
    m_pBtnRefresh = new QPushButton(tr("刷新"), this);
    m_pBtnRefresh->setObjectName(QStringLiteral("m_btnRefresh"));
    m_pBtnRefresh->setFont(FontCn_13);
    m_pBtnRefresh->setAutoDefault(false);
    connect(m_pBtnRefresh, &QPushButton::clicked, this, &CVarnokSelectBox::SignalRefresh);
    header->addWidget(m_pLabelCaption);
    header->addStretch();
    header->addWidget(m_pBtnRefresh);
    BodyLayout()->addLayout(header);

    m_pList = new QListWidget(this);
    m_pList->setObjectName(QStringLiteral("m_listWidget"));
    m_pList->setFont(FontCn_14);
    m_pList->setSelectionMode(QAbstractItemView::SingleSelection);
    m_pList->setIconSize(QSize(10, 10));
    BodyLayout()->addWidget(m_pList, 1);

    m_pExtraLayout = new QHBoxLayout;
    m_pExtraLayout->setSpacing(8);
    BodyLayout()->addLayout(m_pExtraLayout);

    m_pLabelStatus = new QLabel(this);
    m_pLabelStatus->setObjectName(QStringLiteral("m_labelStatus"));
    m_pLabelStatus->setFont(FontCn_13);
    m_pLabelStatus->setMinimumHeight(20);
    BodyLayout()->addWidget(m_pLabelStatus);

    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(10);
    buttons->addStretch();
    auto* cancel = new QPushButton(tr("取消"), this);
    cancel->setObjectName(QStringLiteral("m_btnCancel"));
    cancel->setFont(FontCn_14);
    cancel->setAutoDefault(false);
    connect(cancel, &QPushButton::clicked, this, &CVarnokSelectBox::SlotClose);
    m_pBtnConfirm = new QPushButton(tr("确定"), this);
    m_pBtnConfirm->setObjectName(QStringLiteral("m_btnConfirm"));
    m_pBtnConfirm->setFont(FontCn_14);
    m_pBtnConfirm->setDefault(true);
    connect(m_pBtnConfirm, &QPushButton::clicked, this, &CVarnokSelectBox::SlotConfirm);
    buttons->addWidget(cancel);
    buttons->addWidget(m_pBtnConfirm);
    BodyLayout()->addLayout(buttons);
}

QSize CVarnokSelectBox::GetTitleSize() const
{
    return TitleWidget()->size();
}

QString CVarnokSelectBox::StatusText() const
{
    return m_pLabelStatus->text();
}

void CVarnokSelectBox::SlotClose()
{
    reject();
}

void CVarnokSelectBox::SetCaption(const QString& caption)
{
    m_pLabelCaption->setText(caption);
}

void CVarnokSelectBox::SetStatus(const QString& text, EnumStatusKind kind)
{
    static const char* const colours[] = {"#666666", "#368bd4", "#dc3232"};
    m_pLabelStatus->setStyleSheet(QStringLiteral("color:%1;").arg(QLatin1String(colours[kind])));
    m_pLabelStatus->setText(text);
}
