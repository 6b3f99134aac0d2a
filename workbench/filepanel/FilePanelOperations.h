#pragma once

#include "CommonDefine.h"
#include "FileClipboardPayload.h"
#include "FilePanelContext.h"

#include <QColor>
#include <QDateTime>
#include <QObject>
#include <QPointer>

class CProgressWidget;
class LocalPasteJob;
class MachineFileRequests;
class QMimeData;

// What a file panel does to its entries: copy, cut and paste through the clipboard, drops,
// deletion, new folders and files, renames. The local side is done here (to the trash, on
// the workbench's pool); what touches the machine becomes a request to the funnel.
class FilePanelOperations final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(FilePanelOperations)

public:
    explicit FilePanelOperations(FilePanelContext* panel);
    ~FilePanelOperations() override;

    // Where requests that touch the machine go; none are made without it.
    void SetRequests(MachineFileRequests* requests) { m_pRequests = requests; }

    void Copy() { PutOnClipboard(QStringLiteral("copy")); }
    void Cut() { PutOnClipboard(QStringLiteral("cut")); }
    // Whether the clipboard holds files this panel can receive (the menu offers paste then).
    bool CanPaste() const;
    void Paste();
    // Whether a drag may be dropped here; `source` is the widget it started in, if ours.
    bool CanDrop(const QMimeData* mimeData, const QObject* source) const;
    void Drop(const QMimeData* mimeData);
    // Asks first; the answer comes later, so the selection is taken now.
    void DeleteSelected();
    void NewFolder();
    void NewFile();
    // The machine panel's program history: of the one selected file, else of every program.
    void ShowHistory();
    // Whether the entry may be renamed at all; a refusal is logged and shown.
    bool MayRename(const QString& name, bool bFolder);
    // Carries out an in-place rename; false when it was refused or failed (the edit is undone then).
    bool Rename(const QString& oldPath, const QString& newName, bool bFolder);
    void ClearClipboardRecord();

Q_SIGNALS:
    void SignalClearLocalClipboardPath();
    void SignalAppendLog(QString text, QColor color);

private:
    void PutOnClipboard(const QString& operation);
    // Whether files from `source` may land in this panel's current folder.
    bool Suits(const FileClipboardPayload& payload) const;
    // The paste and the drop: the same checks, the same requests.
    void Route(const FileClipboardPayload& payload);
    void PasteLocally(const FileClipboardPayload& payload);
    void OnLocalPasteFinished(int failed, const QStringList& log, bool bCut);
    void Delete(const QList<FilePanelContext::Entry>& entries);
    QStringList TakenNames() const;
    void Log(const QString& text, const QColor& color);
    // Boxes open once the current event is done: never inside a drop or an editor's commit.
    // They never wait for the answer.
    void Notice(const QString& text, bool bSuccess = false);

    FilePanelContext* m_pPanel = nullptr;
    MachineFileRequests* m_pRequests = nullptr;
    LocalPasteJob* m_pPasteJob = nullptr;
    QPointer<CProgressWidget> m_pProgressWidget;
    bool m_bPasteCut = false; // the running local paste moves its files

    // What was last put on the clipboard here.
    QStringList m_listClipboardPaths;
    QString m_strClipboardOperation;
    QString m_strClipboardSource;
    QDateTime m_dtClipboard;
};
