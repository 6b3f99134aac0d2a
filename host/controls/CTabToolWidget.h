#pragma once

#include "CTabWidget.h"
#include "KorvControlsExport.h"

// The tab container of a workbench's tool pages: each tab is a page (usually a QMainWindow) that
// carries tool blocks above the workbench's content. Double-clicking the current tab folds the
// tool blocks away to give the content more room, and unfolds them again.
class KORVCONTROLS_EXPORT CTabToolWidget : public CTabWidget
{
    Q_OBJECT

public:
    explicit CTabToolWidget(QWidget* parent = nullptr);

    bool ToolsFolded() const { return m_bToolsFolded; }
    void SetToolsFolded(bool bFolded);

signals:
    void SignalToolsFoldChanged(bool bFolded);

private:
    void ApplyFold(int index);

    bool m_bToolsFolded = false;
};
