#include "Bench.h"
#include "data/DatabaseSession.h"

#include <QApplication>
#include <QCommandLineParser>

#include <array>
#include <cstdio>
#include <exception>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Benchmark {
    QLatin1StringView name;
    void (*measure)(Bench &bench);
};

constexpr std::array benchmarks = {
    Benchmark{"reading"_L1, measureReading},       Benchmark{"memory"_L1, measureMemory},
    Benchmark{"opening"_L1, measureOpening},       Benchmark{"copying"_L1, measureCopying},
    Benchmark{"requerying"_L1, measureRequerying}, Benchmark{"searching"_L1, measureSearching},
    Benchmark{"sorting"_L1, measureSorting},       Benchmark{"editing"_L1, measureEditing},
    Benchmark{"importing"_L1, measureImporting},   Benchmark{"batchimport"_L1, measureBatchImport},
    Benchmark{"exporting"_L1, measureExporting},   Benchmark{"listing"_L1, measureListing},
    Benchmark{"browsing"_L1, measureBrowsing},     Benchmark{"composing"_L1, measureComposing},
    Benchmark{"printing"_L1, measurePrinting},     Benchmark{"startup"_L1, measureStartup},
    Benchmark{"finding"_L1, measureFinding},       Benchmark{"takingover"_L1, measureTakingOver},
};

void measure(const QString &only, int largest, const QString &csvPath)
{
    Bench bench(largest, csvPath);
    for (const Benchmark &benchmark : benchmarks) {
        if (only.isEmpty() || only == benchmark.name)
            benchmark.measure(bench);
    }
}

} // namespace

int main(int argc, char *argv[])
{
    // The windows in this process need no display. Programs that it starts inherit the real
    // platform.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    configureSqlite(); // before the baselines use SQLite
    const QApplication application(argc, argv);
    qunsetenv("QT_QPA_PLATFORM");
    QStringList names;
    for (const Benchmark &benchmark : benchmarks)
        names.append(benchmark.name);
    QCommandLineParser parser;
    parser.setApplicationDescription(u"Compares the program with plain SQLite."_s);
    parser.addHelpOption();
    const QCommandLineOption only(u"only"_s, u"Run only this benchmark: "_s + names.join(", "_L1),
                                  u"name"_s);
    const QCommandLineOption largest(u"largest"_s,
                                     u"Use no database with more recipes (up to 1000000)."_s,
                                     u"recipes"_s, u"100000"_s);
    const QCommandLineOption csv(u"csv"_s, u"Also write the results to this file."_s, u"file"_s);
    parser.addOptions({only, largest, csv});
    parser.process(application);
    if (parser.isSet(only) && !names.contains(parser.value(only)))
        parser.showHelp(1);
    try {
        measure(parser.value(only), parser.value(largest).toInt(), parser.value(csv));
    } catch (const std::exception &error) {
        std::fprintf(stderr, "bench: %s\n", error.what());
        return 1;
    }
    return 0;
}
