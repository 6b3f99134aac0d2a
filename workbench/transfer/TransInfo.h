#pragma once

#include "TransLogModel.h"
#include "TransferClock.h"

#include <QColor>
#include <QTimer>
#include <QWidget>

class QTableView;

namespace Ui {
class TransInfo;
}

// The log pane: time-stamped coloured lines, the newest brought into view on every append and
// whenever the pane is shown again (a page switch) or changes size.
class TransInfo final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(TransInfo)

public:
    explicit TransInfo(QWidget* parent = nullptr);
    ~TransInfo() override;

    // The lines with every line so far in them.
    TransLogModel* LogModel();
    QTableView* TableView() const;

    void AddLog(const QString& strMessage, const QColor& color);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void ShowPending();

    Ui::TransInfo* m_pUi = nullptr;
    TransLogModel* m_pLogModel = nullptr;
    // Lines are inserted and the newest brought into view once per frame, however many lines
    // many small files bring.
    QTimer m_frameTimer;
    QList<TransLogModel::Line> m_listPending;
};
