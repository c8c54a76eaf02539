#include "support/FileBytes.h"
#include "support/Rows.h"
#include "support/SrfText.h"
#include "support/TemporaryHome.h"
#include "support/TestDatabase.h"

#include <QProcess>
#include <QRegularExpression>

#include <pty.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

const QByteArray soup = srf({});

// Runs the program without a desktop, in a temporary program folder.
class tst_Program : public QObject
{
    Q_OBJECT

    const TemporaryHome m_home; // in which the program registers itself
    std::unique_ptr<TestDatabase> m_file;

    QString inFolder(const QString &name) const { return m_file->folder() + u'/' + name; }

    // The displays cannot be reached.
    void start(QProcess &process, const QStringList &arguments,
               const QString &program = u"pantrywise"_s) const
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove(u"QT_QPA_PLATFORM"_s);
        environment.insert(u"DISPLAY"_s, u":999"_s);
        environment.insert(u"WAYLAND_DISPLAY"_s, u"wayland-999"_s);
        process.setProcessEnvironment(environment);
        process.setWorkingDirectory(m_file->folder());
        process.start(inFolder(program), arguments);
    }

    // Returns the exit code and the error output: "1 Error: ...".
    QString run(const QStringList &arguments, const QString &program = u"pantrywise"_s,
                const QString &input = QProcess::nullDevice()) const
    {
        QProcess process;
        process.setStandardInputFile(input);
        start(process, arguments, program);
        if (!process.waitForFinished() || process.exitStatus() != QProcess::NormalExit)
            return process.errorString();
        return QString::number(process.exitCode()) + u' '
            + QString::fromUtf8(process.readAllStandardError());
    }

    // Imports soup.srf with these keys on a terminal, or without a terminal if they are null.
    QString importOnTerminal(const QByteArray &keys) const
    {
        if (keys.isNull())
            return run({u"soup.srf"_s});
        int terminal = -1;
        int programSide = -1;
        char name[64];
        if (openpty(&terminal, &programSide, name, nullptr, nullptr) != 0
            || write(terminal, keys.constData(), static_cast<std::size_t>(keys.size()))
                != keys.size())
            return u"no terminal"_s;
        QString said = run({u"soup.srf"_s}, u"pantrywise"_s, QString::fromLatin1(name));
        close(terminal);
        close(programSide);
        return said;
    }

