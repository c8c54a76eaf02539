#include "BenchFrame.h"
#include "PlainConnection.h"
#include "PlainStatement.h"
#include "Sources.h"
#include "Subjects.h"
#include "data/DatabasePath.h"
#include "recipes/frmRecipes.h"

#include <QHeaderView>
#include <QTreeView>

namespace {

// A window to go to and come back from.
class OtherWindow final : public ChildWindow
{
    Q_OBJECT

public:
    using ChildWindow::ChildWindow;
};

double firstFilling(BenchFrame &bench)
{
    return secondsOf([&] { bench.open<frmRecipes>(); });
}

} // namespace

void measureListing(Bench &bench)
{
    for (const int size : bench.sizes()) {
        if (size < 10'000)
            continue;
        DatabasePath = bench.database(size);
        SQLite::Database plain = plainConnection(DatabasePath.toStdString());
        PlainStatement list(plain.getHandle(), listWithCounts().toStdString());
        BenchFrame desk;
        printResult({"recipe list, from F5 to the filled table",
                     size,
                     Unit::Seconds,
                     inTurns([&] { return secondsOf([&] { list.run(); }); },
                             [&] {
                                 const double seconds = firstFilling(desk);
                                 desk.close(*desk.frame.find<frmRecipes>());
                                 return seconds;
                             }),
                     {Bound::Kind::TimesYardstick, 2}});
        if (size != bench.largest())
            continue;

        const auto filling = [&] {
            if (auto *loaded = desk.frame.find<frmRecipes>())
                desk.close(*loaded);
            return firstFilling(desk);
        };
        printResult({"return to the list, unchanged; plain is its first filling",
                     size,
                     Unit::Seconds,
                     inTurns(filling,
                             [&] {
                                 desk.open<OtherWindow>();
                                 return secondsOf([&] { desk.open<frmRecipes>(); });
                             }),
                     {Bound::Kind::TimesYardstick, 0.1}});
        int column = 0;
        printResult({"the list sorted by a header; plain is its first filling",
                     size,
                     Unit::Seconds,
                     inTurns(filling,
                             [&] {
                                 auto *table =
                                     desk.frame.find<frmRecipes>()->findChild<QTreeView *>();
                                 column = (column + 1) % 4;
                                 return secondsOf([&] {
                                     Q_EMIT table->header()->sectionClicked(column);
                                     QCoreApplication::processEvents();
                                 });
                             }),
                     {Bound::Kind::TimesYardstick, 0.5}});
    }
}

#include "listing.moc"
