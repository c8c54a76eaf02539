#include "RulesFile.h"
#include "support/FileBytes.h"
#include "support/Rows.h"

#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

bool matches(const QString &text, const QString &pattern)
{
    const auto option = QRegularExpression::DotMatchesEverythingOption;
    return QRegularExpression(QRegularExpression::anchoredPattern(pattern), option)
        .match(text)
        .hasMatch();
}

} // namespace

// Runs pantrywise-takeover.
class tst_TakeoverCommand : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ends_data()
    {
        // The arguments (damaged.rbk lacks recipes, number.rbk has a damaged number, taken.rbk
        // exists), the exit status, the output and the error output as patterns, and whether
        // new.rbk is there afterwards.
        const QString summary =
            u"Recipes: 16, Ingredients: 4, Utensils: 2, Ingredients in recipes: 10, Utensils in recipes: 3\n"_s;
        const QString loss = u"damaged.rbk is damaged. Not all of it can be read:\nRecipes: 16 "
                             "of 19 can be read.\n"_s;
        addRows<QStringList, int, QString, QString, bool>({
            {"whole file", {u"old.rbk"_s, u"new.rbk"_s}, 0, summary, u"Recipes: .*"_s, true},
            {"damaged file",
             {u"damaged.rbk"_s, u"new.rbk"_s},
             1,
             {},
             u"pantrywise-takeover: "_s + loss + u".*Nothing was taken over. With --partial.*"_s,
             false},
            {"damaged file, partial",
             {u"damaged.rbk"_s, u"--partial"_s, u"new.rbk"_s},
             0,
             summary,
             loss + u".*"_s,
             true},
            {"damaged number, partial",
             {u"number.rbk"_s, u"--partial"_s, u"new.rbk"_s},
             0,
             u"Recipes: 3, .*"_s,
             u"number.rbk is damaged.*:\nRecipes: 3 of 4 can be read.\nRow 1 on page .*"_s,
             true},
            {"existing new file",
             {u"old.rbk"_s, u"taken.rbk"_s},
             1,
             {},
             u"pantrywise-takeover: taken.rbk exists already and is not replaced.*"_s,
             false},
            {"link that leads nowhere",
             {u"old.rbk"_s, u"link.rbk"_s},
             1,
             {},
             u"pantrywise-takeover: link.rbk exists already.*"_s,
             false},
            {"journal of another database",
             {u"old.rbk"_s, u"other.rbk"_s},
             1,
             {},
             u"pantrywise-takeover: other.rbk-journal belongs to another database .*"_s,
             false},
            {"no old file",
             {u"none.rbk"_s, u"new.rbk"_s},
             1,
             {},
             u"pantrywise-takeover: none.rbk cannot be taken over\\. .*"_s,
             false},
            {"another kind of file",
             {u"taken.rbk"_s, u"new.rbk"_s},
             1,
             {},
             u"pantrywise-takeover: taken.rbk cannot be taken over\\. .*"_s,
             false},
            {"no folder",
             {u"old.rbk"_s, u"none/new.rbk"_s},
             1,
             {},
             u"pantrywise-takeover: none/new.rbk could not be made: .*"_s,
             false},
            {"one file",
             {u"old.rbk"_s},
             1,
             {},
             u"pantrywise-takeover: Name the old file .*"_s,
             false},
            {"unknown option", {u"--all"_s}, 1, {}, u"pantrywise-takeover: .*all.*"_s, false},
            {"help",
             {u"--help"_s},
             0,
             u"Usage: (?!.*help-all).*--partial.*OLD.*NEW.*"_s,
             {},
             false},
        });
    }
    void ends()
    {
        const auto [arguments, status, output, errors, isMade] =
            fetchRow<QStringList, int, QString, QString, bool>();
        const QTemporaryDir folder;
        const auto files = [&folder] {
            return QDir(folder.path())
                .entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
        };
        const QByteArray old = bytesOf(rulesFile());
        setBytes(folder.filePath(u"old.rbk"_s), old);
        setBytes(folder.filePath(u"damaged.rbk"_s), withStatedRows(old, 0, 19));
        QVERIFY(QFile::copy(QStringLiteral(DAMAGED_FILE), folder.filePath(u"number.rbk"_s)));
        setBytes(folder.filePath(u"taken.rbk"_s), "mine");
        setBytes(folder.filePath(u"other.rbk-journal"_s), "journal");
        QVERIFY(QFile::link(u"nowhere"_s, folder.filePath(u"link.rbk"_s)));
        QStringList expectedFiles = files();
        if (isMade)
            expectedFiles.insert(2, u"new.rbk"_s);

        QProcess process;
        process.setWorkingDirectory(folder.path());
        process.start(QStringLiteral(PROGRAM), arguments);
        QVERIFY(process.waitForFinished());
        const QString printed = QString::fromUtf8(process.readAllStandardOutput());
        const QString complaint = QString::fromUtf8(process.readAllStandardError());
        QVERIFY2(matches(printed, output), qPrintable(printed));
        QVERIFY2(matches(complaint, errors), qPrintable(complaint));
        QCOMPARE(process.exitCode(), status);
        QCOMPARE(files(), expectedFiles);
        QCOMPARE(bytesOf(folder.filePath(u"taken.rbk"_s)), "mine");
    }
};

QTEST_GUILESS_MAIN(tst_TakeoverCommand)
#include "tst_takeovercommand.moc"
