#pragma once

#include "Measurement.h"

#include <QString>
#include <QTemporaryDir>

#include <map>
#include <vector>

// What the benchmarks share: generated databases in a temporary folder, which is removed with this
// object.
class Bench
{
public:
    // `largest` is the largest number of recipes that a database may have. Throws if no size fits.
    explicit Bench(int largest);

    // The numbers of recipes in the databases, in ascending order.
    const std::vector<int> &sizes() const { return m_sizes; }
    int largest() const { return m_sizes.back(); }

    // Returns the path of the database with that many recipes, which is generated at the first
    // call. Benchmarks share it and must not write to it.
    QString database(int recipes);

    // Returns a path in the temporary folder.
    QString path(const QString &name) const { return m_folder.filePath(name); }

private:
    std::vector<int> m_sizes;
    QTemporaryDir m_folder;
    std::map<int, QString> m_databases;
};

// Each of these runs the benchmarks of one subject and prints their results.
void measureReading(Bench &bench);
void measureMemory(Bench &bench);
void measureOpening(Bench &bench);
void measureCopying(Bench &bench);
void measureRequerying(Bench &bench);
void measureSearching(Bench &bench);
void measureSorting(Bench &bench);
void measureImporting(Bench &bench);
void measureExporting(Bench &bench);
void measureBatchImport(Bench &bench);
void measureListing(Bench &bench);
void measureBrowsing(Bench &bench);
void measureComposing(Bench &bench);
void measurePrinting(Bench &bench);
void measureStartup(Bench &bench);
