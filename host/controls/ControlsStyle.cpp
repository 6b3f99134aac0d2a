#include "ControlsStyle.h"

QString ControlsStyle::ButtonStyleSheet()
{
    return QStringLiteral(
        "QPushButton{min-width:76px;min-height:30px;padding:0px 14px;border-radius:4px;"
        "border:1px solid #dcdfe6;background:#ffffff;color:#333333;}"
        "QPushButton:hover{border-color:#368bd4;color:#368bd4;}"
        "QPushButton:pressed{background:#eaf3fb;}"
        "QPushButton:focus{border:2px solid #368bd4;}"
        "QPushButton:disabled{color:#b0b4ba;border-color:#e8eaee;background:#f7f8fa;}"
        "QPushButton[default=\"true\"]{background:#368bd4;border-color:#368bd4;color:#ffffff;}"
        "QPushButton[default=\"true\"]:hover{background:#4a9ae0;color:#ffffff;}"
        "QPushButton[default=\"true\"]:pressed{background:#2b78ba;}"
        "QPushButton[default=\"true\"]:focus{border:2px solid #1d4f7a;}"
        "QPushButton[default=\"true\"]:disabled{background:#9cc5ea;border-color:#9cc5ea;color:#ffffff;}");
}

QString ControlsStyle::PopupStyleSheet()
{
    return ButtonStyleSheet() +
           QStringLiteral(
               "#m_widgetFrame{background:#ffffff;border:1px solid #dcdfe6;border-radius:4px;}"
               "#m_widgetTitle{background:transparent;border-bottom:1px solid #eef0f3;}"
               "#m_labelTitle{color:#333333;background:transparent;}"
               "#m_btnTitleClose{border:none;border-radius:4px;background:transparent;color:#8a8f99;"
               "font-size:16px;min-width:24px;min-height:24px;}"
               "#m_btnTitleClose:hover{background:#f0f2f5;color:#333333;}"
               "QLabel{color:#333333;background:transparent;}"
               "QLineEdit{min-height:28px;padding:0px 8px;border:1px solid #dcdfe6;border-radius:4px;"
               "color:#333333;background:#ffffff;selection-background-color:#368bd4;}"
               "QLineEdit:focus{border-color:#368bd4;}"
               "QLineEdit[invalid=\"true\"]{border-color:#dc3232;}"
               "QListWidget{border:1px solid #dcdfe6;border-radius:4px;color:#333333;background:#ffffff;outline:none;}"
               "QListWidget::item{min-height:30px;padding:0px 6px;}"
               "QListWidget::item:hover{background:#f2f7fc;}"
               "QListWidget::item:selected{background:#e3effa;color:#333333;}");
}
