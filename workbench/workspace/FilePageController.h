#pragma once

#include "CommonDefine.h"
#include "FileRequest.h"

#include <QObject>
#include <QPointer>

class CProgressWidget;
class FileManager;
class FolderSync;
class MachineConnection;
class MachineFileService;
class SyncButtonLook;
class ToolPage;
class TransManager;
class QWidget;

// The file page's wiring: the panels' and arrows' requests into the funnel, the funnel's
// answers back into the panels, the transfer list and the log, the panels' lock following the
// one count of running transfers, and the folder synchronisation on the tool page. Boxes are
// asked without nested event loops.
class FilePageController final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(FilePageController)

public:
    struct Parts
    {
        QWidget* window = nullptr; // parent of the boxes
        MachineConnection* connection = nullptr;
        MachineFileService* files = nullptr;
        FileManager* fileManager = nullptr;
        TransManager* transManager = nullptr;
        ToolPage* toolPage = nullptr;
    };

    FilePageController(const Parts& parts, QObject* parent);

    FolderSync* GetFolderSync() const { return m_pFolderSync; }
    SyncButtonLook* GetSyncButtonLook() const { return m_pSyncLook; }
    // The tool page's "同步文件夹".
    void StartFolderSync();

Q_SIGNALS:
    void SignalAppendLog(QString text, QColor color);
    // A box titled "提示" with this icon (EnumMsgIcon).
    void SignalNotice(int icon, QString text);

private:
    void ConnectRequests();
    void ConnectAnswers();
    void CompareBeforeOverwrite(const QList<OverwriteEntry>& entries, std::function<void(bool)> answer);
    void ConnectConnection();
    void ConnectFolderSync();
    void AddSyncSettings();

    Parts m_parts;
    FolderSync* m_pFolderSync = nullptr;
    SyncButtonLook* m_pSyncLook = nullptr;
    QPointer<CProgressWidget> m_pProgressWidget;
    // Kept so that the question can be asked again after a compare.
    OverwriteAsker m_fnAskOverwrite;
};
