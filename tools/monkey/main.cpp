#include "Monkey.h"
#include "data/Database.h"
#include "data/DatabasePath.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QHashSeed>
#include <QStyleHints>
#include <QTemporaryDir>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int rememberedSteps = 30;
constexpr unsigned longestStep = 30; // seconds; the program hangs after them

// The last steps, where a signal handler can read them.
std::array<std::array<char, 300>, rememberedSteps> lastSteps;
unsigned stepCount = 0;
unsigned seed = 1;

void writeText(const char *text)
{
    [[maybe_unused]] const ssize_t ignored = write(STDERR_FILENO, text, std::strlen(text));
}

void remember(const QString &step)
{
    auto &line = lastSteps[stepCount % rememberedSteps];
    std::snprintf(line.data(), line.size(), "%6u  %s\n", stepCount, qUtf8Printable(step));
    ++stepCount;
    alarm(longestStep);
}

void printSteps()
{
    for (unsigned i = stepCount - std::min<unsigned>(stepCount, rememberedSteps); i < stepCount;
         ++i)
        writeText(lastSteps[i % rememberedSteps].data());
    std::array<char, 64> line{};
    std::snprintf(line.data(), line.size(), "seed %u\n", seed);
    writeText(line.data());
}

void onSignal(int signal)
{
    writeText(signal == SIGALRM ? "the program hangs\n" : "the program crashed\n");
    printSteps();
    _exit(1);
}

// The offscreen platform warns about everything that it cannot do.
void onMessage(QtMsgType type, const QMessageLogContext & /*context*/, const QString &message)
{
    if (!message.startsWith("This plugin does not support"_L1))
        writeText(qUtf8Printable(message + u'\n'));
    if (type == QtFatalMsg)
        std::abort();
}

// Returns whether no fault was found.
bool run(int steps, int seconds)
{
    const QTemporaryDir folder(u"/dev/shm/pantrywise-monkey-XXXXXX"_s);
    DatabasePath = folder.filePath(u"data.rbk"_s);
    OtherProgram::createFile(DatabasePath);
    // The windows share this connection, which soon reports a locked file.
    const auto connection = Database::open(DatabasePath, std::chrono::milliseconds(1));

    QElapsedTimer time;
    time.start();
    stepCount = 0;
    Monkey monkey(DatabasePath, seed, remember);
    for (int i = 0; i < steps && (seconds == 0 || time.elapsed() / 1000 < seconds); ++i) {
        const QString fault = monkey.step();
        if (!fault.isEmpty()) {
            printSteps();
            writeText(qUtf8Printable(fault + u'\n'));
            return false;
        }
    }
    return true;
}

} // namespace

int main(int argc, char *argv[])
{
    const QTemporaryDir home;
    for (const char *name :
         {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"})
        qputenv(name, home.path().toUtf8());
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler(onMessage);
    QHashSeed::setDeterministicGlobalSeed();
    QApplication application(argc, argv);
    QApplication::setKeyboardInputInterval(0);
    QApplication::setEffectEnabled(Qt::UI_AnimateCombo, false);

    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"Uses the program at random and compares its recipe database with a model."_s);
    parser.addHelpOption();
    const QCommandLineOption seedOption(u"seed"_s, u"The first seed."_s, u"number"_s, u"1"_s);
    const QCommandLineOption steps(u"steps"_s, u"Steps for each seed."_s, u"number"_s, u"500"_s);
    const QCommandLineOption seconds(u"seconds"_s, u"Go on with the next seed until this time."_s,
                                     u"number"_s, u"0"_s);
    parser.addOptions({seedOption, steps, seconds});
    parser.process(application);

    for (const int signal : {SIGSEGV, SIGABRT, SIGFPE, SIGALRM})
        std::signal(signal, onSignal);
    QElapsedTimer time;
    time.start();
    seed = parser.value(seedOption).toUInt();
    const int limit = parser.value(seconds).toInt();
    do {
        const int left = limit == 0 ? 0 : limit - static_cast<int>(time.elapsed() / 1000);
        if (!run(parser.value(steps).toInt(), left))
            return 1;
        std::printf("seed %u: %u steps\n", seed, stepCount);
        std::fflush(stdout);
        ++seed;
    } while (time.elapsed() / 1000 < limit);
    return 0;
}
