#pragma once

#include <QCollator>
#include <QSortFilterProxyModel>
#include <vector>

// Orders file rows: quick-access rows first (desktop, downloads, documents), then
// folders, then files, each class by the current sort role. Names compare in
// natural order (file2 before file10), sizes as integers. A descending order
// reverses the whole result.
//
// Every comparison value is computed once (one collation key per row, taken from
// the listing when it brought one) and cached by source row, so sorting 100,000
// rows never runs the collator inside the comparison.
class FileSortProxyModel final : public QSortFilterProxyModel
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(FileSortProxyModel)

public:
    explicit FileSortProxyModel(QObject* parent = nullptr);

    // Sets the role compared inside a class of rows, here and as the proxy's own sort role.
    void SetSortRole(int role);
    int SortRoleValue() const { return m_iSortRole; }

    void setSourceModel(QAbstractItemModel* sourceModel) override;

protected:
    bool lessThan(const QModelIndex& left, const QModelIndex& right) const override;

private:
    struct RowKey
    {
        int iClass = 0; // 0 quick access, 1 folder, 2 file
        int iKind = 0;
        qint64 nSize = 0;
    };

    void InvalidateKeys();
    void BuildKeys() const;
    std::vector<QCollatorSortKey> SortKeys(const QStringList& texts) const;

    int m_iSortRole = 0;
    QMetaObject::Connection m_listSourceConnections[6];
    mutable bool m_bKeysValid = false;
    mutable std::vector<RowKey> m_vecRowKeys;
    mutable std::vector<QCollatorSortKey> m_vecTextKeys;
};
