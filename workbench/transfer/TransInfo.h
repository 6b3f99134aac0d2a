#pragma once

#include "TransferClock.h"

#include <QColor>
#include <QTimer>
#include <QWidget>

class QTableView;
class TransLogModel;

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

    TransLogModel* LogModel() const { return m_pLogModel; }
    QTableView* TableView() const;

    void AddLog(const QString& strMessage, const QColor& color);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    Ui::TransInfo* m_pUi = nullptr;
    TransLogModel* m_pLogModel = nullptr;
    QTimer m_scrollTimer;
};
