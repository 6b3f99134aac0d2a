#pragma once

#include <QColor>
#include <QWidget>

class QSplitter;
class QVBoxLayout;
class TransInfo;
class TransList;

// The transfer strip: the transfer list on the left, the log pane on the right.
class TransManager final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(TransManager)

public:
    explicit TransManager(QWidget* parent = nullptr);

    TransList* TransferList() const { return m_pTransList; }
    TransInfo* LogPane() const { return m_pTransInfo; }
    QSplitter* Splitter() const { return m_pSplitter; }

    void AddLog(const QString& strMessage, const QColor& color);
    void ClearTransList();

Q_SIGNALS:
    // Forwarded from the list: retry, cancel, or show the local folder of a row.
    void SignalRestartTransfer(const QString& strKey);
    void SignalCancelTransfer(const QString& strKey);
    void SignalOpenFolder(const QString& strFolder);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void BuildPanes();

    QVBoxLayout* m_layoutMain = nullptr;
    TransList* m_pTransList = nullptr;
    TransInfo* m_pTransInfo = nullptr;
    QSplitter* m_pSplitter = nullptr;
};
