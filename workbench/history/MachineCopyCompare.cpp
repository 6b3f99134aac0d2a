#include "MachineCopyCompare.h"

#include "CVarnokMessageBox.h"
#include "MachineFileService.h"
#include "MachineJob.h"
#include "ProgramCompareDialog.h"

#include <QCoreApplication>
#include <QPointer>
#include <QTemporaryDir>

void MachineCopyCompare::Open(QWidget* parent, MachineFileService* files, const MachineEndpoint& endpoint,
                              const QString& leftTitle, const QString& leftPath, const QString& machinePath,
                              std::function<void()> closed)
{
    auto folder = std::make_shared<QTemporaryDir>();
    const QString copy = folder->filePath(machinePath.mid(machinePath.lastIndexOf(QLatin1Char('/')) + 1));
    MachineJob* fetch = files->Fetch(endpoint, machinePath, copy);
    const QPointer<QWidget> window(parent);
    QObject::connect(fetch, &MachineJob::SignalResult, files, [=](MachineJob* job) {
        const auto done = [closed]() {
            if (closed)
                closed();
        };
        if (job->GetResult() != MachineJob::Result::Succeeded) {
            CVarnokMessageBox::Open(
                window, MsgButtonConfirm, MsgIconFailure, QCoreApplication::translate("MachineCopyCompare", "提示"),
                QCoreApplication::translate("MachineCopyCompare", "无法读取机床当前版本：%1").arg(machinePath), {},
                [done](int) { done(); });
            return;
        }
        auto* dialog = new ProgramCompareDialog(
            leftTitle, leftPath, QCoreApplication::translate("MachineCopyCompare", "机床当前版本：%1").arg(machinePath),
            copy, window);
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        // The fetched copy goes with the dialog.
        QObject::connect(dialog, &QObject::destroyed, [folder]() {});
        QObject::connect(dialog, &QDialog::finished, dialog, done);
        dialog->open();
    });
}
