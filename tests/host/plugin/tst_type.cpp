#include "BaseClass.h"
#include "Type.h"

#include <QTest>

namespace {
struct Widget : Base::BaseClass
{
    static inline int created = 0;
    Widget() { ++created; }
};
void* makeWidget()
{
    return new Widget();
}
} // namespace

class TestType : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void createTypeRegistersNameParentAndFactory()
    {
        const Base::Type base = Base::BaseClass::getClassTypeId();
        const Base::Type type = Base::Type::createType(base, "Test::Widget", &makeWidget);
        QVERIFY(type.isValid());
        QCOMPARE(Base::Type::fromName("Test::Widget"), type);
        QCOMPARE(Base::Type::fromKey(type.getKey()), type);
        QCOMPARE(type.getParent(), base);
        QVERIFY(type.isDerivedFrom(base));
        QVERIFY(type.isDerivedFrom(type));
        QVERIFY(!base.isDerivedFrom(type));

        const int before = Widget::created;
        auto* instance = static_cast<Widget*>(Base::Type::createInstanceByName("Test::Widget"));
        QVERIFY(instance);
        QCOMPARE(Widget::created, before + 1);
        delete instance;
    }

    void registeringANameTwiceKeepsTheFirstType()
    {
        const Base::Type first = Base::Type::createType(Base::Type::badType(), "Test::Twice");
        const int count = Base::Type::getNumTypes();
        const Base::Type second = Base::Type::createType(Base::BaseClass::getClassTypeId(), "Test::Twice");
        QCOMPARE(second, first);
        QCOMPARE(Base::Type::getNumTypes(), count);
    }

    void unknownAndEmptyNamesAreBad()
    {
        QVERIFY(Base::Type::createType(Base::Type::badType(), "").isBad());
        QVERIFY(Base::Type::createType(Base::Type::badType(), nullptr).isBad());
        QVERIFY(Base::Type::fromKey(1u << 30).isBad());
        QVERIFY(Base::Type::fromName("no::SuchType").isBad());
        QVERIFY(Base::Type::fromName(nullptr).isBad());
        QCOMPARE(Base::Type::badType().createInstance(), nullptr);
    }

    void namesStayValidWhileTheRegistryGrows()
    {
        const Base::Type type = Base::Type::createType(Base::Type::badType(), "Test::Stable");
        const char* name = type.getName();
        for (int i = 0; i < 200; ++i)
            Base::Type::createType(type, QByteArray("Test::Grow").append(QByteArray::number(i)).constData());
        QCOMPARE(QByteArray(name), QByteArray("Test::Stable"));
    }
};

QTEST_APPLESS_MAIN(TestType)
#include "tst_type.moc"
