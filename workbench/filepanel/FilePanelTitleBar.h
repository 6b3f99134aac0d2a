#pragma once

#include <QObject>
#include <QString>

class QWidget;

namespace Ui {
class FileSelectPanel;
}

// The panel's title and navigation rows: their look, the path shown (elided, or in an editor
// after a click on it), the computer entry, and which buttons may be pressed.
class FilePanelTitleBar final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(FilePanelTitleBar)

public:
    FilePanelTitleBar(Ui::FileSelectPanel* ui, bool bLocal, QWidget* panel);

    void SetPath(const QString& path);
    // Elides the path to the label's width; due again after every resize.
    void UpdatePathLabel();
    void ShowPathEdit();
    void HidePathEdit();
    QString EditedText() const;
    void SetHistoryButtons(bool bBack, bool bForward);
    // Locked: the buttons are off, and clicks on the path box or the computer entry do nothing.
    void SetLocked(bool locked);

Q_SIGNALS:
    void SignalComputerClicked();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    Ui::FileSelectPanel* m_pUi = nullptr;
    const bool m_bLocal;
    bool m_bLocked = false;
    QString m_strPath;
};
