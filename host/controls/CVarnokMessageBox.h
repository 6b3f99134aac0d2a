#pragma once

#include "CFixedSizePopWidget.h"
#include "KorvControlsExport.h"

#include <QMap>
#include <QPair>
#include <QString>
#include <functional>

class QAbstractButton;
class QCheckBox;
class QHBoxLayout;
class QTimer;

// Icon codes of the message box.
enum EnumMsgIcon
{
    MsgIconNone = 0,
    MsgIconInformation = 1, // blue "i": notices such as a lost connection
    MsgIconSuccess = 2,     // green tick
    MsgIconFailure = 3,     // red cross: an operation failed
    MsgIconWarning = 4,     // orange "!": warnings and questions
};

// Button codes; a box shows every button whose bit is set in the buttons argument, and returns the
// code of the button pressed. 1 alone gives the single confirm button; Yes | No | Ignore is 2060.
enum EnumMsgButtonFunction
{
    MsgButtonConfirm = 0x0001, // "确定"
    MsgButtonCancel = 0x0002,  // "取消"
    MsgButtonYes = 0x0004,     // "是"
    MsgButtonNo = 0x0008,      // "否"
    MsgButtonIgnore = 0x0800,  // "忽略"
};

// Returned when the box was closed without a button: close mark, Escape, or an automatic close.
constexpr int MsgResultClosed = 0;

// Everything a box would show; handed to the test responder instead of showing the box.
struct StructMsgBoxRequest
{
    QString strTitle;
    QString strText;
    int iButtons = MsgButtonConfirm;
    EnumMsgIcon eIcon = MsgIconNone;
    bool bHasCheckBox = false;
    QString strCheckText;
    bool bChecked = false;
    QMap<EnumMsgButtonFunction, QString> mapButtonTexts; // as given by the caller
    bool bAutoClose = false;
};

struct StructMsgBoxAnswer
{
    int iButton = MsgResultClosed;
    bool bChecked = false;
};

using MsgBoxResponder = std::function<StructMsgBoxAnswer(const StructMsgBoxRequest&)>;

// The host's modal message box. Each static call shows the box, waits for the user and returns the
// button code. While a test responder is installed no box is shown: the responder answers instead.
class KORVCONTROLS_EXPORT CVarnokMessageBox : public CFixedSizePopWidget
{
    Q_OBJECT

public:
    static int ShowWindow(QWidget* parent, int buttons, EnumMsgIcon icon, const QString& title, const QString& text,
                          const QMap<EnumMsgButtonFunction, QString>& buttonTexts = {});
    // Returns the button code and whether the check box was ticked when the box closed.
    static QPair<int, bool> ShowWindowWithCheckBox(QWidget* parent, int buttons, EnumMsgIcon icon, const QString& title,
                                                   const QString& text, const QString& checkText, bool checked,
                                                   const QMap<EnumMsgButtonFunction, QString>& buttonTexts = {});
    // Closes itself after AutoCloseInterval() milliseconds, returning MsgResultClosed then.
    static int ShowWindowAutoClose(QWidget* parent, int buttons, EnumMsgIcon icon, const QString& title,
                                   const QString& text);

    // Shows the box without waiting (open(), no nested event loop) and hands the answer to
    // onAnswer once the user chose; with a test responder the answer comes on the next turn of
    // the event loop. The one way to ask from a socket, timer or job slot.
    static void Open(QWidget* parent, const StructMsgBoxRequest& request,
                     std::function<void(const StructMsgBoxAnswer&)> onAnswer);
    static void Open(QWidget* parent, int buttons, EnumMsgIcon icon, const QString& title, const QString& text,
                     const QMap<EnumMsgButtonFunction, QString>& buttonTexts = {},
                     std::function<void(int)> onAnswer = {});

    static void SetAutoCloseInterval(int milliseconds);
    static int AutoCloseInterval();

    // Installs (or, with an empty function, removes) the responder that answers every box.
    static void SetTestResponder(MsgBoxResponder responder);

    // The button texts a box shows: the caller's texts over the defaults.
    static QString ButtonText(EnumMsgButtonFunction button, const QMap<EnumMsgButtonFunction, QString>& buttonTexts);

private:
    explicit CVarnokMessageBox(QWidget* parent, const StructMsgBoxRequest& request);

    static StructMsgBoxAnswer Run(QWidget* parent, const StructMsgBoxRequest& request);
    void AddButton(EnumMsgButtonFunction button, const StructMsgBoxRequest& request, bool bPrimary);

    QCheckBox* m_pCheckBox = nullptr;
    QTimer* m_pAutoCloseTimer = nullptr;
    int m_iResult = MsgResultClosed;
    QHBoxLayout* m_pButtonLayout = nullptr;
};
