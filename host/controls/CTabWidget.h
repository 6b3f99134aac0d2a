#pragma once

#include "KorvControlsExport.h"

#include <QTabWidget>

// A tab container in the workbench's look: flat tabs, the current one underlined in the accent colour.
class KORVCONTROLS_EXPORT CTabWidget : public QTabWidget
{
    Q_OBJECT

public:
    explicit CTabWidget(QWidget* parent = nullptr);
};
