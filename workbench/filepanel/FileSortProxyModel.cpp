#include "FileSortProxyModel.h"

#include "FileItemRoles.h"
#include "FileNameSortKey.h"

#include <QtConcurrent>

FileSortProxyModel::FileSortProxyModel(QObject* parent) : QSortFilterProxyModel(parent) {}

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
    std::vector<std::optional<QCollatorSortKey>> textKeys(bTextRole ? rows : 0);
    QList<int> listMissing;
    QStringList texts;
    for (int row = 0; row < rows; ++row) {
        const QModelIndex index = source->index(row, 0);
        RowKey key;
        key.iKind = index.data(FileItemRole::Kind).toInt();
        if (index.data(FileItemRole::QuickAccess).toBool()) {
            key.iClass = 0;
        } else {
            key.iClass = key.iKind == FileItemKind::File ? 2 : 1;
        }
        m_vecRowKeys.push_back(key);
        if (!bTextRole) {
            m_vecRowKeys.back().nSize = index.data(FileItemRole::Size).toLongLong();
            continue;
        }
        const QString text = index.data(m_iSortRole).toString();
        if (m_iSortRole == FileItemRole::Name) {
            const QVariant prebuilt = index.data(FileItemRole::NameSortKey);
            if (prebuilt.isValid()) {
                const FileNameSortKey nameKey = prebuilt.value<FileNameSortKey>();
                if (nameKey.key && nameKey.strName == text) {
                    textKeys[row] = nameKey.key;
                    continue;
                }
            }
        }
        listMissing.append(row);
        texts.append(text);
    }
    if (!texts.isEmpty()) {
        std::vector<QCollatorSortKey> built = SortKeys(texts);
        for (qsizetype i = 0; i < listMissing.size(); ++i) {
            textKeys[listMissing.at(i)] = std::move(built[i]);
        }
    }
    m_vecTextKeys.reserve(textKeys.size());
    for (std::optional<QCollatorSortKey>& key : textKeys) {
        m_vecTextKeys.push_back(std::move(*key));
    }
    m_bKeysValid = true;
}

std::vector<QCollatorSortKey> FileSortProxyModel::SortKeys(const QStringList& texts) const
{
    // Collation keys are the costly part of a sort; big sets are built in slices on
    // the pool, each slice with a collator of its own.
    constexpr qsizetype kSlice = 8192;
    QList<QPair<qsizetype, qsizetype>> slices;
    for (qsizetype first = 0; first < texts.size(); first += kSlice) {
        slices.append({first, std::min(texts.size(), first + kSlice)});
    }
    const auto buildSlice = [&texts](const QPair<qsizetype, qsizetype>& slice) {
        const QCollator collator = FileNameSortKey::CreateCollator();
        std::vector<QCollatorSortKey> keys;
        keys.reserve(slice.second - slice.first);
        for (qsizetype i = slice.first; i < slice.second; ++i) {
            keys.push_back(collator.sortKey(texts.at(i)));
        }
        return keys;
    };
    const QList<std::vector<QCollatorSortKey>> parts =
        slices.size() > 1 ? QtConcurrent::blockingMapped(slices, buildSlice)
                          : QList<std::vector<QCollatorSortKey>>{buildSlice({0, texts.size()})};
    std::vector<QCollatorSortKey> keys;
    keys.reserve(texts.size());
    for (const std::vector<QCollatorSortKey>& part : parts) {
        keys.insert(keys.end(), part.begin(), part.end());
    }
    return keys;
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
