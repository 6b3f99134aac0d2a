#pragma once

#include <QAbstractTableModel>
#include <QColor>
#include <QTimer>

class MachineFleet;

// The machines of the shop as table rows. Display texts and raw values apart: the sort model
// sorts on RawRole. A row whose state changed lately is tinted so that it stands out.
class FleetModel final : public QAbstractTableModel
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(FleetModel)

public:
    enum Column
    {
        ColumnName,
        ColumnAddress,
        ColumnState,
        ColumnProgram,
        ColumnProgress,
        ColumnTimeLeft,
        ColumnAlarm,
        ColumnLastHeard,
        ColumnSendResult,
        ColumnCount
    };
    static constexpr int RawRole = Qt::UserRole + 1;
    static constexpr int HighlightSeconds = 10;

    explicit FleetModel(MachineFleet* fleet, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    // The status text and colour of the status page for a machine's state.
    static QString StateText(int status);
    static QColor StateColor(int status);

private:
    QVariant Display(int row, int column) const;
    QVariant Raw(int row, int column) const;
    bool IsHighlighted(int row) const;
    void FadeHighlights();

    MachineFleet* m_pFleet;
    QTimer m_fadeTimer;
    QList<int> m_listHighlighted;
};
