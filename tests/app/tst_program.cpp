#include "support/FileBytes.h"
#include "support/RecipeFile.h"
#include "support/TemporaryHome.h"

#include <QProcess>
#include <QRandomGenerator>

#include <pty.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

const QByteArray soup = "book\rSoup\rCook\r1\r4\rGood\r<Instructions>\rBoil.\r</Instructions>\r"
                        "<Ingredients>\rSalt|3|999|True||1 tsp\r</Ingredients>\r"
                        "<Utensils>\rPot\r</Utensils>\r";

// The built program as a whole, in a program folder of its own, without a desktop.
class TestProgram : public QObject
{
    Q_OBJECT

    const TemporaryHome home; // the program registers itself there
    std::unique_ptr<RecipeFile> m_file;

    QString inFolder(const QString &name) const { return m_file->folder() + u'/' + name; }

    void start(QProcess &process, const QStringList &arguments,
               const QString &program = u"pantrywise"_s) const
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const QString &name : {u"DISPLAY"_s, u"WAYLAND_DISPLAY"_s, u"QT_QPA_PLATFORM"_s})
            environment.remove(name);
        process.setProcessEnvironment(environment);
        process.setWorkingDirectory(m_file->folder());
        process.start(inFolder(program), arguments);
    }

    // Its exit code and what it says: "1 Error: ...".
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

private Q_SLOTS:
    void init()
    {
        m_file = std::make_unique<RecipeFile>();
        QVERIFY(QFile::copy(QString::fromLocal8Bit(PROGRAM), inFolder(u"pantrywise"_s)));
    }

    void importsAFileAndEnds()
    {
        const std::pair<QString, QStringList> table[] = {
            {u"soup.srf"_s, {u"%1/soup.srf"_s}}, // %1 stands for the program folder
            {u"my soup.srf"_s, {u"my"_s, u"soup.srf"_s}},
            {u"-style.srf"_s, {u"-style.srf"_s}},
        };
        for (auto [name, arguments] : table) {
            init();
            setBytes(inFolder(name), soup);
            QCOMPARE(run(arguments.replaceInStrings(u"%1"_s, m_file->folder())), u"0 "_s);
            QCOMPARE(m_file->stored("SELECT RecipeName FROM Recipes"), u"Soup"_s);
        }
    }

    void saysWhyNothingWasImported()
    {
        const auto complains = [this](const QString &message) {
            const QString said = run({u"soup.srf"_s});
            return said.startsWith(u"1 Error: "_s) && said.contains(message)
                && said.count(u"Error: "_s) == 1;
        };
        QVERIFY(complains(u"Could not find file.  Try importing file though File, Import."_s));
        setBytes(inFolder(u"soup.srf"_s), soup.chopped(12));
        QVERIFY(complains(u"soup.srf"_s));
        QCOMPARE(m_file->stored("SELECT * FROM Recipes"), u""_s);
        setBytes(inFolder(u"soup.srf"_s), soup);
        setBytes(inFolder(u"data.rbk"_s), "no database at all, but some text in it");
        QVERIFY(complains(u"data.rbk is not a recipe file"_s));
    }

    // A terminal takes the character in the title for the begin of a command.
    void asksOnTheTerminal()
    {
        setBytes(inFolder(u"soup.srf"_s), QByteArray(soup).replace("Soup", "So\xC2\x9Bup"));
        run({u"soup.srf"_s});
        // Where nobody can be asked, the answer is No.
        QCOMPARE(run({u"soup.srf"_s}),
                 u"1 Already in database: So<U+009B>up is already in the database.  Do you want to "
                 "import it anyways?\nNo\n"_s);
        int recipes = 1;
        for (const auto &[answer, isYes] :
             {std::pair("YES\n", true), {"yesterday\n", false}, {"\4", false}}) {
            int terminal = -1;
            int programSide = -1;
            char name[64];
            QCOMPARE(openpty(&terminal, &programSide, name, nullptr, nullptr), 0);
            QCOMPARE(write(terminal, answer, strlen(answer)), static_cast<ssize_t>(strlen(answer)));
            const QString said = run({u"soup.srf"_s}, u"pantrywise"_s, QString::fromLatin1(name));
            close(terminal);
            close(programSide);
            recipes += isYes ? 1 : 0;
            QVERIFY2(said.startsWith(isYes ? u"0 "_s : u"1 "_s)
                         && said.endsWith(isYes ? u"Yes\n"_s : u"No\n"_s),
                     answer);
            QCOMPARE(m_file->stored("SELECT count(*) FROM Recipes"), QString::number(recipes));
        }
    }

    void needsADesktopForItsWindow()
    {
        for (const QStringList &arguments : {QStringList(), QStringList(u""_s)})
            QVERIFY(run(arguments).contains(u"needs a desktop"_s));
    }

    void registersItselfWhereverItStands()
    {
        run({u"none.srf"_s});
        QVERIFY(QDir(m_file->folder()).mkdir(u"moved"_s));
        const QByteArray moved = inFolder(u"moved/pantrywise"_s).toUtf8();
        QVERIFY(QFile::rename(inFolder(u"pantrywise"_s), QString::fromUtf8(moved)));
        QVERIFY(run({u"none.srf"_s}, u"moved/pantrywise"_s).startsWith(u"1 "_s));
        QVERIFY(bytesOf(home.data(u"applications/pantrywise.desktop"_s)).contains(moved + " %f"));
        QVERIFY(bytesOf(home.config(u"Quillmoor/Pantrywise.ini"_s)).contains(moved));
    }

    // A recipe is there with all its rows or not at all, whenever the program is killed.
    void isWholeAfterKilling()
    {
        constexpr int ingredients = 20000;
        QByteArray lines;
        for (int i = 0; i < ingredients; ++i)
            lines += "Ingredient " + QByteArray::number(i) + "|1|1|True||1 cup\r";
        setBytes(
            inFolder(u"large.srf"_s),
            QByteArray(soup).replace("Soup", "Large").replace("Salt|3|999|True||1 tsp\r", lines));

        int stored = 0;
        for (int i = 0; i < 30; ++i) {
            QProcess program;
            start(program, {u"large.srf"_s});
            QVERIFY(program.waitForStarted());
            const bool ended =
                program.waitForFinished(QRandomGenerator::global()->bounded(20, 250));
            program.kill();
            program.waitForFinished();

            const int recipes = m_file->stored("SELECT count(*) FROM Recipes").toInt();
            QVERIFY(!ended || recipes > stored || program.exitCode() == 1);
            QCOMPARE(m_file->stored("SELECT count(*) FROM RecipeIngredients").toInt(),
                     recipes * ingredients);
            QCOMPARE(m_file->stored("PRAGMA integrity_check"), u"ok"_s);
            stored = recipes;
            m_file->write(u"UPDATE Recipes SET RecipeName = 'kept ' || RecipeID"_s);
        }
    }
};

QTEST_GUILESS_MAIN(TestProgram)
#include "tst_program.moc"
