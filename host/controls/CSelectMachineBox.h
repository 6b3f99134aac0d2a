#pragma once

#include "CVarnokSelectBox.h"
#include "KorvControlsExport.h"

class QComboBox;
class QLineEdit;
class QListWidgetItem;

// The pop-up in which the user picks a machine to connect to: the machines that discovery reports,
// or an IPv4 address typed by hand. Connecting is the caller's job: the box emits the choice, shows
// itself busy, and learns the outcome through OnConnectResult.
class KORVCONTROLS_EXPORT CSelectMachineBox : public CVarnokSelectBox
{
    Q_OBJECT

public:
    enum EnumItemRole
    {
        RoleIp = Qt::UserRole + 1,
        RoleSn,
        RoleOnline,
    };

    explicit CSelectMachineBox(QWidget* parent = nullptr);

    // reply is a discovery answer, fields separated by "*": field 1 the serial number, field 3 the IP.
    // A machine already listed (same serial number, or same IP when it has none) is updated in place.
    // Returns false for a reply without a valid IPv4 address.
    bool SetMachineInfo(QString reply, bool bOnline);
    void ClearBoxInfo();
    void OnConnectResult(bool bSuccess);

    int MachineCount() const;
    bool IsConnecting() const { return m_bConnecting; }

    static bool IsValidIpv4(const QString& text);

public slots:
    void SlotConfirm() override;

signals:
    void SignalSelectRefresh();
    void SignalMachineSelected(const QString& ip, const QString& sn);

private:
    QListWidgetItem* FindItem(const QString& ip, const QString& sn) const;
    void SetConnecting(bool bConnecting);
    void MarkIpInvalid(bool bInvalid);
    // Shows the file-name encoding saved for the machine at ip.
    void ShowNameEncoding(const QString& ip);

    QLineEdit* m_pEditIp = nullptr;
    QComboBox* m_pComboEncoding = nullptr;
    bool m_bConnecting = false;
};
