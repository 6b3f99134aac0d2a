#pragma once

#include "LogColors.h"
#include "transfer/TransInfo.h"
#include "transfer/TransLogModel.h"
#include "transfer/TransManager.h"
#include "workspace/Workspace.h"

#include <QColor>
#include <QString>
#include <QStringView>

// Whether the workspace's log pane holds `text` in `color`: what a user reads, colour included.
inline bool WorkspaceLogHas(const Workspace& workspace, const QString& text, const QColor& color)
{
    const TransLogModel* model = workspace.GetTransManager()->LogPane()->LogModel();
    for (int row = 0; row < model->rowCount(); ++row) {
        const QModelIndex index = model->index(row, TransLogModel::ColumnMessage);
        if (index.data().toString() == text && index.data(Qt::ForegroundRole).value<QColor>() == color)
            return true;
    }
    return false;
}

// How many lines of the log pane start with `prefix`.
inline int WorkspaceLogCount(const Workspace& workspace, QStringView prefix)
{
    const TransLogModel* model = workspace.GetTransManager()->LogPane()->LogModel();
    int count = 0;
    for (int row = 0; row < model->rowCount(); ++row)
        count += model->index(row, TransLogModel::ColumnMessage).data().toString().startsWith(prefix) ? 1 : 0;
    return count;
}
