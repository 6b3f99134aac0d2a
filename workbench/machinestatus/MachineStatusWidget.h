#pragma once

#include "CommonDefine.h"

#include <QDateTime>
#include <QHash>
#include <QWidget>

class CModule3DView;
class MachineStatusProgramPanel;
class QButtonGroup;
class QLabel;
class QProgressBar;
class QTableWidget;
class QTimer;
namespace Ui {
class MachineStatusWidget;
}

// The machine status page: one machine's live state as its real-time records report
// it. It keeps no history; every record replaces what is shown. Commands are only
// announced; whether they may be sent is the owner's decision.
class MachineStatusWidget : public QWidget
{
    Q_OBJECT

public:
    struct StatusRow
    {
        QString strText;
        QString strColor;
        QString strIcon;
    };

    explicit MachineStatusWidget(QWidget* parent = nullptr);
    ~MachineStatusWidget() override;

    // A record of a failed or timed-out poll (no serial number) changes nothing: the last good
    // values stay, under the stale badge once no good record came for a while.
    void SetRealTimeData(const StructRealTimeData& record);
    // Only the coordinate tables and the 3D view.
    void SetCoordinateData(const StructRealTimeData& record);
    void ShowOffline();
    // A machine was connected: from now on, no record for `milliseconds` shows the data as stale.
    void StartStaleWatch(const QString& sn, int milliseconds);

    MachineStatusProgramPanel* ProgramPanel() const { return m_pProgramPanel; }
    CModule3DView* View3D() const { return m_pView3D; }
    bool IsStale() const { return m_bStale; }

    static QString StatusKey(int status);
    static const QHash<QString, StatusRow>& StatusRows();
    static QString RunTimeText(int seconds);

Q_SIGNALS:
    void signalStartRequested();
    void signalStopRequested();
    void signalResetRequested();
    void signalLoadProgramRequested(const QString& machinePath);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void SetUpFonts();
    void SetUpTable(QTableWidget* table);
    void SetUpCommand(QWidget* button, QLabel* icon, QLabel* text, int standardIcon);
    void SetUp3DView();
    void PlaceOverlays();
    void SetBadge(const QString& key);
    void SetBadgeLook(const QString& key, const QString& text, const QString& icon);
    void ShowStale();
    void ShowRecord(const StructRealTimeData& record);
    void SetTable(QTableWidget* table, const Pose6Dof& position, const Pose6Dof& toGo);
    void SetLoads(const QList<double>& loads);
    void SetTool(const StructToolInfo& tool);
    void SetAlarm(int status, const QString& alarm);

    Ui::MachineStatusWidget* m_pUi;
    MachineStatusProgramPanel* m_pProgramPanel = nullptr;
    CModule3DView* m_pView3D = nullptr;
    QButtonGroup* m_pCoordGroup = nullptr;
    QTimer* m_pStaleTimer;
    QList<QProgressBar*> m_listLoadBars;
    QList<QLabel*> m_listLoadLabels;
    bool m_bChinese = true;
    bool m_bStale = false;
    bool m_bStaleWatch = false; // between StartStaleWatch() and ShowOffline()
    QString m_strBadgeKey;
    QDateTime m_lastRecordTime;
    QString m_strSn; // the connection's, shown whatever the records say
};
