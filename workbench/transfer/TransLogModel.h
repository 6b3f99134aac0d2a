#pragma once

#include "TransferClock.h"

#include <QAbstractTableModel>
#include <QColor>
#include <QList>
#include <QString>

// The log pane's rows: a time stamp and a message drawn in the reporter's colour.
// Rows are only appended or all cleared; an optional bound drops the oldest rows.
class TransLogModel final : public QAbstractTableModel
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(TransLogModel)

public:
    enum Column
    {
        ColumnTime = 0,
        ColumnMessage,
        ColumnCount,
    };

    // iMaxRows 0 keeps every row.
    explicit TransLogModel(QObject* parent = nullptr, int iMaxRows = 0);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

    // A line as it came: its time in milliseconds since the epoch, its text and colour.
    struct Line
    {
        qint64 iMsecs = 0;
        QString strMessage;
        QColor color;
    };

    void AddLog(const QString& strMessage, const QColor& color);
    // Lines that came within one frame, inserted together.
    void AddLogs(const QList<Line>& lines);
    void ClearLog();

    void SetMaxRows(int iMaxRows);
    int MaxRows() const { return m_iMaxRows; }
    void SetClock(TransferClock clock);
    qint64 Now() const { return m_clock(); }

private:
    struct LogEntry
    {
        QString strTime;
        QString strMessage;
        QColor color;
    };

    void DropOldest(int iCount);

    QList<LogEntry> m_listEntries;
    int m_iMaxRows = 0;
    TransferClock m_clock = SystemTransferClock;
};
