#include "FileBytes.h"
#include "RecipeFile.h"
#include "TemporaryHome.h"

#include <SQLiteCpp/Statement.h>

#include <QProcess>
#include <QRandomGenerator>

#include <pty.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Run {
    int status;
    QString messages;
};

const QByteArray soup = "book\rSoup\rCook\r1\r4\rGood\r<Instructions>\rBoil.\r</Instructions>\r"
                        "<Ingredients>\rSalt|3|999|True||1 tsp\r</Ingredients>\r"
                        "<Utensils>\rPot\r</Utensils>\r";

} // namespace

// The built program as a whole, in a program folder of its own, without a desktop.
class TestProgram : public QObject
{
    Q_OBJECT

    const TemporaryHome home; // the program registers itself there

private Q_SLOTS:
    void init();
    void importsAFileAndEnds();
    void saysWhyNothingWasImported();
    void asksOnTheTerminal();
    void needsADesktopForItsWindow();
    void registersItselfWhereverItStands();
    void isWholeAfterKilling();

private:
    QString inFolder(const QString &name) const { return m_file->folder() + u'/' + name; }
    void start(QProcess &process, const QStringList &arguments,
               const QString &program = u"pantrywise"_s) const;
    Run run(const QStringList &arguments, const QString &program = u"pantrywise"_s,
            const QString &input = QProcess::nullDevice()) const;
    QString valueOf(const QString &query) const;

    std::unique_ptr<RecipeFile> m_file;
};

void TestProgram::init()
{
    m_file = std::make_unique<RecipeFile>();
    QVERIFY(QFile::copy(QString::fromLocal8Bit(PROGRAM), inFolder(u"pantrywise"_s)));
}

void TestProgram::start(QProcess &process, const QStringList &arguments,
                        const QString &program) const
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const QString &name : {u"DISPLAY"_s, u"WAYLAND_DISPLAY"_s, u"QT_QPA_PLATFORM"_s})
        environment.remove(name);
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(m_file->folder());
    process.start(inFolder(program), arguments);
}

Run TestProgram::run(const QStringList &arguments, const QString &program,
                     const QString &input) const
{
    QProcess process;
    process.setStandardInputFile(input);
    start(process, arguments, program);
    if (!process.waitForFinished() || process.exitStatus() != QProcess::NormalExit)
        return {-1, process.errorString()};
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardError())};
}

QString TestProgram::valueOf(const QString &query) const
{
    SQLite::Database database = m_file->other();
    return QString::fromStdString(database.execAndGet(query.toStdString()).getString());
}

void TestProgram::importsAFileAndEnds()
{
    const std::pair<QString, QStringList> table[] = {
        {u"soup.srf"_s, {u"soup.srf"_s}},
        {u"soup.srf"_s, {u"%1/soup.srf"_s}}, // %1 stands for the program folder
        {u"my soup.srf"_s, {u"my"_s, u"soup.srf"_s}},
        {u"my soup.srf"_s, {u"\"my soup.srf\""_s}},
        {u"-style.srf"_s, {u"-style.srf"_s}},
    };
    for (auto [name, arguments] : table) {
        init();
        setBytes(inFolder(name), soup);
        const Run result = run(arguments.replaceInStrings(u"%1"_s, m_file->folder()));
        QCOMPARE(result.messages, QString());
        QCOMPARE(result.status, 0);
        QCOMPARE(valueOf(u"SELECT RecipeName FROM Recipes"_s), u"Soup"_s);
    }
}

void TestProgram::saysWhyNothingWasImported()
{
    const auto complains = [this](const QString &message) {
        const Run result = run({u"soup.srf"_s});
        return result.status == 1 && result.messages.contains(message)
            && result.messages.count(u"Error: "_s) == 1;
    };
    QVERIFY(complains(u"Error: Could not find file.  Try importing file though File, Import."_s));
    setBytes(inFolder(u"soup.srf"_s), soup.chopped(12));
    QVERIFY(complains(u"soup.srf"_s));
    QCOMPARE(valueOf(u"SELECT count(*) FROM Recipes"_s), u"0"_s);
    setBytes(inFolder(u"soup.srf"_s), soup);
    setBytes(inFolder(u"data.rbk"_s), "no database at all, but some text in it");
    QVERIFY(complains(u"data.rbk is not a recipe file"_s));
}

