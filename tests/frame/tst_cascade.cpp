#include "Cascade.h"

#include <QTest>

class tst_Cascade : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void places_data()
    {
        QTest::addColumn<int>("number");
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QRect>("expected"); // in an area of 100 x 80, in steps of 10

        QTest::newRow("first") << 0 << QSize(50, 50) << QRect(0, 0, 50, 50);
        QTest::newRow("last that fits") << 3 << QSize(50, 50) << QRect(30, 30, 50, 50);
        QTest::newRow("from the top again") << 4 << QSize(50, 50) << QRect(0, 0, 50, 50);
        QTest::newRow("as large as the area") << 7 << QSize(100, 80) << QRect(0, 0, 100, 80);
        QTest::newRow("too wide") << 2 << QSize(900, 50) << QRect(0, 0, 100, 50);
        QTest::newRow("too large") << 2 << QSize(900, 900) << QRect(0, 0, 100, 80);
    }

    void places()
    {
        QFETCH(const int, number);
        QFETCH(const QSize, size);
        QTEST(cascaded(number, size, {100, 80}, 10), "expected");
    }

    void inside_data()
    {
        QTest::addColumn<QRect>("rect");
        QTest::addColumn<QRect>("expected"); // in an area of 100 x 80

        QTest::newRow("inside") << QRect(50, 30, 50, 50) << QRect(50, 30, 50, 50);
        QTest::newRow("out at the right and below")
            << QRect(95, 300, 50, 50) << QRect(50, 30, 50, 50);
        QTest::newRow("out at the left and above") << QRect(-5, -60, 50, 50) << QRect(0, 0, 50, 50);
        QTest::newRow("too large") << QRect(20, 20, 200, 40) << QRect(0, 20, 100, 40);
    }

    void inside()
    {
        QFETCH(const QRect, rect);
        QTEST(keptInside(rect, {100, 80}), "expected");
    }
};

QTEST_APPLESS_MAIN(tst_Cascade)
#include "tst_cascade.moc"
