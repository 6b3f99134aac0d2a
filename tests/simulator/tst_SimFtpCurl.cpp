#include "CncSimulator.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>
#include <memory>

// The simulator's FTP server as libcurl sees it, through the curl command-line tool. Switches
// that the FTP and file-page suites already drive (refusals, drops, rate, passive mode) are left to them.
class tst_SimFtpCurl : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void resumeAndAppend();
    void controllerSwitches();
    void leavingTheRootIsRefused_data();
    void leavingTheRootIsRefused();

private:
    int Curl(const QStringList& arguments, QByteArray* output = nullptr);
    QString Url(const QString& path = "/") const;
    QByteArray WriteFile(const QString& relative, int size);
    QByteArray ReadFile(const QString& relative) const;
    QString LocalFile(const QString& name, const QByteArray& data);

    std::unique_ptr<QTemporaryDir> m_root;
    std::unique_ptr<QTemporaryDir> m_outside;
    std::unique_ptr<QTemporaryDir> m_local;
    std::unique_ptr<CncSimulator> m_sim;
};

void tst_SimFtpCurl::init()
{
    m_root = std::make_unique<QTemporaryDir>();
    m_outside = std::make_unique<QTemporaryDir>();
    m_local = std::make_unique<QTemporaryDir>();
    QVERIFY(QDir(m_root->path()).mkpath("程序/sub"));
    WriteFile("part.nc", 1000);
    WriteFile("程序/零件 A.nc", 10);
    QFile secret(m_outside->filePath("secret.txt"));
    QVERIFY(secret.open(QIODevice::WriteOnly));
    secret.write("secret");
    secret.close();
    QVERIFY(QFile::link(m_outside->path(), m_root->filePath("out")));
    SimOptions options;
    options.rootDir = m_root->path();
    options.ftpPort = options.infoPort = options.snPort = options.discoveryPort = 0;
    m_sim = std::make_unique<CncSimulator>(options);
    QString error;
    QVERIFY2(m_sim->Start(&error), qPrintable(error));
}

void tst_SimFtpCurl::cleanup()
{
    m_sim.reset();
}

int tst_SimFtpCurl::Curl(const QStringList& arguments, QByteArray* output)
{
    QProcess curl;
    curl.start("curl", QStringList{"-s", "-S", "--max-time", "30"} + arguments);
    // The server runs on this thread: keep the event loop turning while curl works.
    if (!QTest::qWaitFor([&curl] { return curl.state() == QProcess::NotRunning; }, 40000))
        return -1;
    if (output)
        *output = curl.readAllStandardOutput();
    return curl.exitStatus() == QProcess::NormalExit ? curl.exitCode() : -1;
}

QString tst_SimFtpCurl::Url(const QString& path) const
{
    return QStringLiteral("ftp://127.0.0.1:%1%2").arg(m_sim->FtpPort()).arg(path);
}

QByteArray tst_SimFtpCurl::WriteFile(const QString& relative, int size)
{
    QByteArray data(size, '\0');
    for (char& c : data)
        c = char(QRandomGenerator::global()->bounded(256));
    QFile file(m_root->filePath(relative));
    if (!file.open(QIODevice::WriteOnly))
        return QByteArray();
    file.write(data);
    return data;
}

QByteArray tst_SimFtpCurl::ReadFile(const QString& relative) const
{
    QFile file(m_root->filePath(relative));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
}

QString tst_SimFtpCurl::LocalFile(const QString& name, const QByteArray& data)
{
    QFile file(m_local->filePath(name));
    if (file.open(QIODevice::WriteOnly))
        file.write(data);
    return file.fileName();
}

void tst_SimFtpCurl::resumeAndAppend()
{
    const QByteArray original = ReadFile("part.nc");
    QByteArray tail;
    QCOMPARE(Curl({"-r", "600-", Url("/part.nc")}, &tail), 0);
    QCOMPARE(tail, original.mid(600));

    const QString extra = LocalFile("extra.bin", "appended");
    QCOMPARE(Curl({"-a", "-T", extra, Url("/part.nc")}), 0);
    QCOMPARE(ReadFile("part.nc"), original + "appended");
}

// The switches that make the server behave like a controller's, seen from a plain client.
void tst_SimFtpCurl::controllerSwitches()
{
    SimOptions& options = m_sim->Options();
    options.listStyle = "dos";
    options.nameEncoding = "gbk";
    QByteArray listing;
    const QString folder = QString::fromLatin1(QByteArray::fromHex("b3ccd0f2").toPercentEncoding()); // "程序"
    QCOMPARE(Curl({Url("/" + folder + "/")}, &listing), 0);
    QVERIFY2(listing.contains("<DIR>          sub"), listing.constData());
    QVERIFY2(listing.contains(QByteArray(" 10 ") + QByteArray::fromHex("c1e3bcfe2041") + ".nc"), listing.constData());

    // 1010 bytes are stored already: a quota of 1500 leaves room for 490.
    options.diskQuota = 1500;
    const QString upload = LocalFile("up.bin", QByteArray(600, 'x'));
    QCOMPARE(Curl({"-T", upload, Url("/up.bin")}), 70);
    options.diskQuota = -1;
    options.truncateAt = 100;
    QCOMPARE(Curl({"-T", upload, Url("/up.bin")}), 0);
    QCOMPARE(ReadFile("up.bin").size(), 100);
}

void tst_SimFtpCurl::leavingTheRootIsRefused_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("CWD-above-root") << QStringList{"-Q", "CWD ..", "-o", "/dev/null", "/"};
    QTest::newRow("percent-encoded-dotdot") << QStringList{"/%2e%2e/"};
    QTest::newRow("list-through-link") << QStringList{"/out/"};
    QTest::newRow("download-through-link") << QStringList{"/out/secret.txt"};
    QTest::newRow("MKD-above-root") << QStringList{"-Q", "MKD ../escaped", "-o", "/dev/null", "/"};
    QTest::newRow("RNTO-above-root") << QStringList{"-Q", "RNFR part.nc", "-Q", "RNTO ../part.nc",
                                                    "-o", "/dev/null",    "/"};
    QTest::newRow("DELE-through-link") << QStringList{"-Q", "DELE out/secret.txt", "-o", "/dev/null", "/"};
    QTest::newRow("upload-through-link") << QStringList{"-T", "SOURCE", "/out/planted.txt"};
}

void tst_SimFtpCurl::leavingTheRootIsRefused()
{
    QFETCH(QStringList, arguments);
    const QString source = LocalFile("planted.txt", "planted");
    arguments.replaceInStrings(QRegularExpression("^SOURCE$"), source);
    arguments.last() = Url(arguments.last());
    QByteArray output;
    QVERIFY(Curl(arguments, &output) != 0);
    QVERIFY(!output.contains("secret"));
    QCOMPARE(QDir(m_outside->path()).entryList(QDir::Files), QStringList{"secret.txt"});
    QVERIFY(!QFileInfo::exists(QFileInfo(m_root->path()).dir().filePath("escaped")));
    QVERIFY(QFileInfo::exists(m_root->filePath("part.nc")));
}

QTEST_GUILESS_MAIN(tst_SimFtpCurl)
#include "tst_SimFtpCurl.moc"
