#include "takeover/TakeoverCommand.h"

#include "interaction/ControlCharacters.h"
#include "platform/FileCopy.h"
#include "platform/Paths.h"
#include "platform/UserVisibleError.h"
#include "takeover/Takeover.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTextStream>

#include <csignal>
#include <cstdio>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(TakeoverCommand)
};

volatile std::sig_atomic_t isInterrupted = 0;

void interrupt(int)
{
    isInterrupted = 1;
}

// Stops the work at Ctrl+C, so that nothing is left beside the new file.
class InterruptibleProgress final : public Progress
{
public:
    InterruptibleProgress()
    {
        for (const int signal : {SIGHUP, SIGINT, SIGTERM})
            std::signal(signal, interrupt);
    }

    bool update(qsizetype, qsizetype, const QString &) override { return isInterrupted == 0; }
};

// The names in a damaged file must not control the terminal.
void print(std::FILE *stream, const QString &text)
{
    QTextStream out(stream);
    for (const QString &line : text.split(u'\n'))
        out << escapeControlCharacters(line) << '\n';
}

platform::UserVisibleError existsAlready(const QString &file)
{
    return platform::UserVisibleError(
        Text::tr("%1 exists already and is not replaced. Choose another name for the new file.")
            .arg(file));
}

bool isTaken(const QString &path)
{
    const QFileInfo file(path);
    return file.exists() || file.isSymLink();
}

// SQLite would write the pages of a journal that another database has left into the new file.
void checkIsFree(const QString &newFile)
{
    if (isTaken(newFile))
        throw existsAlready(newFile);
    for (const QLatin1StringView suffix : {"-journal"_L1, "-wal"_L1, "-shm"_L1}) {
        if (isTaken(newFile + suffix))
            throw platform::UserVisibleError(
                Text::tr("%1 belongs to another database and would damage the new file. Choose "
                         "another name for the new file.")
                    .arg(newFile + suffix));
    }
}

// Throws platform::UserVisibleError if the file exists, also if it was made a moment ago.
void putInPlace(const QString &made, const QString &newFile)
{
    const std::error_code failure =
        platform::renameToNewName(platform::nativePath(made), platform::nativePath(newFile));
    if (failure == std::errc::file_exists)
        throw existsAlready(newFile);
    if (failure)
        throw platform::UserVisibleError(
            Text::tr("%1 could not be made: %2.")
                .arg(newFile, QString::fromStdString(failure.message())));
}

QString lossText(const QString &oldFile, const TakeoverReport &report)
{
    return Text::tr("%1 is damaged. Not all of it can be read:\n%2")
        .arg(oldFile, report.losses().join(u'\n'));
}

// Makes the new file in a folder beside it, so that it never is there incomplete. Throws
// platform::UserVisibleError.
void takeOver(const QString &oldFile, const QString &newFile, bool isPartialAllowed)
{
    checkIsFree(newFile);
    Takeover takeover(oldFile);
    const QTemporaryDir folder(newFile + ".takeover-XXXXXX"_L1);
    if (!folder.isValid())
        throw platform::UserVisibleError(
            Text::tr("%1 could not be made: %2.").arg(newFile, folder.errorString()));
    const QString made = folder.filePath(u"new.rbk"_s);
    InterruptibleProgress progress;
    const std::optional<TakeoverReport> report = takeover.writeTo(made, progress);
    if (!report)
        throw platform::UserVisibleError(Text::tr("Stopped. Nothing was taken over."));
    if (!report->isComplete() && !isPartialAllowed)
        throw platform::UserVisibleError(
            lossText(oldFile, *report) + u'\n' + report->notes.join(u'\n') + u'\n'
            + Text::tr("Nothing was taken over. With --partial, the rest is."));
    checkIsFree(newFile);
    putInPlace(made, newFile);
    if (!report->isComplete())
        print(stderr, lossText(oldFile, *report));
    if (!report->notes.isEmpty())
        print(stderr, report->notes.join(u'\n'));
    print(stdout, report->summary());
}

QString description()
{
    return Text::tr(
        "Makes a recipe database from a recipe file in the Access format (Access 97 to 2010), "
        "without\nasking anything. OLD is only read. To use NEW, copy it into the folder of "
        "Pantrywise as data.rbk,\nafter you have moved away the data.rbk and the "
        "data.rbk-journal that are there.\n\n"
        "All recipes, ingredients and utensils are taken over, with every text as it is, with "
        "their keys\nand with the lines of each recipe in their order. What needs a look is "
        "listed on standard error:\nnumbers that do not fit, keys that had to change, names that "
        "occur twice, and tables and columns\nthat Pantrywise does not have.\n\n"
        "If a part of OLD is damaged, nothing is made, and the tables that would lose rows are "
        "listed.\nWith --partial, the other rows are taken over.\n\n"
        "If NEW has been made, the exit status is 0, and one line on standard output tells how "
        "many rows\neach table has. Otherwise the exit status is 1, and standard error says what "
        "is "
        "wrong.");
}

} // namespace

int runTakeoverCommand(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(description());
    const QCommandLineOption help({u"h"_s, u"help"_s}, Text::tr("Show this help."));
    parser.addOption(help);
    const QCommandLineOption partial(u"partial"_s,
                                     Text::tr("Take over what can be read of a damaged file."));
    parser.addOption(partial);
    parser.addPositionalArgument(u"OLD"_s, Text::tr("The recipe file in the Access format."));
    parser.addPositionalArgument(u"NEW"_s,
                                 Text::tr("The recipe database to make. It must not exist."));
    try {
        if (!parser.parse(arguments))
            throw platform::UserVisibleError(parser.errorText());
        if (parser.isSet(help)) {
            print(stdout, parser.helpText());
            return 0;
        }
        const QStringList files = parser.positionalArguments();
        if (files.size() != 2)
            throw platform::UserVisibleError(
                Text::tr("Name the old file and the new one. --help says more."));
        takeOver(files[0], files[1], parser.isSet(partial));
        return 0;
    } catch (const platform::UserVisibleError &error) {
        print(stderr, "pantrywise-takeover: "_L1 + error.text());
        return 1;
    }
}
