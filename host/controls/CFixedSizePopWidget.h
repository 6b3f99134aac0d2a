#pragma once

#include "KorvControlsExport.h"

#include <QDialog>
#include <QPoint>

class QLabel;
class QPushButton;
class QVBoxLayout;

// A frameless pop-up of fixed size with a title bar: it can be dragged by its title, Escape or the
// close mark dismisses it, and it centres itself over its parent's window when shown. Subclasses fill
// BodyLayout() and may override SlotConfirm() to check their input before the pop-up is accepted.
class KORVCONTROLS_EXPORT CFixedSizePopWidget : public QDialog
{
    Q_OBJECT

public:
    explicit CFixedSizePopWidget(QWidget* parent = nullptr);

    void SetTitle(const QString& title);
    QString Title() const;
    // An invalid size (the default) fixes the pop-up at its size hint when it is first shown.
    void SetPopSize(const QSize& size);

    bool eventFilter(QObject* watched, QEvent* event) override;

public slots:
    virtual void SlotConfirm();

protected:
    void showEvent(QShowEvent* event) override;

    QVBoxLayout* BodyLayout() const { return m_pBodyLayout; }
    QWidget* TitleWidget() const { return m_pTitleWidget; }
    QPushButton* TitleCloseButton() const { return m_pBtnClose; }

private:
    void CentreOverParent();

    QWidget* m_pTitleWidget = nullptr;
    QLabel* m_pLabelTitle = nullptr;
    QPushButton* m_pBtnClose = nullptr;
    QVBoxLayout* m_pBodyLayout = nullptr;
    QSize m_sizePop;
    QPoint m_ptDragOffset;
    bool m_bDragging = false;
    bool m_bPlaced = false;
};
