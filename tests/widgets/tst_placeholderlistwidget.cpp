#include "widgets/PlaceholderListWidget.h"

#include "support/Rows.h"

using namespace Qt::Literals::StringLiterals;

namespace {

using Change = void (*)(QWidget &);

void prepare(QListWidget &list)
{
    list.setWordWrap(true);
    list.setResizeMode(QListView::Adjust);
    list.resize(400, 300);
    list.show();
}

QList<int> heights(const QListWidget &list)
{
    QCoreApplication::processEvents();
    QList<int> heights;
    for (int row = 0; row < list.count(); ++row)
        heights += list.visualItemRect(list.item(row)).height();
    return heights;
}

} // namespace

class tst_PlaceholderListWidget : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void heightOfRows_data()
    {
        addRows<Change>({
            {"narrower", [](QWidget &list) { list.resize(100, 300); }},
            {"larger font", [](QWidget &list) { list.setFont(QFont(list.font().family(), 30)); }},
        });
    }
    // They are those of a list that remembers no sizes.
    void heightOfRows()
    {
        const auto [change] = fetchRow<Change>();
        const QStringList texts{u"Salt"_s, u"Tomatoes, peeled and cut into small pieces"_s};
        PlaceholderListWidget list;
        prepare(list);
        list.setTexts(texts);
        const QList<int> before = heights(list);
        change(list);
        QListWidget plain;
        prepare(plain);
        plain.addItems(texts);
        change(plain);
        QCOMPARE(heights(list), heights(plain));
        QVERIFY(heights(list) != before);
    }
};

QTEST_MAIN(tst_PlaceholderListWidget)
#include "tst_placeholderlistwidget.moc"
