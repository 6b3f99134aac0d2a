#include "PanelManager.h"

#include "ui_PanelManager.h"

PanelManager::PanelManager(QWidget* parent) : QWidget(parent), ui(new Ui::PanelManager)
{
    if (objectName().isEmpty())
        setObjectName(QStringLiteral("PanelManager"));
    ui->setupUi(this);
}

PanelManager::~PanelManager()
{
    delete ui;
}
