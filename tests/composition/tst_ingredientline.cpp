#include "IngredientLine.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

class tst_IngredientLine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void text_data()
    {
        QTest::addColumn<QStringList>("parts"); // amount, unit, preparation
        QTest::addColumn<QString>("quantity");
        const auto row = [](const char *name, const QStringList &parts, const QString &quantity) {
            QTest::newRow(name) << parts << quantity;
        };
        row("all", {u"2 1/2"_s, u"cup"_s, u"diced"_s}, u"2 1/2 cup diced"_s);
        row("no preparation", {u"1"_s, u"tsp"_s, {}}, u"1 tsp"_s);
        row("no unit", {u"1"_s, {}, u"minced"_s}, u"1 minced"_s);
        row("unit alone", {{}, u"tsp"_s, {}}, u"tsp"_s);
        row("preparation alone", {{}, {}, u"chopped"_s}, u"chopped"_s);
        row("none", {{}, {}, {}}, u""_s);
        row("blanks", {u"  1  x "_s, u"tsp"_s, u" (fine) "_s}, u"1  x  tsp  (fine)"_s);
        row("other white space", {u"\t1"_s, u"tsp"_s, {}}, u"\t1 tsp"_s);
        row("25 characters", {u"12345678901234567890"_s, u"cups"_s, {}},
            u"12345678901234567890 cups"_s);
        row("cut behind a blank", {u"123456789012345678901234"_s, u"tsp"_s, {}},
            u"123456789012345678901234 "_s);
        row("not through a pair", {u"123456789012345678901234🥕"_s, {}, {}},
            u"123456789012345678901234"_s);
        row("not before an accent", {u"123456789012345678901234e\u0301x"_s, {}, {}},
            u"123456789012345678901234"_s);
    }

    void text()
    {
        QFETCH(const QStringList, parts);
        QFETCH(const QString, quantity);
        QCOMPARE(quantityText(parts[0], parts[1], parts[2]), quantity);
        const IngredientLine line{u"Salt"_s, quantity};
        QCOMPARE(line.text(), u"Salt (%1)"_s.arg(quantity));
    }
};

QTEST_APPLESS_MAIN(tst_IngredientLine)
#include "tst_ingredientline.moc"
