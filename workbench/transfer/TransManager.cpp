#include "TransManager.h"

#include "CDebugLog.h"
#include "TransInfo.h"
#include "TransList.h"

#include <QResizeEvent>
#include <QSplitter>
#include <QVBoxLayout>

TransManager::TransManager(QWidget* parent) : QWidget(parent)
{
    if (objectName().isEmpty())
        setObjectName(QStringLiteral("TransManager"));
    resize(1800, 240);
    m_layoutMain = new QVBoxLayout(this);
    m_layoutMain->setObjectName(QStringLiteral("m_layoutMain"));
    m_layoutMain->setContentsMargins(0, 0, 0, 0);
    QMetaObject::connectSlotsByName(this);
    BuildPanes();
}

void TransManager::BuildPanes()
{
    m_pTransList = new TransList(this);
    m_pTransInfo = new TransInfo(this);
    connect(m_pTransList, &TransList::SignalRestartTransfer, this, &TransManager::SignalRestartTransfer);
    connect(m_pTransList, &TransList::SignalCancelTransfer, this, &TransManager::SignalCancelTransfer);
    connect(m_pTransList, &TransList::SignalOpenFolder, this, &TransManager::SignalOpenFolder);

    m_pSplitter = new QSplitter(Qt::Horizontal, this);
    m_pSplitter->setHandleWidth(1);
    m_pSplitter->addWidget(m_pTransList);
    m_pSplitter->addWidget(m_pTransInfo);
    m_pSplitter->setSizes({902, 897});
    // The panes abut without a visible handle, and neither can be squeezed away.
    m_pSplitter->setHandleWidth(0);
    for (int i = 0; i < m_pSplitter->count(); ++i)
        m_pSplitter->setCollapsible(i, false);
    m_pSplitter->show();
    m_layoutMain->addWidget(m_pSplitter);
}

void TransManager::AddLog(const QString& strMessage, const QColor& color)
{
    // Every line the operator saw is in debug.log too, so a report can be read beside it.
    CDebugLog::AddLog(QStringLiteral("日志：") + strMessage);
    m_pTransInfo->AddLog(strMessage, color);
}

void TransManager::ClearTransList()
{
    if (m_pTransList)
        m_pTransList->ClearList();
}

void TransManager::resizeEvent(QResizeEvent* event)
{
    const int iMinWidth = width() / 3;
    m_pTransList->setMinimumWidth(iMinWidth);
    m_pTransInfo->setMinimumWidth(iMinWidth);
    QWidget::resizeEvent(event);
}
