#include "AccountService.h"
#include "CamBaseTextHelper.h"
#include "device/VerificationImageWindow.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTest>
#include <memory>

namespace {
const QString Fetching = QStringLiteral("正在获取验证码图片...");
const QString Failed = QStringLiteral("获取验证码图片失败");

void SetBaseUrl(const QString& url)
{
    CamBaseTextHelper::instance()->SetLocalSettingCache(CamBaseTextHelper::SettingTypeLocal,
                                                        QStringLiteral("Account/BaseUrl"), url, true);
}

template <typename T> T* Child(const QWidget* window, const char* name)
{
    return window->findChild<T*>(QLatin1String(name));
}
} // namespace

// The picture-code window against the account service on loopback.
class TestVerificationImageWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void fetchShowsThePicture();
    void failedFetch_data();
    void failedFetch();
    void everyCloseEmitsOnce_data();
    void everyCloseEmitsOnce();

private:
    // A shown window whose first fetch has been answered.
    std::unique_ptr<VerificationImageWindow> OpenWindow(const QString& mobile);

    QTemporaryDir m_config;
    std::unique_ptr<AccountService> m_pService;
};

void TestVerificationImageWindow::initTestCase()
{
    qputenv("KORV_CONFIG_DIR", m_config.path().toUtf8());
    AccountOptions options;
    options.port = 0;
    options.dataFile = m_config.filePath(QStringLiteral("bindings.json"));
    options.rateLimit = 1000;
    m_pService = std::make_unique<AccountService>(options);
    QString error;
    QVERIFY2(m_pService->Start(&error), qPrintable(error));
    SetBaseUrl(m_pService->BaseUrl());
}

std::unique_ptr<VerificationImageWindow> TestVerificationImageWindow::OpenWindow(const QString& mobile)
{
    auto window = std::make_unique<VerificationImageWindow>(QStringLiteral("86"), mobile);
    window->show();
    if (!QTest::qWaitForWindowExposed(window.get()))
        return nullptr;
    auto* change = Child<QPushButton>(window.get(), "changeBtn");
    if (!QTest::qWaitFor([change] { return change->isEnabled(); }, 10000))
        return nullptr;
    return window;
}

void TestVerificationImageWindow::fetchShowsThePicture()
{
    VerificationImageWindow window(QStringLiteral("86"), QStringLiteral("13812345678"));
    auto* change = Child<QPushButton>(&window, "changeBtn");
    auto* confirm = Child<QPushButton>(&window, "confirmBtn");
    auto* picture = Child<QLabel>(&window, "verificationImageLabel");
    window.show();

    // The first fetch starts at construction; nothing can be pressed until it is answered.
    QVERIFY(!change->isEnabled());
    QVERIFY(!confirm->isEnabled());
    QCOMPARE(picture->text(), Fetching);
    QTRY_VERIFY_WITH_TIMEOUT(change->isEnabled(), 10000);
    QVERIFY(confirm->isEnabled());
    QVERIFY(!picture->pixmap().isNull());
    const QString firstId = window.ImageId();

    // "换一张" fetches a new picture and is disabled again until it arrives.
    change->click();
    QVERIFY(!change->isEnabled());
    QVERIFY(!confirm->isEnabled());
    QTRY_VERIFY_WITH_TIMEOUT(change->isEnabled(), 10000);
    QVERIFY(window.ImageId() != firstId);
}

void TestVerificationImageWindow::failedFetch_data()
{
    QTest::addColumn<QString>("mobile");
    QTest::addColumn<bool>("serviceDown");
    QTest::newRow("refused number (non-zero code)") << "123" << false;
    QTest::newRow("no answer at all") << "13812345678" << true;
}

void TestVerificationImageWindow::failedFetch()
{
    QFETCH(QString, mobile);
    QFETCH(bool, serviceDown);
    if (serviceDown) {
        QTcpServer closed;
        QVERIFY(closed.listen(QHostAddress::LocalHost));
        SetBaseUrl(QStringLiteral("http://127.0.0.1:%1").arg(closed.serverPort()));
    }
    const std::unique_ptr<VerificationImageWindow> window = OpenWindow(mobile);
    SetBaseUrl(m_pService->BaseUrl());
    QVERIFY(window);
    QCOMPARE(Child<QLabel>(window.get(), "verificationImageLabel")->text(), Failed);
    QVERIFY(!Child<QPushButton>(window.get(), "confirmBtn")->isEnabled());
}

void TestVerificationImageWindow::everyCloseEmitsOnce_data()
{
    QTest::addColumn<QString>("how");
    QTest::addColumn<QString>("entered");
    QTest::newRow("confirm copies the typed text") << "confirmBtn" << QStringLiteral("ab3k");
    QTest::newRow("cancel after typing") << "cancelBtn" << QString();
    QTest::newRow("closed by the window system") << "close()" << QString();
}

void TestVerificationImageWindow::everyCloseEmitsOnce()
{
    QFETCH(QString, how);
    QFETCH(QString, entered);
    const std::unique_ptr<VerificationImageWindow> window = OpenWindow(QStringLiteral("13812345678"));
    QVERIFY(window);
    QSignalSpy closed(window.get(), &VerificationImageWindow::SignalClose);
    QTest::keyClicks(Child<QLineEdit>(window.get(), "inputLineEdit"), QStringLiteral("ab3k"));
    if (how == "close()")
        window->close();
    else
        window->findChild<QPushButton*>(how)->click();
    QCOMPARE(closed.count(), 1);
    QVERIFY(!window->isVisible());
    QCOMPARE(window->EnteredCode(), entered);
    QVERIFY(!window->ImageId().isEmpty());
}

QTEST_MAIN(TestVerificationImageWindow)
#include "tst_VerificationImageWindow.moc"
