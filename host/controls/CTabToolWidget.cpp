#include "CTabToolWidget.h"

#include <QMainWindow>
#include <QTabBar>
#include <QToolBar>

CTabToolWidget::CTabToolWidget(QWidget* parent) : CTabWidget(parent)
{
    connect(tabBar(), &QTabBar::tabBarDoubleClicked, this, [this](int index) {
        if (index == currentIndex())
            SetToolsFolded(!m_bToolsFolded);
    });
    connect(this, &QTabWidget::currentChanged, this, &CTabToolWidget::ApplyFold);
}

void CTabToolWidget::SetToolsFolded(bool bFolded)
{
    if (m_bToolsFolded == bFolded)
        return;
    m_bToolsFolded = bFolded;
    for (int i = 0; i < count(); ++i)
        ApplyFold(i);
    emit SignalToolsFoldChanged(bFolded);
}

void CTabToolWidget::ApplyFold(int index)
{
    if (auto* page = qobject_cast<QMainWindow*>(widget(index))) {
        for (QToolBar* bar : page->findChildren<QToolBar*>(QString(), Qt::FindDirectChildrenOnly))
            bar->setVisible(!m_bToolsFolded);
    }
}
