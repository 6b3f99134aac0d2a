#include "CToolBar.h"

#include "KorvFonts.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

CToolBar::CToolBar(const QString& title, QWidget* parent) : QToolBar(title, parent)
{
    setMovable(false);
    setFloatable(false);
    setContextMenuPolicy(Qt::PreventContextMenu);
    setStyleSheet(QStringLiteral(
        "CToolBar{background:#ffffff;border:none;border-right:1px solid #e6e8ec;padding:4px 6px 2px 6px;spacing:0px;}"
        "QToolButton{color:#333333;background:transparent;border:1px solid transparent;border-radius:4px;"
        "padding:4px 6px;}"
        "QToolButton:hover{background:#f2f7fc;}"
        "QToolButton:pressed{background:#e3effa;}"
        "QToolButton:checked{background:#e3effa;border-color:#cfe2f5;color:#368bd4;}"
        "QToolButton:disabled{color:#b0b4ba;}"
        "QLabel#m_labelBlockTitle{color:#8a8f99;background:transparent;}"));

    auto* block = new QWidget(this);
    auto* column = new QVBoxLayout(block);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(2);
    m_pRowLayout = new QHBoxLayout;
    m_pRowLayout->setSpacing(4);
    m_pLabelTitle = new QLabel(title, block);
    m_pLabelTitle->setObjectName(QStringLiteral("m_labelBlockTitle"));
    m_pLabelTitle->setFont(FontCn_13);
    m_pLabelTitle->setAlignment(Qt::AlignCenter);
    column->addLayout(m_pRowLayout);
    column->addWidget(m_pLabelTitle);
    addWidget(block);
}

QString CToolBar::Title() const
{
    return m_pLabelTitle->text();
}
