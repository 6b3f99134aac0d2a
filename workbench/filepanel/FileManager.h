#pragma once

#include "CommonDefine.h"

#include <QColor>
#include <QWidget>

class FileSelectPanel;
class MachineFileRequests;
class QPushButton;
class QSplitter;
class QVBoxLayout;

// The two-panel page: the local panel, a column with the upload and download arrows,
// and the machine panel. It turns the arrows into transfer requests, keeps the
// connection state those requests need and re-emits the panels' requests as its own.
class FileManager final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(FileManager)

public:
    explicit FileManager(QWidget* parent = nullptr);

    FileSelectPanel* LocalPanel() const { return m_pLocalPanel; }
    FileSelectPanel* MachinePanel() const { return m_pMachinePanel; }
    QPushButton* UploadButton() const { return m_pUploadButton; }
    QPushButton* DownloadButton() const { return m_pDownloadButton; }
    QSplitter* Splitter() const { return m_pSplitter; }
    // Every request of this page that touches the machine, arrows and both panels alike.
    MachineFileRequests* Requests() const { return m_pRequests; }

    // Connect: the machine panel lists the machine's root. Disconnect: it empties.
    void SetMachineConnected(const QString& ip, const QString& sn);
    void SetMachineDisconnected();
    bool IsConnected() const { return m_bConnected; }
    QString MachineIp() const { return m_strIp; }
    QString MachineSn() const { return m_strSn; }

    // Both panels at once: a transfer in one direction must not be raced from the other side.
    void SetPanelLocked(bool locked);

Q_SIGNALS:
    void SignalAppendLog(QString text, QColor color);

public Q_SLOTS:
    void SlotLeftBtnClicked();
    void SlotRightBtnClicked();
    // machinePath / localPath: the folder that receives the file.
    void SlotUploadFileToMachine(QString filePath, QString machinePath, OperationType operation);
    void SlotDownloadFileFromMachine(QString localPath, QString machinePath);

private:
    void BuildLayout();
    QWidget* BuildArrowColumn();
    void ConnectPanels();
    // Selected files and folders (true) of a panel, without drives or shortcuts.
    QList<QPair<QString, bool>> SelectedEntries(const FileSelectPanel* panel) const;

    MachineFileRequests* m_pRequests = nullptr;
    FileSelectPanel* m_pLocalPanel = nullptr;
    FileSelectPanel* m_pMachinePanel = nullptr;
    QPushButton* m_pUploadButton = nullptr;
    QPushButton* m_pDownloadButton = nullptr;
    QSplitter* m_pSplitter = nullptr;
    QVBoxLayout* m_layoutMain = nullptr;

    bool m_bConnected = false;
    QString m_strIp;
    QString m_strSn;
    QString m_strMachineBasePath;
};