void TestProgram::asksOnTheTerminal()
{
    setBytes(inFolder(u"soup.srf"_s), soup);
    QCOMPARE(run({u"soup.srf"_s}).status, 0);
    // Where nobody can be asked, the answer is No.
    QCOMPARE(run({u"soup.srf"_s}).messages,
             u"Already in database: Soup is already in the database.  Do you want to import it "
             "anyways?\nNo\n"_s);
    int recipes = 1;
    for (const auto &[answer, isYes] : {std::pair("y\n", true),
                                        {"YES\n", true},
                                        {"n\n", false},
                                        {"yesterday\n", false},
                                        {"\4", false}}) {
        int terminal = -1;
        int programSide = -1;
        char name[64];
        QCOMPARE(openpty(&terminal, &programSide, name, nullptr, nullptr), 0);
        QCOMPARE(write(terminal, answer, strlen(answer)), static_cast<ssize_t>(strlen(answer)));
        const Run result = run({u"soup.srf"_s}, u"pantrywise"_s, QString::fromLatin1(name));
        close(terminal);
        close(programSide);
        recipes += isYes ? 1 : 0;
        QVERIFY2(result.messages.endsWith(isYes ? u"Yes\n"_s : u"No\n"_s), answer);
        QCOMPARE(result.status, isYes ? 0 : 1);
        QCOMPARE(valueOf(u"SELECT count(*) FROM Recipes"_s), QString::number(recipes));
    }
}

void TestProgram::needsADesktopForItsWindow()
{
    for (const QStringList &arguments : {QStringList(), QStringList(u""_s)}) {
        const Run result = run(arguments);
        QCOMPARE(result.status, 1);
        QVERIFY2(result.messages.contains(u"needs a desktop"_s), qPrintable(result.messages));
    }
}

void TestProgram::registersItselfWhereverItStands()
{
    run({u"none.srf"_s});
    QVERIFY(QDir(m_file->folder()).mkdir(u"moved"_s));
    QVERIFY(QFile::rename(inFolder(u"pantrywise"_s), inFolder(u"moved/pantrywise"_s)));
    QCOMPARE(run({u"none.srf"_s}, u"moved/pantrywise"_s).status, 1);

    for (const QString &registration : {home.data(u"applications/pantrywise.desktop"_s),
                                        home.config(u"Quillmoor/Pantrywise.ini"_s)})
        QVERIFY(bytesOf(registration).contains(inFolder(u"moved/pantrywise"_s).toUtf8()));
}

// A recipe is there with all its rows or not at all, whenever the program is killed.
void TestProgram::isWholeAfterKilling()
{
    constexpr int ingredients = 20000;
    QByteArray lines;
    for (int i = 0; i < ingredients; ++i)
        lines += "Ingredient " + QByteArray::number(i) + "|1|1|True||1 cup\r";
    setBytes(inFolder(u"large.srf"_s),
             QByteArray(soup).replace("Soup", "Large").replace("Salt|3|999|True||1 tsp\r", lines));

    int stored = 0;
    for (int i = 0; i < 30; ++i) {
        QProcess program;
        start(program, {u"large.srf"_s});
        QVERIFY(program.waitForStarted());
        const bool ended = program.waitForFinished(QRandomGenerator::global()->bounded(20, 250));
        program.kill();
        program.waitForFinished();

        const int recipes = valueOf(u"SELECT count(*) FROM Recipes"_s).toInt();
        QVERIFY(!ended || recipes > stored || program.exitCode() == 1);
        QCOMPARE(valueOf(u"SELECT count(*) FROM RecipeIngredients"_s).toInt(),
                 recipes * ingredients);
        QCOMPARE(valueOf(u"PRAGMA integrity_check"_s), u"ok"_s);
        stored = recipes;
        m_file->write(u"UPDATE Recipes SET RecipeName = 'kept ' || RecipeID"_s);
    }
}

QTEST_GUILESS_MAIN(TestProgram)
#include "tst_program.moc"
