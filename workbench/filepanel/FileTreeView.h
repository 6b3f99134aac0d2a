#pragma once

#include <QPixmap>
#include <QTreeView>

class CFileHeaderView;
class CFileTreeDelegate;
class CTimeTooltipDelegate;

// The list of one file panel. Rows carry their data in item roles of column 0;
// the view paints icon, name, time, type and size from those roles over the
// base row, so the model never needs items in the other columns.
class FileTreeView final : public QTreeView
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(FileTreeView)

public:
    explicit FileTreeView(bool bLocal, QWidget* parent = nullptr);

    bool IsLocal() const { return m_bLocal; }
    CFileHeaderView* FileHeader() const { return m_pHeader; }
    bool IsEditing() const { return state() == EditingState; }

    // Keeps the header clickable, which the base class resets with every new model.
    void setModel(QAbstractItemModel* model) override;

Q_SIGNALS:
    // The committed new name of an in-place rename.
    void SignalDataChanged(QString dValue);

protected:
    void drawRow(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    void startDrag(Qt::DropActions supportedActions) override;

private:
    QPixmap KindPixmap(const QModelIndex& index) const;
    QString TypeCellText(const QModelIndex& index) const;

    bool m_bLocal = true;
    CFileHeaderView* m_pHeader = nullptr;
    CFileTreeDelegate* m_pNameDelegate = nullptr;
    CTimeTooltipDelegate* m_pTimeDelegate = nullptr;
};
