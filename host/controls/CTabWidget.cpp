#include "CTabWidget.h"

#include "KorvFonts.h"

#include <QTabBar>

CTabWidget::CTabWidget(QWidget* parent) : QTabWidget(parent)
{
    setDocumentMode(true);
    tabBar()->setFont(FontCnMedium_14);
    tabBar()->setDrawBase(false);
    setStyleSheet(QStringLiteral("QTabWidget::pane{border:none;border-top:1px solid #e6e8ec;background:#ffffff;}"
                                 "QTabBar{background:#ffffff;}"
                                 "QTabBar::tab{color:#666666;background:#ffffff;padding:6px 18px;margin:0px 2px;"
                                 "border:none;border-bottom:2px solid transparent;}"
                                 "QTabBar::tab:hover{color:#368bd4;}"
                                 "QTabBar::tab:selected{color:#368bd4;border-bottom:2px solid #368bd4;}"));
}
