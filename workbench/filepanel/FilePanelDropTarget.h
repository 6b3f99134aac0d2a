#pragma once

#include <QObject>

class FilePanelOperations;
class QDropEvent;
class QWidget;

// Takes the drags over a panel: the cursor shows whether the files may land there, and a drop
// becomes the same request as a paste. The panel, not its view, accepts drops, because the panel
// knows which side it shows.
class FilePanelDropTarget final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(FilePanelDropTarget)

public:
    FilePanelDropTarget(QWidget* panel, FilePanelOperations* operations);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool Accept(QDropEvent* event);

    FilePanelOperations* m_pOperations = nullptr;
};
