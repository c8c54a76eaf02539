#include "data/RowStore.h"
#include "support/Rows.h"

class tst_RowStore : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Values at the limits of each size in which cells are packed.
    void keepsACell_data()
    {
        QList<std::tuple<QByteArray, Cell>> rows{{"null", Cell()}, {"fraction", -2.5}};
        for (const qint64 limit :
             {1LL << 7, 1LL << 8, 1LL << 15, 1LL << 31, 1LL << 32, 1LL << 62}) {
            for (const qint64 number : {-limit - 1, -limit, limit - 1, limit})
                rows.append({QByteArray::number(number), number});
        }
        static const std::string bytes(65'537, 'x');
        for (const std::size_t size : {0, 127, 128, 255, 256, 65'535, 65'537}) {
            const std::string_view view(bytes.data(), size);
            rows.append({QByteArray::number(qsizetype(size)) + " bytes of text", view});
            rows.append({QByteArray::number(qsizetype(size)) + " bytes of a blob", Blob{view}});
        }
        addRows(rows);
    }

    void keepsACell()
    {
        const auto [cell] = fetchRow<Cell>();
        RowStore store;
        store.beginRow();
        store.add(cell);
        store.add(qint64{7}); // is found only if the size of the cell before it is right
        const RowStore::Row row = store.endRow();
        QVERIFY(RowStore::cell(row, 0) == cell);
        QVERIFY(RowStore::cell(row, 1) == Cell(qint64{7}));
    }
};

QTEST_GUILESS_MAIN(tst_RowStore)
#include "tst_rowstore.moc"
