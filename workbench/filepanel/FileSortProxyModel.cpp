#include "FileSortProxyModel.h"

#include "FileItemRoles.h"

FileSortProxyModel::FileSortProxyModel(QObject* parent) : QSortFilterProxyModel(parent)
{
    // The C locale collates by code point and ignores numeric mode; natural order
    // needs real collation rules, so a process without a locale gets English ones.
    const QLocale locale = QLocale().language() == QLocale::C ? QLocale(QLocale::English) : QLocale();
    m_collator = QCollator(locale);
    m_collator.setNumericMode(true);
}

void FileSortProxyModel::SetSortRole(int role)
{
    m_iSortRole = role;
    InvalidateKeys();
    setSortRole(role);
}

void FileSortProxyModel::setSourceModel(QAbstractItemModel* sourceModel)
{
    for (QMetaObject::Connection& connection : m_listSourceConnections) {
        disconnect(connection);
    }
    InvalidateKeys();
    // Connected before the base class connects its own handlers, so the cache is
    // marked stale before the proxy re-sorts in reaction to the same change.
    if (sourceModel) {
        const auto invalidate = [this] { InvalidateKeys(); };
        m_listSourceConnections[0] = connect(sourceModel, &QAbstractItemModel::rowsAboutToBeInserted, this, invalidate);
        m_listSourceConnections[1] = connect(sourceModel, &QAbstractItemModel::rowsAboutToBeRemoved, this, invalidate);
        m_listSourceConnections[2] = connect(sourceModel, &QAbstractItemModel::rowsAboutToBeMoved, this, invalidate);
        m_listSourceConnections[3] = connect(sourceModel, &QAbstractItemModel::modelAboutToBeReset, this, invalidate);
        m_listSourceConnections[4] =
            connect(sourceModel, &QAbstractItemModel::layoutAboutToBeChanged, this, invalidate);
        m_listSourceConnections[5] = connect(sourceModel, &QAbstractItemModel::dataChanged, this, invalidate);
    }
    QSortFilterProxyModel::setSourceModel(sourceModel);
}

void FileSortProxyModel::InvalidateKeys()
{
    m_bKeysValid = false;
}

void FileSortProxyModel::BuildKeys() const
{
    const QAbstractItemModel* source = sourceModel();
    const int rows = source ? source->rowCount() : 0;
    const bool bTextRole = m_iSortRole != FileItemRole::Size;
    m_vecRowKeys.clear();
    m_vecTextKeys.clear();
    m_vecRowKeys.reserve(rows);
    if (bTextRole) {
        m_vecTextKeys.reserve(rows);
    }
    for (int row = 0; row < rows; ++row) {
        const QModelIndex index = source->index(row, 0);
        RowKey key;
        key.iKind = index.data(FileItemRole::Kind).toInt();
        if (index.data(FileItemRole::QuickAccess).toBool()) {
            key.iClass = 0;
        } else {
            key.iClass = key.iKind == FileItemKind::File ? 2 : 1;
        }
        if (bTextRole) {
            m_vecTextKeys.push_back(m_collator.sortKey(index.data(m_iSortRole).toString()));
        } else {
            key.nSize = index.data(FileItemRole::Size).toLongLong();
        }
        m_vecRowKeys.push_back(key);
    }
    m_bKeysValid = true;
}

bool FileSortProxyModel::lessThan(const QModelIndex& left, const QModelIndex& right) const
{
    if (!m_bKeysValid) {
        BuildKeys();
    }
    const size_t iLeft = static_cast<size_t>(left.row());
    const size_t iRight = static_cast<size_t>(right.row());
    if (iLeft >= m_vecRowKeys.size() || iRight >= m_vecRowKeys.size()) {
        return false;
    }
    const RowKey& keyLeft = m_vecRowKeys[iLeft];
    const RowKey& keyRight = m_vecRowKeys[iRight];
    if (keyLeft.iClass != keyRight.iClass) {
        return keyLeft.iClass < keyRight.iClass;
    }
    if (keyLeft.iClass == 0 && keyLeft.iKind != keyRight.iKind) {
        return keyLeft.iKind < keyRight.iKind;
    }
    if (m_vecTextKeys.empty()) {
        return keyLeft.nSize < keyRight.nSize;
    }
    return m_vecTextKeys[iLeft].compare(m_vecTextKeys[iRight]) < 0;
}
