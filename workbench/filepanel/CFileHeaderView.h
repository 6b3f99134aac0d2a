#pragma once

#include <QHeaderView>

// The file list's header: plain sections divided by thin vertical lines.
class CFileHeaderView final : public QHeaderView
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(CFileHeaderView)

public:
    explicit CFileHeaderView(Qt::Orientation orientation, QWidget* parent = nullptr);

protected:
    void paintSection(QPainter* painter, const QRect& rect, int logicalIndex) const override;
};
