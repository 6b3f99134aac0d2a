#pragma once

#include "CFixedSizePopWidget.h"
#include "KorvControlsExport.h"

class QHBoxLayout;
class QLabel;
class QListWidget;
class QPushButton;

// Base of the selection pop-ups: a caption with a refresh button, a list to choose from, a status
// line, and cancel and confirm buttons. Confirming goes through SlotConfirm(), which subclasses override.
class KORVCONTROLS_EXPORT CVarnokSelectBox : public CFixedSizePopWidget
{
    Q_OBJECT

public:
    explicit CVarnokSelectBox(QWidget* parent = nullptr);

    QSize GetTitleSize() const;
    QString StatusText() const;

public slots:
    void SlotClose();

signals:
    void SignalRefresh();

protected:
    enum EnumStatusKind
    {
        StatusPlain,
        StatusBusy,
        StatusFailure,
    };

    void SetCaption(const QString& caption);
    void SetStatus(const QString& text, EnumStatusKind kind);
    QListWidget* List() const { return m_pList; }
    QPushButton* ConfirmButton() const { return m_pBtnConfirm; }
    QPushButton* RefreshButton() const { return m_pBtnRefresh; }
    // Where subclasses put extra inputs, between the list and the status line.
    QHBoxLayout* ExtraLayout() const { return m_pExtraLayout; }

private:
    QLabel* m_pLabelCaption = nullptr;
    QLabel* m_pLabelStatus = nullptr;
    QListWidget* m_pList = nullptr;
    QPushButton* m_pBtnRefresh = nullptr;
    QPushButton* m_pBtnConfirm = nullptr;
    QHBoxLayout* m_pExtraLayout = nullptr;
};
