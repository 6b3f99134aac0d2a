#include "FtpNameRules.h"
#include "FtpSettings.h"
#include "MachineFileService.h"
#include "SimWorkspaceFixture.h"
#include "workspace/Workspace.h"

#include <QApplication>
#include <QDir>
#include <QTest>

namespace {
const QString Ip = QStringLiteral("127.0.0.1");
} // namespace

// The workspace against controllers that tell their login limit only after the password, and
// that store only 8.3 names: what arrives on the machine's disk.
class TestControllerLogins : public QObject, public SimWorkspaceFixture
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { SetUpFixture(); }
    void init();
    void cleanup() { TearDownFixture(); }

    void loginLimitToldAfterPassword();
    void eightDotThreeStore();
};

void TestControllerLogins::init()
{
    ResetFixture();
    FtpSettings::SetNameEncodingFor(Ip, "UTF-8");
    FtpNameRules::Save(Ip, FtpNameRules());
}

// Eight uploads at once against one login: the refused ones wait for it instead of failing as a
// wrong password, and the transfer list learns to run one at a time.
void TestControllerLogins::loginLimitToldAfterPassword()
{
    StartSimulator(QStringList{"--max-sessions", "1", "--login-limit-reply", "530"});
    ConnectWorkspace();
    QList<QByteArray> contents;
    for (int i = 0; i < 8; ++i) {
        contents << RandomBytes(16 * 1024 + i);
        Write(LocalFile(QStringLiteral("L%1.NC").arg(i)), contents.last());
    }
    for (int i = 0; i < 8; ++i)
        m_workspace->SlotUpLoadFile(LocalFile(QStringLiteral("L%1.NC").arg(i)), QStringLiteral("/L%1.NC").arg(i));
    for (int i = 0; i < 8; ++i)
        QTRY_COMPARE_WITH_TIMEOUT(Read(MachineFile(QStringLiteral("L%1.NC").arg(i))), contents.at(i), 60000);
    QCOMPARE(m_workspace->FileService()->MaxTransfers(), 1);
}

// An old board (slow greeting, no passive mode, hidden dot-files, GBK) that stores only upper-case
// 8.3 names: a new program and its replacement arrive, and no temporary name is left behind.
void TestControllerLogins::eightDotThreeStore()
{
    FtpSettings::SetNameEncodingFor(Ip, "GBK");
    FtpNameRules rules;
    rules.bEightDotThree = true;
    rules.allowedCharacters = QStringLiteral("A-Z0-9_.");
    FtpNameRules::Save(Ip, rules);
    StartSimulator(QStringList{"--profile", "embedded-8.3"});
    ConnectWorkspace();
    for (const int size : {40 * 1024, 12 * 1024}) {
        const QByteArray bytes = RandomBytes(size);
        Write(LocalFile(QStringLiteral("PART1.NC")), bytes);
        m_workspace->SlotUpLoadFile(LocalFile(QStringLiteral("PART1.NC")), QStringLiteral("/PART1.NC"));
        QTRY_COMPARE_WITH_TIMEOUT(Read(MachineFile(QStringLiteral("PART1.NC"))), bytes, 20000);
        QTRY_VERIFY_WITH_TIMEOUT(!m_workspace->FileService()->IsBusy(), 20000);
    }
    QCOMPARE(QDir(m_rootDir.path()).entryList(QDir::Files | QDir::Hidden), QStringList{"PART1.NC"});
}

QTEST_MAIN(TestControllerLogins)
#include "tst_ControllerLogins.moc"
