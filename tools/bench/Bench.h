#pragma once

#include "Results.h"

#include <QString>
#include <QTemporaryDir>

#include <array>
#include <map>
#include <span>
#include <vector>

// What the benchmarks share: the results, and generated databases in a temporary folder, which is
// removed with this object.
class Bench
{
public:
    // The largest number of recipes that a database can have.
    static constexpr int maximumSize = 1'000'000;

    // `largest` is the largest number of recipes that a database may have. Throws if no size fits.
    Bench(int largest, const QString &csvPath);

    void report(const Result &result) { m_results.add(result); }

    // The numbers of recipes in the databases, in ascending order.
    const std::vector<int> &sizes() const { return m_sizes; }
    std::span<const int> largeSizes() const { return std::span(m_sizes).subspan(1); } // from 10,000
    int largest() const { return m_sizes.back(); }

    // Returns the path of the database with that many recipes, which is generated at the first
    // call. Benchmarks share it and must not write to it.
    QString database(int recipes);

    // Returns a path in the temporary folder.
    QString path(const QString &name) const { return m_folder.filePath(name); }

private:
    std::vector<int> m_sizes;
    Results m_results;
    QTemporaryDir m_folder;
    std::map<int, QString> m_databases;
};

// Returns the limit that belongs to a database of that size: up to 10,000 recipes, up to 100,000 or
// more.
Limit absoluteLimit(int recipes, const std::array<double, 3> &limits);

// Each of these runs the benchmarks of one subject and reports their results.
void measureReading(Bench &bench);
void measureMemory(Bench &bench);
void measureOpening(Bench &bench);
void measureCopying(Bench &bench);
void measureRequerying(Bench &bench);
void measureSearching(Bench &bench);
void measureFinding(Bench &bench);
void measureSorting(Bench &bench);
void measureEditing(Bench &bench);
void measureImporting(Bench &bench);
void measureExporting(Bench &bench);
void measureBatchImport(Bench &bench);
void measureListing(Bench &bench);
void measureBrowsing(Bench &bench);
void measureComposing(Bench &bench);
void measurePrinting(Bench &bench);
void measureStartup(Bench &bench);
void measureTakingOver(Bench &bench);
