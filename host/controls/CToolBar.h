#pragma once

#include "KorvControlsExport.h"

#include <QToolBar>

class QHBoxLayout;
class QLabel;

// One block of a ribbon: a row of tools with the block's title centred underneath. Fixed in place;
// blocks placed side by side are separated by a thin line.
class KORVCONTROLS_EXPORT CToolBar : public QToolBar
{
    Q_OBJECT

public:
    explicit CToolBar(const QString& title, QWidget* parent = nullptr);

    QString Title() const;

protected:
    // The row that holds the block's tools.
    QHBoxLayout* RowLayout() const { return m_pRowLayout; }

private:
    QHBoxLayout* m_pRowLayout = nullptr;
    QLabel* m_pLabelTitle = nullptr;
};
