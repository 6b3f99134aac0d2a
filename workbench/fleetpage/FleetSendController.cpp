#include "FleetSendController.h"

#include "CDebugLog.h"
#include "CVarnokMessageBox.h"
#include "FleetSendJob.h"
#include "LogColors.h"
#include "MachineFileService.h"
#include "MachineFleet.h"

#include <QFileDialog>
#include <QFileInfo>

namespace {
// The question lists the files of each machine; past this many machines it counts the rest.
constexpr int MaxListedMachines = 10;

QString OverwriteText(const QList<FleetSendJob::Existing>& existing)
{
    QStringList lines;
    for (const FleetSendJob::Existing& machine : existing) {
        if (lines.size() == MaxListedMachines)
            break;
        QStringList names;
        for (const OverwriteEntry& entry : machine.entries)
            names.append(QFileInfo(entry.strTarget).fileName());
        lines.append(QStringLiteral("%1（%2）：%3")
                         .arg(machine.endpoint.strSn, machine.endpoint.strIp, names.join(QStringLiteral("、"))));
    }
    if (existing.size() > MaxListedMachines)
        lines.append(FleetSendController::tr("……另有 %1 台机床").arg(existing.size() - MaxListedMachines));
    return FleetSendController::tr("以下机床上已有同名文件，是否全部覆盖？") + QStringLiteral("\n\n") +
           lines.join(QLatin1Char('\n'));
}
} // namespace

FleetSendController::FleetSendController(QWidget* window, MachineFleet* fleet, MachineFileService* files)
    : QObject(window), m_pWindow(window), m_pFleet(fleet), m_pFiles(files)
{
    files->SetRunningProgramSource([fleet](const QString& ip) { return fleet->RunningProgramOf(ip); });
}

void FleetSendController::ChoosePrograms(const QList<int>& rows)
{
    if (rows.isEmpty())
        return;
    auto* dialog = new QFileDialog(m_pWindow, tr("选择要发送的程序"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFiles);
    dialog->setNameFilter(tr("数控程序 (*.nc *.ngc *.tap *.mpf *.txt);;所有文件 (*)"));
    connect(dialog, &QFileDialog::filesSelected, this, [this, rows](const QStringList& files) { Send(rows, files); });
    dialog->open();
}

FleetSendJob* FleetSendController::Send(const QList<int>& rows, const QStringList& localFiles)
{
    QList<FleetSendJob::Target> targets;
    for (int row : rows) {
        targets.append({row, m_pFleet->EndpointOf(row)});
        m_pFleet->SetSendResult(row, tr("等待发送"));
    }
    auto* job = new FleetSendJob(
        m_pFiles, targets, localFiles, QString::fromLatin1(TargetFolder),
        [this](const QList<FleetSendJob::Existing>& existing, std::function<void(bool)> answer) {
            CVarnokMessageBox::Open(m_pWindow, MsgButtonYes | MsgButtonNo, MsgIconWarning, tr("提示"),
                                    OverwriteText(existing), {},
                                    [answer = std::move(answer)](int button) { answer(button == MsgButtonYes); });
        },
        this);
    connect(job, &FleetSendJob::SignalMachineProgress, this, [this](int row, qint64 done, qint64 total) {
        if (total > 0)
            m_pFleet->SetSendResult(row, tr("发送中 %1%").arg(100 * done / total));
    });
    connect(job, &FleetSendJob::SignalMachineEnded, this, [this](int row, bool ok, const QString& summary) {
        m_pFleet->SetSendResult(row, summary);
        const FleetMachine& machine = m_pFleet->At(row);
        const QString line = tr("发送到 %1（%2）：%3").arg(machine.strSn, machine.strIp, summary);
        CDebugLog::AddLog(line);
        Q_EMIT SignalAppendLog(line, ok ? LogColors::Success : LogColors::Failure);
    });
    job->Start();
    return job;
}
