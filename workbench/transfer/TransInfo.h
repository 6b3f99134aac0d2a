#pragma once

#include <QColor>
#include <QWidget>

class QTableView;
class TransLogModel;

namespace Ui {
class TransInfo;
}

// The log pane: time-stamped coloured lines, the newest kept in view unless the user
// has scrolled up to read older ones.
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

private:
    void OnScrolled(int iValue);

    Ui::TransInfo* m_pUi = nullptr;
    TransLogModel* m_pLogModel = nullptr;
    bool m_bFollowNewest = true;
};
