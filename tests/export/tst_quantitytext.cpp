#include "export/QuantityText.h"
#include "support/Rows.h"

class tst_QuantityText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void split_data()
    {
        addRows<QByteArray, QByteArray, QByteArray>({
            {"nothing", "", "", ""},
            {"spaces", "  1 cup ", "1 cup", ""},
            {"comma", "8 cloves, minced", "8 cloves", ", minced"},
            {"comma and nothing", "2 cups,", "2 cups", ""},
            {"number only", "1, diced", "1", ", diced"},
            {"article", "a handful, toasted", "a handful", ", toasted"},
            {"fraction", "½, to taste", "½", ", to taste"},
            {"semicolon", "1 lb;trimmed", "1 lb", "; trimmed"},
            {"decimal comma", "0,9 Liter, warm", "0,9 Liter", ", warm"},
            {"other script", "2 σκελίδες, ψιλοκομμένες", "2 σκελίδες", ", ψιλοκομμένες"},
            {"list of names", "tomato, lettuce", "tomato, lettuce", ""},
            {"parenthesis", "3 tbsp (soft)", "3 tbsp", " (soft)"},
            {"only a parenthesis", "(optional)", "", " (optional)"},
            {"only a measure in a parenthesis", "(2 cups)", "", " (2 cups)"},
            {"parenthesis first, then a word", "(14 oz) can", "(14 oz) can", ""},
            {"part of a measure in a parenthesis", "(about 2) cups, hot", "(about 2) cups",
             ", hot"},
            {"parenthesis with a comma", "1 (about 1.5 cups, chopped)", "1",
             " (about 1.5 cups, chopped)"},
            {"parenthesis is cut off", "80g (Emmental, Comté", "80g", " (Emmental, Comté"},
            {"parentheses in each other", "1 cup (red (or white))", "1 cup", " (red (or white))"},
            {"parenthesis before a comma", "1/2 cup (fresh), torn", "1/2 cup", " (fresh), torn"},
            {"parenthesis after a comma", "2 ears, shaved (2 cups)", "2 ears", ", shaved (2 cups)"},
            {"same measure", "28oz (825 ml)", "28oz (825 ml)", ""},
            {"same measure, then a remark", "~800g (~1.5lb) (waxy)", "~800g (~1.5lb)", " (waxy)"},
            {"same measure, then a comma", "1 can (½ lb), drained", "1 can (½ lb)", ", drained"},
            {"parenthesis before a word", "1 (7 oz) can, drained", "1 (7 oz) can", ", drained"},
            {"parenthesis of a plural", "1 (or 2) clove(s), cut", "1 (or 2) clove(s)", ", cut"},
            {"composed: amount", "2 chopped", "2", ", chopped"},
            {"composed: unit", "fl oz Minced", "fl oz", ", Minced"},
            {"composed: amount and unit", "1 1/2 handfull ground", "1 1/2 handfull", ", ground"},
            {"composed: preparation only", "grated", "", ", grated"},
            {"how it is prepared", "2 roughly chopped (fresh)", "2", ", roughly chopped (fresh)"},
            {"one of two preparations", "3 sliced or diced", "3", ", sliced or diced"},
            {"preparation in a name", "frozen sliced", "frozen sliced", ""},
            {"purpose", "to taste (optional)", "", ", to taste (optional)"},
            {"range", "8 to 10", "8 to 10", ""},
        });
    }

    void split()
    {
        const auto [quantity, amount, preparation] = fetchRow<QByteArray, QByteArray, QByteArray>();
        const SplitQuantity split = splitQuantity(quantity.toStdString());
        QCOMPARE(QByteArrayView(split.amount), amount);
        QCOMPARE(QByteArrayView(split.preparation), preparation);
    }
};

QTEST_APPLESS_MAIN(tst_QuantityText)
#include "tst_quantitytext.moc"
