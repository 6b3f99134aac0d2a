#pragma once

#include <QHeaderView>

// Horizontal header of the transfer list: a thin separator on the right of every section but the last.
class CTransHeaderView final : public QHeaderView
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(CTransHeaderView)

public:
    explicit CTransHeaderView(QWidget* parent = nullptr);

protected:
    void paintSection(QPainter* painter, const QRect& rect, int logicalIndex) const override;
};
