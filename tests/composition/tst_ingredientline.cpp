#include "IngredientLine.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

class tst_IngredientLine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void quantity()
    {
        const std::pair<QStringList, QString> rows[] = {
            // amount, unit and preparation
            {{u"2 1/2"_s, u"cup"_s, u"diced"_s}, u"2 1/2 cup diced"_s},
            {{u"1"_s, u""_s, u"minced"_s}, u"1 minced"_s},
            {{u""_s, u"tsp"_s, u""_s}, u"tsp"_s},
            {{u"  1  x "_s, u"tsp"_s, u" (fine) "_s}, u"1  x  tsp  (fine)"_s},
            {{u"\t1"_s, u"tsp"_s, u""_s}, u"\t1 tsp"_s},
            {{u"123456789012345678901234"_s, u"tsp"_s, u""_s}, u"123456789012345678901234 "_s},
            {{u"123456789012345678901234🥕"_s, u""_s, u""_s}, u"123456789012345678901234"_s},
            {{u"123456789012345678901234e\u0301"_s, u""_s, u""_s}, u"123456789012345678901234"_s},
        };
        for (const auto &[parts, quantity] : rows)
            QCOMPARE(quantityText(parts[0], parts[1], parts[2]), quantity);
    }
};

QTEST_APPLESS_MAIN(tst_IngredientLine)
#include "tst_ingredientline.moc"
