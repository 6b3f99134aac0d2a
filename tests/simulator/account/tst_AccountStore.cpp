#include "AccountService.h"
#include "AccountStore.h"

#include <QFile>
#include <QImage>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

namespace {
const QString Nation = QStringLiteral("86");
const QString Mobile = QStringLiteral("13812345678");
} // namespace

// The account service's rules, without the wire.
class TestAccountStore : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pictureIsARealJpeg();
    void pictureCodeIsCheckedOnce_data();
    void pictureCodeIsCheckedOnce();
    void requestsAreLimitedPerNumber();
    void bindingsSurviveARestart();
    void answersInXml();

private:
    AccountOptions Options() const
    {
        AccountOptions options;
        options.dataFile = m_dir.filePath(QStringLiteral("bindings.json"));
        return options;
    }
    // Issues a picture and returns its id and text.
    static QPair<QString, QString> Picture(AccountStore& store, const QString& mobile = Mobile)
    {
        QSignalSpy issued(&store, &AccountStore::SignalImageIssued);
        const AccountAnswer answer = store.RequestImage(Nation, mobile);
        if (answer.iCode != 0 || issued.isEmpty())
            return {};
        return {issued.first().at(0).toString(), issued.first().at(1).toString()};
    }

    QTemporaryDir m_dir;
};

void TestAccountStore::pictureIsARealJpeg()
{
    AccountStore store(Options());
    const AccountAnswer answer = store.RequestImage(Nation, Mobile);
    QCOMPARE(answer.iCode, 0);
    const QImage image =
        QImage::fromData(QByteArray::fromBase64(answer.objData.value("image").toString().toLatin1()), "JPEG");
    QCOMPARE(image.size(), QSize(120, 40));
    // Characters and noise, not a blank card: many distinct colours.
    QSet<QRgb> colours;
    for (int y = 0; y < image.height(); y += 2)
        for (int x = 0; x < image.width(); x += 2)
            colours.insert(image.pixel(x, y));
    QVERIFY2(colours.size() > 200, qPrintable(QString::number(colours.size())));
}

void TestAccountStore::pictureCodeIsCheckedOnce_data()
{
    QTest::addColumn<QString>("first"); // the first answer: "right", "late", "other number"
    QTest::addColumn<int>("firstCode");
    QTest::newRow("right, in lower case") << "right" << 0;
    QTest::newRow("after its life") << "late" << int(AccountStore::CodeImageCodeExpired);
    QTest::newRow("for another number") << "other number" << int(AccountStore::CodeImageCodeExpired);
}

void TestAccountStore::pictureCodeIsCheckedOnce()
{
    QFETCH(QString, first);
    QFETCH(int, firstCode);
    AccountOptions options = Options();
    options.imageTtlMs = 300;
    AccountStore store(options);
    const auto [imgId, text] = Picture(store);
    QVERIFY(!imgId.isEmpty());
    if (first == "late")
        QTest::qWait(400);
    const QString mobile = first == "other number" ? QStringLiteral("13900000000") : Mobile;
    QCOMPARE(store.RequestSms(Nation, mobile, imgId, text.toLower()).iCode, firstCode);
    // Whatever the first answer was, the picture is used up.
    QCOMPARE(store.RequestSms(Nation, Mobile, imgId, text).iCode, int(AccountStore::CodeImageCodeExpired));
}

void TestAccountStore::requestsAreLimitedPerNumber()
{
    AccountOptions options = Options();
    options.rateLimit = 4;
    options.rateWindowMs = 1500;
    options.smsIntervalMs = 60000;
    AccountStore store(options);
    const auto [imgId, text] = Picture(store);
    QCOMPARE(store.RequestSms(Nation, Mobile, imgId, text).iCode, 0);
    // A second SMS within the resend interval is refused even with a right picture.
    const auto [imgId2, text2] = Picture(store);
    QCOMPARE(store.RequestSms(Nation, Mobile, imgId2, text2).iCode, int(AccountStore::CodeSmsTooSoon));
    QCOMPARE(store.RequestImage(Nation, Mobile).iCode, int(AccountStore::CodeTooManyRequests));
    QCOMPARE(store.RequestImage(Nation, QStringLiteral("13900000000")).iCode, 0);
    QTRY_COMPARE_WITH_TIMEOUT(store.RequestImage(Nation, Mobile).iCode, 0, 5000);
}

void TestAccountStore::bindingsSurviveARestart()
{
    const AccountOptions options = Options();
    {
        AccountStore store(options);
        QSignalSpy sms(&store, &AccountStore::SignalSmsSent);
        const auto [imgId, text] = Picture(store);
        QCOMPARE(store.RequestSms(Nation, Mobile, imgId, text).iCode, 0);
        QCOMPARE(sms.count(), 1);
        QCOMPARE(store.Bind(Nation, Mobile, sms.first().at(1).toString(), QStringLiteral("PB01X")).iCode, 0);
    }
    AccountStore reopened(options);
    QVERIFY(reopened.LoadError().isEmpty());
    QCOMPARE(reopened.Bindings().value("PB01X").toObject().value("mobile").toString(), Mobile);

    QFile file(options.dataFile);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write("{ not json");
    file.close();
    AccountService service(options);
    QString error;
    QVERIFY(!service.Start(&error));
    QVERIFY(error.startsWith(options.dataFile));
}

void TestAccountStore::answersInXml()
{
    AccountService service(Options());
    QCOMPARE(service.Answer("/api/v1/nothing", "{}"),
             QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\"?><response><code>404</code><msg>未知请求</msg>"
                        "<data/></response>\n"));
    const QByteArray refused = service.Answer("/api/v1/captcha/image", R"({"nation-code":"86","mobile":"12"})");
    QVERIFY(refused.contains("<code>1001</code>"));
}

QTEST_MAIN(TestAccountStore)
#include "tst_AccountStore.moc"
