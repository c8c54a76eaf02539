#include "support/Rows.h"
#include "support/ShownRows.h"
#include "widgets/ListBox.h"

#include <QSignalSpy>
#include <QTest>

#include <functional>

using namespace Qt::Literals::StringLiterals;

namespace {

using Act = std::function<void(ListBox &)>;

constexpr int butter = 2;

ListBox::Row row(const QString &text)
{
    return {text, text.size()};
}

QList<ListBox::Row> catalog()
{
    return {row(u"Apple"_s),  row(u"Bay leaf"_s), row(u"butter"_s),
            row(u"Éclair"_s), row(u"Beetroot"_s), row(u"Salt"_s)};
}

struct Fixture {
    explicit Fixture(const QString &query = {})
    {
        list.setRows(catalog());
        list.selectRow(butter);
        list.narrow(SearchQuery(query));
        list.show();
        spy.clear();
    }

    ListBox list;
    QSignalSpy spy{&list, &ListBox::rowSelected};
};

} // namespace

class tst_ListBox : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void narrows_data()
    {
        addRows<QString, QString, int, int>({
            {"all", u" "_s, u"Apple, Bay leaf, *butter, Éclair, Beetroot, Salt"_s, 3, 5},
            {"selected", u"b t"_s, u"*butter, Beetroot"_s, 4, 4},
            {"filtered out", u"e -b"_s, u"Apple, Éclair"_s, 3, 3},
            {"accent", u"ecl"_s, u"Éclair"_s, 3, 3},
            {"none", u"x"_s, u"Nothing found.\nTo see all names again, press Esc."_s, -1, -1},
        });
    }
    // The numbers stay, and so does the selection, without a signal.
    void narrows()
    {
        const auto [query, texts, afterButter, atEnd] = fetchRow<QString, QString, int, int>();
        Fixture fixture(query);
        ListBox &list = fixture.list;
        QCOMPARE(shownRows(list), texts);
        QCOMPARE(list.nearestShownRow(butter + 1), afterButter);
        QCOMPARE(list.nearestShownRow(list.count()), atEnd);
        QVERIFY(list.count() == 6 && list.keyAt(butter) == 6 && list.rowOf(8) == 1);
        QVERIFY(list.selectedRow() == butter && list.selectedText() == u"butter"_s);
        list.narrow({});
        QVERIFY(shownRows(list).contains(u"*butter"_s) && fixture.spy.isEmpty());
    }

    void whileNarrowed_data()
    {
        const QString found = u"Apple, Bay leaf, Éclair, Salt"_s;
        const auto key = [](Qt::Key key) {
            return [key](ListBox &list) { QTest::keyClick(&list, key); };
        };
        addRows<Act, QString, int, int>({
            {"other rows",
             [](ListBox &list) {
                 list.setRows({row(u"Oats"_s), row(u"Leek"_s)});
             },
             u"Leek"_s, -1, 0},
            {"equal rows", [](ListBox &list) { list.setRows(catalog()); }, found, -1, 0},
            {"no rows", [](ListBox &list) { list.showUnavailable(u"unread"_s); }, u"unread"_s, -1,
             0},
            {"append", [](ListBox &list) { list.append(row(u"Leek"_s)); }, found + u", Leek"_s,
             butter, 0},
            {"append what does not match", [](ListBox &list) { list.append(row(u"Oats"_s)); },
             found, butter, 0},
            {"remove", [](ListBox &list) { list.remove(0); }, u"Bay leaf, Éclair, Salt"_s,
             butter - 1, 0},
            {"remove what does not match", [](ListBox &list) { list.remove(4); }, found, butter, 0},
            {"remove the selected", [](ListBox &list) { list.remove(butter); }, found, -1, 0},
            {"select", [](ListBox &list) { list.selectRow(5); },
             u"Apple, Bay leaf, Éclair, *Salt"_s, 5, 1},
            {"select what does not match", [](ListBox &list) { list.selectRow(4); }, found, 4, 1},
            {"select again", [](ListBox &list) { list.selectRow(butter); }, found, butter, 0},
            {"click again", [](ListBox &list) { list.clickRow(butter); }, found, butter, 1},
            {"Down", key(Qt::Key_Down), u"*Apple, Bay leaf, Éclair, Salt"_s, 0, 1},
            {"Down from a shown one",
             [](ListBox &list) {
                 list.selectRow(1);
                 QTest::keyClick(&list, Qt::Key_Down);
             },
             u"Apple, Bay leaf, *Éclair, Salt"_s, 3, 2},
            {"letter", key(Qt::Key_B), u"Apple, *Bay leaf, Éclair, Salt"_s, 1, 1},
        });
    }
    void whileNarrowed()
    {
        const auto [act, texts, selected, signalCount] = fetchRow<Act, QString, int, int>();
        Fixture fixture(u"l"_s);
        act(fixture.list);
        QCOMPARE(shownRows(fixture.list), texts);
        QCOMPARE(fixture.list.selectedRow(), selected);
        QCOMPARE(fixture.spy.size(), signalCount);
        fixture.list.narrow({});
        QCOMPARE(fixture.list.model()->rowCount(), fixture.list.count());
        QCOMPARE(fixture.list.selectionModel()->isRowSelected(selected), selected >= 0);
    }
};

QTEST_MAIN(tst_ListBox)
#include "tst_listbox.moc"
