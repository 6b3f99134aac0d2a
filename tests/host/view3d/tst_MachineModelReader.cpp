#include "MachineModelReader.h"

#include <QFile>
#include <QTest>

namespace {
QString shippedModelPath()
{
    return qEnvironmentVariable("KORV_SOURCE_DIR") + QStringLiteral("/host/view3d/MachineModel/config/Config3D.ini");
}

const char* const kSmallModel = "[Machine]\n"
                                "Name=test\n"
                                "[Part.Base]\n"
                                "Box=0,0,-5,100,100,10\n"
                                "[Part.Table]\n"
                                "Parent=Base\n"
                                "Axis=Y\n"
                                "Direction=0,-1,0\n"
                                "Travel=-50,50\n"
                                "Box=0,0,2,40,40,4\n"
                                "[Part.Rotary]\n"
                                "Parent=Table\n"
                                "Axis=C\n"
                                "Direction=0,0,2\n"
                                "Pivot=10,0,0\n"
                                "Offset=0,0,4\n"
                                "Cylinder=10,0,1,5,2,Z,#ff0000\n"
                                "[Stock]\n"
                                "Parent=Rotary\n"
                                "Origin=10,0,2\n";
} // namespace

class tst_MachineModelReader : public QObject
{
    Q_OBJECT

private slots:
    void shippedModelLoads();
    void documentedExampleLoads();
    void brokenModelsAreRejected_data();
    void brokenModelsAreRejected();
    void truncatedFilesNeverCrash();
    void linearAndRotaryAxesMoveTheirParts();
};

void tst_MachineModelReader::shippedModelLoads()
{
    QString error;
    const std::optional<MachineModel> model = MachineModelReader::ReadFile(shippedModelPath(), &error);
    QVERIFY2(model, qPrintable(error));
    // Every axis the status page sends moves some part.
    for (MachineAxis axis : {MachineAxis::X, MachineAxis::Y, MachineAxis::Z, MachineAxis::A, MachineAxis::C}) {
        QVERIFY(std::any_of(model->Parts().cbegin(), model->Parts().cend(),
                            [axis](const MachinePart& part) { return part.eAxis == axis; }));
    }
    QVERIFY(model->StockPart() >= 0);
    QCOMPARE(model->Parts().at(model->StockPart()).eAxis, MachineAxis::C);
}

void tst_MachineModelReader::documentedExampleLoads()
{
    QFile doc(qEnvironmentVariable("KORV_SOURCE_DIR") + QStringLiteral("/docs/machine-model.md"));
    QVERIFY(doc.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(doc.readAll());
    const qsizetype start = text.indexOf(QStringLiteral("```ini\n"));
    QVERIFY(start >= 0);
    const qsizetype end = text.indexOf(QStringLiteral("```"), start + 7);
    QString error;
    const std::optional<MachineModel> model = MachineModelReader::Parse(text.mid(start + 7, end - start - 7), &error);
    QVERIFY2(model, qPrintable(error));
    QCOMPARE(model->Parts().size(), 3);
    QCOMPARE(model->StockPart(), 1);
}

void tst_MachineModelReader::brokenModelsAreRejected_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("error");
    const QString head = QStringLiteral("[Machine]\nName=m\n[Part.Base]\nBox=0,0,0,1,1,1\n");
    QTest::newRow("empty") << QString() << QStringLiteral("no [Machine] section");
    QTest::newRow("key-outside-section") << "Name=m\n" << QStringLiteral("line 1: key outside a section");
    QTest::newRow("unclosed-header") << "[Machine\n" << QStringLiteral("line 1: unclosed section header");
    QTest::newRow("unknown-section") << head + "[Spindle]\n" << QStringLiteral("line 5: unknown section [Spindle]");
    QTest::newRow("not-key-value") << head + "garbage\n" << QStringLiteral("line 5: expected key=value");
    QTest::newRow("bad-number") << head + "Box=0,0,x,1,1,1\n" << QStringLiteral("line 5: 'x' is not a number");
    QTest::newRow("too-few-numbers") << head + "Box=0,0,0,1,1\n" << QStringLiteral("line 5: expected 6 numbers");
    QTest::newRow("negative-size") << head + "Box=0,0,0,-1,1,1\n"
                                   << QStringLiteral("line 5: Box sizes must be positive");
    QTest::newRow("cylinder-without-axis") << head + "Cylinder=0,0,0,1,1\n"
                                           << QStringLiteral("line 5: a cylinder needs its axis");
    QTest::newRow("bad-colour") << head + "Color=red\n" << QStringLiteral("line 5: 'red' is not a colour");
    QTest::newRow("bad-axis") << head + "Axis=Q\n" << QStringLiteral("line 5: unknown axis 'Q'");
    QTest::newRow("parent-defined-later") << "[Machine]\n[Part.A]\nParent=B\n[Part.B]\n"
                                          << QStringLiteral("line 3: unknown parent 'B'");
    QTest::newRow("duplicate-part") << head + "[Part.Base]\n" << QStringLiteral("line 5: part 'Base' defined twice");
    QTest::newRow("moves-without-direction") << head + "Axis=X\n[Part.B]\n"
                                             << QStringLiteral("line 6: part 'Base' moves but has no Direction");
    QTest::newRow("travel-reversed") << head + "Travel=5,-5\n"
                                     << QStringLiteral("line 5: travel minimum must be below its maximum");
    QTest::newRow("unknown-stock-parent") << head + "[Stock]\nParent=Table\n"
                                          << QStringLiteral("line 5: unknown stock parent 'Table'");
}

