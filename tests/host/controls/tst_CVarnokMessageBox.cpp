#include "CVarnokMessageBox.h"

#include <QApplication>
#include <QCheckBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

class tst_CVarnokMessageBox : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void responderSeesEveryCall();
    void dialogReturnsPressedButton_data();
    void dialogReturnsPressedButton();
    void openAnswersLaterWithoutALoop();
    void dialogReturnsCheckBoxState();
    void autoCloseClosesByItself();

private:
    // Runs `act` on the modal box once it is shown (the box is the argument).
    void OnModal(const std::function<void(QWidget*)>& act);
    QTimer m_poll;
};

void tst_CVarnokMessageBox::cleanup()
{
    CVarnokMessageBox::SetTestResponder({});
    CVarnokMessageBox::SetAutoCloseInterval(3000);
    m_poll.disconnect();
    m_poll.stop();
}

void tst_CVarnokMessageBox::OnModal(const std::function<void(QWidget*)>& act)
{
    m_poll.disconnect();
    m_poll.setInterval(5);
    connect(&m_poll, &QTimer::timeout, this, [this, act] {
        QWidget* box = QApplication::activeModalWidget();
        if (!box || !box->isVisible())
            return;
        m_poll.stop();
        QVERIFY(QTest::qWaitForWindowExposed(box));
        act(box);
    });
    m_poll.start();
}

void tst_CVarnokMessageBox::responderSeesEveryCall()
{
    QStringList seen; // what each box would have shown, one line per call
    CVarnokMessageBox::SetTestResponder([&](const StructMsgBoxRequest& r) {
        seen << QStringLiteral("%1|%2|%3|%4|%5|%6|%7|%8|%9")
                    .arg(r.strTitle, r.strText)
                    .arg(r.iButtons)
                    .arg(int(r.eIcon))
                    .arg(int(r.bHasCheckBox))
                    .arg(r.strCheckText)
                    .arg(int(r.bChecked))
                    .arg(r.mapButtonTexts.value(MsgButtonYes))
                    .arg(int(r.bAutoClose));
        return StructMsgBoxAnswer{8, true};
    });
    const QMap<EnumMsgButtonFunction, QString> texts{{MsgButtonYes, QStringLiteral("保存本地版本")}};
    QCOMPARE(CVarnokMessageBox::ShowWindow(nullptr, 2060, MsgIconWarning, "冲突", "a.nc", texts), 8);
    QCOMPARE(
        CVarnokMessageBox::ShowWindowWithCheckBox(nullptr, 1, MsgIconWarning, "冲突", "a.nc", "不再提醒", true, texts),
        qMakePair(8, true));
    CVarnokMessageBox::ShowWindowAutoClose(nullptr, 1, MsgIconFailure, "冲突", "a.nc");
    QCOMPARE(seen, QStringList({"冲突|a.nc|2060|4|0||0|保存本地版本|0", "冲突|a.nc|1|4|1|不再提醒|1|保存本地版本|0",
                                "冲突|a.nc|1|3|0||0||1"}));
    QVERIFY(!QApplication::activeModalWidget());
}

void tst_CVarnokMessageBox::dialogReturnsPressedButton_data()
{
    QTest::addColumn<QString>("press"); // a button's object name, or empty for Escape
    QTest::addColumn<int>("result");
    QTest::newRow("no") << "m_btnCode8" << int(MsgButtonNo);
    QTest::newRow("title close mark") << "m_btnTitleClose" << MsgResultClosed;
    QTest::newRow("escape") << "" << MsgResultClosed;
    QTest::newRow("enter takes the highlighted answer") << "enter" << int(MsgButtonYes);
}

void tst_CVarnokMessageBox::dialogReturnsPressedButton()
{
    QFETCH(QString, press);
    QFETCH(int, result);
    OnModal([press](QWidget* box) {
        if (press.isEmpty())
            return QTest::keyClick(box, Qt::Key_Escape);
        if (press == QLatin1String("enter")) {
            QVERIFY(box->focusWidget());
            return QTest::keyClick(box->focusWidget(), Qt::Key_Return);
        }
        auto* push = box->findChild<QPushButton*>(press);
        QVERIFY(push);
        QTest::mouseClick(push, Qt::LeftButton);
    });
    QCOMPARE(CVarnokMessageBox::ShowWindow(nullptr, 2060, MsgIconWarning, QStringLiteral("提示"), QStringLiteral("?")),
             result);
}

void tst_CVarnokMessageBox::openAnswersLaterWithoutALoop()
{
    int answer = -1;
    CVarnokMessageBox::Open(nullptr, MsgButtonYes | MsgButtonNo, MsgIconWarning, QStringLiteral("提示"),
                            QStringLiteral("q"), {}, [&](int button) { answer = button; });
    // The call returned with the box open: no loop of its own ran inside it.
    QCOMPARE(answer, -1);
    QTRY_VERIFY(QApplication::activeModalWidget());
    auto* no = QApplication::activeModalWidget()->findChild<QPushButton*>(QStringLiteral("m_btnCode8"));
    QVERIFY(no);
    no->click();
    QTRY_COMPARE(answer, int(MsgButtonNo));

    CVarnokMessageBox::SetTestResponder([](const StructMsgBoxRequest&) {
        return StructMsgBoxAnswer{MsgButtonYes, false};
    });
    CVarnokMessageBox::Open(nullptr, MsgButtonYes | MsgButtonNo, MsgIconWarning, QStringLiteral("提示"),
                            QStringLiteral("q"), {}, [&](int button) { answer = button; });
    QCOMPARE(answer, int(MsgButtonNo));
    QTRY_COMPARE(answer, int(MsgButtonYes));
}

void tst_CVarnokMessageBox::dialogReturnsCheckBoxState()
{
    bool bInitial = true;
    OnModal([&](QWidget* box) {
        auto* check = box->findChild<QCheckBox*>();
        QVERIFY(check);
        bInitial = check->isChecked();
        QTest::mouseClick(check, Qt::LeftButton, {}, QPoint(8, check->height() / 2));
        box->findChild<QPushButton*>(QStringLiteral("m_btnCode1"))->click();
    });
    const QPair<int, bool> answer =
        CVarnokMessageBox::ShowWindowWithCheckBox(nullptr, 1, MsgIconWarning, QStringLiteral("提示"),
                                                  QStringLiteral("版本过低"), QStringLiteral("不再提醒"), false);
    QVERIFY(!bInitial);
    QCOMPARE(answer.first, 1);
    QCOMPARE(answer.second, true);
}

void tst_CVarnokMessageBox::autoCloseClosesByItself()
{
    CVarnokMessageBox::SetAutoCloseInterval(30);
    QCOMPARE(CVarnokMessageBox::ShowWindowAutoClose(nullptr, 1, MsgIconInformation, QStringLiteral("提示"),
                                                    QStringLiteral("获取机床文件列表失败，请检查机床连接后重试！")),
             MsgResultClosed);
    QVERIFY(!QApplication::activeModalWidget());
}

QTEST_MAIN(tst_CVarnokMessageBox)
#include "tst_CVarnokMessageBox.moc"
