#include "Subjects.h"

#include <QApplication>
#include <QCommandLineParser>

#include <array>
#include <cstdio>
#include <exception>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Subject {
    QLatin1StringView name;
    void (*measure)(Bench &bench);
};

constexpr std::array subjects = {
    Subject{"reading"_L1, measureReading},     Subject{"memory"_L1, measureMemory},
    Subject{"opening"_L1, measureOpening},     Subject{"requerying"_L1, measureRequerying},
    Subject{"searching"_L1, measureSearching}, Subject{"sorting"_L1, measureSorting},
    Subject{"importing"_L1, measureImporting}, Subject{"batchimport"_L1, measureBatchImport},
    Subject{"exporting"_L1, measureExporting}, Subject{"listing"_L1, measureListing},
    Subject{"browsing"_L1, measureBrowsing},   Subject{"composing"_L1, measureComposing},
    Subject{"printing"_L1, measurePrinting},   Subject{"startup"_L1, measureStartup},
};

void measure(const QString &only, int largest)
{
    Bench bench(largest);
    printTableHead();
    for (const Subject &subject : subjects) {
        if (only.isEmpty() || only == subject.name)
            subject.measure(bench);
    }
}

} // namespace

int main(int argc, char *argv[])
{
    // The windows that are measured paint without a screen; the start-up has one.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    qunsetenv("QT_QPA_PLATFORM");
    QStringList names;
    for (const Subject &subject : subjects)
        names.append(subject.name);
    QCommandLineParser parser;
    parser.setApplicationDescription(u"Measures the program beside plain SQLite."_s);
    parser.addHelpOption();
    const QCommandLineOption only(u"only"_s, u"Measure this alone: "_s + names.join(", "_L1),
                                  u"subject"_s);
    const QCommandLineOption largest(u"largest"_s, u"Use no database of more recipes."_s,
                                     u"recipes"_s, u"100000"_s);
    parser.addOptions({only, largest});
    parser.process(application);
    if (parser.isSet(only) && !names.contains(parser.value(only)))
        parser.showHelp(1);
    try {
        measure(parser.value(only), parser.value(largest).toInt());
    } catch (const std::exception &error) {
        std::fprintf(stderr, "bench: %s\n", error.what());
        return 1;
    }
    return 0;
}
