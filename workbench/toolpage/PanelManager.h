#pragma once

#include <QWidget>

namespace Ui {
class PanelManager;
}

// A named, empty container for panels.
class PanelManager : public QWidget
{
    Q_OBJECT

public:
    explicit PanelManager(QWidget* parent = nullptr);
    ~PanelManager() override;

private:
    Ui::PanelManager* ui;
};