void tst_MachineModelReader::brokenModelsAreRejected()
{
    QFETCH(QString, text);
    QFETCH(QString, error);
    QString reported;
    QVERIFY(!MachineModelReader::Parse(text, &reported));
    QVERIFY2(reported.startsWith(error), qPrintable(reported));
}

void tst_MachineModelReader::truncatedFilesNeverCrash()
{
    QFile file(shippedModelPath());
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(file.readAll());
    // Cut anywhere, and with stray characters spliced in: either a model or an error, never a crash.
    for (int cut = 0; cut <= text.size(); cut += 7) {
        QString error;
        const auto model = MachineModelReader::Parse(text.left(cut), &error);
        QVERIFY(model || !error.isEmpty());
        QString spliced = text;
        spliced.insert(cut, cut % 2 ? QStringLiteral("=,") : QStringLiteral("\n["));
        error.clear();
        const auto other = MachineModelReader::Parse(spliced, &error);
        QVERIFY(other || !error.isEmpty());
    }
}

void tst_MachineModelReader::linearAndRotaryAxesMoveTheirParts()
{
    QString error;
    const std::optional<MachineModel> model = MachineModelReader::Parse(QString::fromLatin1(kSmallModel), &error);
    QVERIFY2(model, qPrintable(error));
    QCOMPARE(model->Parts().size(), 3);
    QCOMPARE(model->Parts().at(2).iParent, 1);

    // Machine Y +10 moves the table towards the front; C +90 turns the rotary about its pivot (10, 0).
    const QList<QMatrix4x4> moved = model->PartTransforms({0, 10, 0, 0, 0, 90});
    QCOMPARE(moved.at(0).map(QVector3D(1, 2, 3)), QVector3D(1, 2, 3));
    QCOMPARE(moved.at(1).map(QVector3D()), QVector3D(0, -10, 0));
    const QVector3D turned = moved.at(2).map(QVector3D(20, 0, 0));
    QVERIFY(qFuzzyCompare(turned, QVector3D(10, 0, 4)));

    // Travel holds the table inside its limits.
    QCOMPARE(model->PartTransforms({0, 500, 0, 0, 0, 0}).at(1).map(QVector3D()), QVector3D(0, -50, 0));

    // The stock frame rides on the rotary, offset by its origin.
    const ScenePolygon point{{QVector3D(0, 0, 0), QVector3D(1, 0, 0), QVector3D(0, 1, 0)}, Qt::red, {}};
    const QList<ScenePolygon> stock = model->StockFaces({point}, {0, 0, 0, 0, 0, 0});
    QCOMPARE(stock.first().listPoints.first(), QVector3D(10, 0, 6));
    // The shape's own colour wins over the part's.
    QCOMPARE(model->Parts().at(2).listFaces.first().color, QColor(0xff, 0, 0));
}

QTEST_MAIN(tst_MachineModelReader)
#include "tst_MachineModelReader.moc"
