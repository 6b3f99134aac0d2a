#include "FilePanelDropTarget.h"

#include "FilePanelOperations.h"

#include <QDropEvent>
#include <QWidget>

FilePanelDropTarget::FilePanelDropTarget(QWidget* panel, FilePanelOperations* operations)
    : QObject(panel), m_pOperations(operations)
{
    panel->setAcceptDrops(true);
    panel->installEventFilter(this);
}

bool FilePanelDropTarget::Accept(QDropEvent* event)
{
    if (!m_pOperations->CanDrop(event->mimeData(), event->source())) {
        event->ignore(); // the drag shows the forbidden cursor
        return false;
    }
    event->setDropAction(Qt::CopyAction);
    event->accept();
    return true;
}

bool FilePanelDropTarget::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::DragEnter:
    case QEvent::DragMove:
        Accept(static_cast<QDropEvent*>(event));
        return true;
    case QEvent::Drop:
        if (Accept(static_cast<QDropEvent*>(event))) {
            m_pOperations->Drop(static_cast<QDropEvent*>(event)->mimeData());
        }
        return true;
    default:
        return QObject::eventFilter(watched, event);
    }
}