private Q_SLOTS:
    void init()
    {
        m_file = std::make_unique<TestDatabase>();
        QVERIFY(QFile::copy(QString::fromLocal8Bit(PROGRAM), inFolder(u"pantrywise"_s)));
    }

    void endsWithoutADesktop_data()
    {
        // A file, its bytes, the arguments (%1 is the program folder), and the exit code and the
        // error output as a pattern.
        addRows<QString, QByteArray, QStringList, QString>({
            {"absolute path", u"soup.srf"_s, soup, {u"%1/soup.srf"_s}, u"0 "_s},
            {"unquoted space", u"my soup.srf"_s, soup, {u"my"_s, u"soup.srf"_s}, u"0 "_s},
            {"like an option", u"-style.srf"_s, soup, {u"-style.srf"_s}, u"0 "_s},
            {"no file",
             u"soup.srf"_s,
             soup,
             {u"none.srf"_s},
             u"1 Error: Could not find file.  Try importing file though File, Import.\n"_s},
            {"cut off",
             u"soup.srf"_s,
             soup.chopped(12),
             {u"soup.srf"_s},
             u"1 Error: .*soup.srf.*"_s},
            {"no database to import into",
             u"data.rbk"_s,
             "no database at all, but some text in it",
             {u"soup.srf"_s},
             u"1 Error: .*data.rbk is not a recipe database.*"_s},
            {"no argument", u"soup.srf"_s, soup, {}, u"1 .*needs a desktop.*"_s},
            {"empty argument", u"soup.srf"_s, soup, {u""_s}, u"1 .*needs a desktop.*"_s},
        });
    }

    void endsWithoutADesktop()
    {
        auto [name, bytes, arguments, pattern] =
            fetchRow<QString, QByteArray, QStringList, QString>();
        setBytes(inFolder(u"soup.srf"_s), soup);
        setBytes(inFolder(name), bytes);
        const QString said = run(arguments.replaceInStrings(u"%1"_s, m_file->folder()));
        const QRegularExpression expected(QRegularExpression::anchoredPattern(pattern),
                                          QRegularExpression::DotMatchesEverythingOption);
        QVERIFY2(expected.match(said).hasMatch() && said.count(u"Error: "_s) <= 1,
                 qPrintable(said));
        if (name != "data.rbk"_L1)
            QCOMPARE(m_file->stored("SELECT RecipeName FROM Recipes"),
                     pattern == "0 "_L1 ? u"Soup"_s : u""_s);
    }

    void asksOnTheTerminal_data()
    {
        addRows<QByteArray, bool>({{"Yes", "YES\n", true},
                                   {"other word", "yesterday\n", false},
                                   {"end of input", "\4", false},
                                   {"no terminal", {}, false}});
    }

    // U+009B in the title would start a control sequence of the terminal.
    void asksOnTheTerminal()
    {
        const auto [answer, isYes] = fetchRow<QByteArray, bool>();
        setBytes(inFolder(u"soup.srf"_s), srf({.title = "So\xC2\x9Bup"}));
        run({u"soup.srf"_s});
        const QString said = importOnTerminal(answer);
        const QString question =
            u"%1 Already in database: So<U+009B>up is already in the database.  Do you want to import it anyways?"_s;
        QVERIFY2(said.startsWith(question.arg(isYes ? 0 : 1))
                     && said.endsWith(isYes ? u"Yes\n"_s : u"No\n"_s),
                 qPrintable(said));
        QCOMPARE(m_file->stored("SELECT count(*) FROM Recipes"), isYes ? u"2"_s : u"1"_s);
    }

    void asksAboutDamageOnTheTerminal()
    {
        QByteArray old = bytesOf(QString::fromUtf8(OLD_FILE));
        constexpr qsizetype pageSize = 2048;
        constexpr qsizetype ofIngredients = 61;
        old.replace(ofIngredients * pageSize, pageSize, QByteArray(pageSize, 'U'));
        setBytes(m_file->path(), old);
        setBytes(inFolder(u"soup.srf"_s), srf({}));
        const QString said = importOnTerminal("y\nn\n");
        QVERIFY2(said.contains(u"Ingredients: 53 of 100 can be read."_s), qPrintable(said));
        QVERIFY(bytesOf(m_file->path()) == old && !QFile::exists(inFolder(u"data old.rbk"_s)));
    }

    void takesOverAnOldFile_data()
    {
        // The second question is whether to import a recipe that is in the old file.
        addRows<QByteArray, bool>(
            {{"Yes", "y\nY\n", true}, {"No", "n\n", false}, {"no terminal", {}, false}});
    }

    void takesOverAnOldFile()
    {
        const auto [answers, isYes] = fetchRow<QByteArray, bool>();
        const QByteArray old = bytesOf(QString::fromUtf8(OLD_FILE));
        setBytes(m_file->path(), old);
        setBytes(inFolder(u"soup.srf"_s), srf({.title = "Spaghetti all'amatriciana"}));
        const QString said = importOnTerminal(answers);
        QVERIFY2(
            said.startsWith(
                u"%1 Recipes from an older version: The file %2 is from an older version"_s.arg(
                    QString::number(isYes ? 0 : 1), m_file->path())),
            qPrintable(said));
        QCOMPARE(said.contains(u"Error: "_s), !isYes);
        QCOMPARE(bytesOf(isYes ? inFolder(u"data old.rbk"_s) : m_file->path()), old);
        if (isYes)
            QCOMPARE(m_file->stored("SELECT count(*) FROM Recipes"), u"15"_s);
        else
            QVERIFY(!QFile::exists(inFolder(u"data old.rbk"_s)));
    }

    void offersACopy_data()
    {
        // The bytes that are written over page 2, or instead of the whole file, or nothing if the
        // file is missing.
        addRows<QByteArray, QByteArray>({
            {"missing", {}, "y\n"},
            {"not a database", "Soup", "y\n"},
            {"damage that the first write finds", QByteArray(4096, 'U'), "y\n"},
            {"No", "Soup", "n\n"},
            {"no terminal", "Soup", {}},
        });
    }

    void offersACopy()
    {
        const auto [bad, answer] = fetchRow<QByteArray, QByteArray>();
        setBytes(inFolder(u"soup.srf"_s), soup);
        m_file->write(u"INSERT INTO Recipes (RecipeName) VALUES ('Bread')"_s);
        const QByteArray good = bytesOf(m_file->path());
        setBytes(inFolder(u"copies/data 2026-03-01.rbk"_s), good);
        const QByteArray there =
            bad.size() < 4096 ? bad : QByteArray(good).replace(good.size() - 4096, 4096, bad);
        QVERIFY(QFile::remove(m_file->path()));
        if (!there.isNull())
            setBytes(m_file->path(), there);

        const QString said = importOnTerminal(answer);
        QCOMPARE(said.count(u"Error: "_s), 1);
        QCOMPARE(said.count(u"Pantrywise can put back its copy of 1 March 2026 with 1 recipe."_s),
                 1);
        const QStringList kept = QDir(m_file->folder()).entryList({u"data damaged*.rbk"_s});
        if (answer == "y\n") {
            QVERIFY2(said.startsWith(u"0 "_s) && said.endsWith(u"Yes\n"_s), qPrintable(said));
            QCOMPARE(m_file->stored("SELECT RecipeName FROM Recipes"), u"Bread, Soup"_s);
            QCOMPARE(bytesOf(inFolder(kept.value(0))), there);
        } else {
            QVERIFY2(said.startsWith(u"1 "_s) && said.endsWith(u"No\n"_s), qPrintable(said));
            QCOMPARE(bytesOf(m_file->path()), there);
            QVERIFY(kept.isEmpty());
        }
    }

    void tellsThatThereIsNoCopy()
    {
        setBytes(inFolder(u"soup.srf"_s), soup);
        setBytes(inFolder(u"copies"_s), "mine");
        const QString said = run({u"soup.srf"_s});
        QVERIFY2(said.startsWith(u"0 Copies: "_s) && said.count(u"Copies: "_s) == 1,
                 qPrintable(said));
    }

    void registersItsCurrentPath()
    {
        run({u"none.srf"_s});
        QVERIFY(QDir(m_file->folder()).mkdir(u"moved"_s));
        const QByteArray moved = inFolder(u"moved/pantrywise"_s).toUtf8();
        QVERIFY(QFile::rename(inFolder(u"pantrywise"_s), QString::fromUtf8(moved)));
        QVERIFY(run({u"none.srf"_s}, u"moved/pantrywise"_s).startsWith(u"1 "_s));
        QVERIFY(bytesOf(m_home.data(u"applications/pantrywise.desktop"_s)).contains(moved + " %f"));
        QVERIFY(bytesOf(m_home.config(u"Quillmoor/Pantrywise.ini"_s)).contains(moved));
    }

    // QProcess cannot name such a program.
    void refusesAFolderThatQtCannotName()
    {
        setBytes(inFolder(u"start"_s),
                 "#!/bin/sh\nfolder=$(printf 'caf\\351') && mkdir $folder && cp pantrywise "
                 "data.rbk $folder && "
                 "exec $folder/pantrywise none.srf\n");
        QVERIFY(QFile::setPermissions(inFolder(u"start"_s), QFile::ReadOwner | QFile::ExeOwner));
        const QString said = run({}, u"start"_s);
        QVERIFY2(said.startsWith(u"1 Pantrywise: "_s)
                     && said.contains(inFolder(u"caf\\xE9/pantrywise\n"_s)),
                 qPrintable(said));
        QVERIFY(!bytesOf(m_home.data(u"applications/pantrywise.desktop"_s)).contains("caf"));
        QVERIFY(!bytesOf(m_home.config(u"Quillmoor/Pantrywise.ini"_s)).contains("caf"));
    }

    void importsCompletelyOrNotAtAll_data()
    {
        QTest::addColumn<int>("killedAfter"); // milliseconds
        for (int delay = 20; delay < 250; delay += 8)
            QTest::addRow("killed after %d ms", delay) << delay;
    }

    void importsCompletelyOrNotAtAll()
    {
        QFETCH(const int, killedAfter);
        constexpr int ingredients = 20000;
        QByteArrayList lines;
        for (int i = 0; i < ingredients; ++i)
            lines += "Ingredient " + QByteArray::number(i) + "|1|1|True||1 cup";
        setBytes(inFolder(u"large.srf"_s), srf({.ingredients = lines}));

        QProcess program;
        start(program, {u"large.srf"_s});
        QVERIFY(program.waitForStarted());
        const bool hasEnded = program.waitForFinished(killedAfter);
        program.kill();
        program.waitForFinished();

        const int recipes = m_file->stored("SELECT count(*) FROM Recipes").toInt();
        QVERIFY(!hasEnded || recipes == 1);
        QCOMPARE(m_file->stored("SELECT count(*) FROM RecipeIngredients").toInt(),
                 recipes * ingredients);
        QCOMPARE(m_file->stored("PRAGMA integrity_check"), u"ok"_s);
    }
};

QTEST_GUILESS_MAIN(tst_Program)
#include "tst_program.moc"
