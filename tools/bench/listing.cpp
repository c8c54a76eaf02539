#include "Bench.h"
#include "BenchWindow.h"
#include "PlainSqlite.h"
#include "Sources.h"
#include "data/DatabasePath.h"
#include "recipes/frmRecipes.h"

#include <QHeaderView>
#include <QTreeView>

namespace {

// A window to which the benchmark switches and from which it returns.
class OtherWindow final : public ChildWindow
{
    Q_OBJECT

public:
    using ChildWindow::ChildWindow;
};

Cost openList(BenchWindow &window)
{
    return secondsOf([&] { window.open<frmRecipes>(); });
}

// With 1,000 recipes the window itself takes longer than its query, so that a ratio says little.
Limit openingLimit(int recipes)
{
    if (recipes <= 1'000)
        return {Limit::Kind::Difference, 10e-3};
    return {Limit::Kind::Ratio, recipes <= 10'000 ? 1.3 : 1.1};
}

} // namespace

void measureListing(Bench &bench)
{
    for (const int size : bench.sizes()) {
        DatabasePath = bench.database(size);
        SQLite::Database plain = plainConnection(DatabasePath.toStdString());
        PlainStatement list(plain.getHandle(), listWithCounts().toStdString());
        BenchWindow window;
        bench.report({"open the recipe list", size, Unit::Seconds,
                      compare([&] { return secondsOf([&] { list.run(); }); },
                              [&] {
                                  const Cost cost = openList(window);
                                  window.close(*window.frame.find<frmRecipes>());
                                  return cost;
                              }),
                      openingLimit(size)});
        if (size != bench.largest())
            continue;

        const auto reopenList = [&] {
            if (auto *loaded = window.frame.find<frmRecipes>())
                window.close(*loaded);
            return openList(window);
        };
        bench.report({"return to the unchanged recipe list (baseline: open it)",
                      size,
                      Unit::Seconds,
                      compare(reopenList,
                              [&] {
                                  window.open<OtherWindow>();
                                  return secondsOf([&] { window.open<frmRecipes>(); });
                              }),
                      {Limit::Kind::Ratio, 0.1}});
        int column = 0;
        bench.report({"sort the recipe list by a header (baseline: open it)",
                      size,
                      Unit::Seconds,
                      compare(reopenList,
                              [&] {
                                  auto *table =
                                      window.frame.find<frmRecipes>()->findChild<QTreeView *>();
                                  column = (column + 1) % 4;
                                  return secondsOf([&] {
                                      Q_EMIT table->header()->sectionClicked(column);
                                      QCoreApplication::processEvents();
                                  });
                              }),
                      {Limit::Kind::Ratio, 0.5}});
    }
}

#include "listing.moc"
