#include "SyncButtonLook.h"

#include "FolderSync.h"

#include <QAbstractButton>
#include <QMovie>

SyncButtonLook::SyncButtonLook(QAbstractButton* button, QObject* parent)
    : QObject(parent), m_pButton(button),
      m_pMovie(
          new QMovie(QStringLiteral(":/icon/ToolPage/ico_function_files_synchronization_bac.gif"), QByteArray(), this))
{
    connect(m_pMovie, &QMovie::frameChanged, this, [this]() {
        if (m_pButton)
            m_pButton->setIcon(QIcon(m_pMovie->currentPixmap()));
    });
}

bool SyncButtonLook::IsAnimating() const
{
    return m_pMovie->state() == QMovie::Running;
}

void SyncButtonLook::SetState(int state)
{
    m_iState = state;
    if (!m_pButton)
        return;
    if (state == FolderSync::ButtonRunning) {
        m_pButton->setText(tr("同步中..."));
        m_pMovie->start();
        return;
    }
    m_pMovie->stop();
    m_pButton->setText(tr("同步文件夹"));
    m_pButton->setIcon(QIcon(state == FolderSync::ButtonFinished
                                 ? QStringLiteral(":/icon/ToolPage/ico_function_files_synchronization_finish.png")
                                 : QStringLiteral(":/icon/ToolPage/ico_function_files_synchronization.png")));
}
