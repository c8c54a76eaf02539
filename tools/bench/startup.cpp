#include "Subjects.h"
#include "WindowWatch.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <QThread>

#include <cstdio>
#include <stdexcept>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Program {
    QString path;
    QProcessEnvironment environment;
};

// In a folder of its own, with a home of its own.
Program installed(Bench &bench, const QString &executable, const QString &name)
{
    const QString folder = bench.path(name);
    const QString home = folder + u"/home"_s;
    const QString runtime = home + u"/run"_s;
    const QString path = folder + u'/' + name;
    if (!QDir().mkpath(runtime) || !QFile::copy(executable, path))
        throw std::runtime_error("a program could not be copied");
    QFile::setPermissions(runtime, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);

    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"HOME"_s, home);
    environment.insert(u"XDG_CONFIG_HOME"_s, home + u"/config"_s);
    environment.insert(u"XDG_DATA_HOME"_s, home + u"/data"_s);
    environment.insert(u"XDG_CACHE_HOME"_s, home + u"/cache"_s);
    environment.insert(u"XDG_RUNTIME_DIR"_s, runtime);
    environment.insert(u"QT_QPA_PLATFORM"_s, u"xcb"_s);
    return {path, environment};
}

// Of a process, counting what it shares with others by its share.
double proportionalBytes(qint64 process)
{
    QFile file(u"/proc/%1/smaps_rollup"_s.arg(process));
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error(file.errorString().toStdString());
    const QByteArray text = file.readAll();
    const qsizetype start = text.indexOf("\nPss:") + 5;
    const QByteArray number = text.mid(start, text.indexOf("kB", start) - start);
    return number.trimmed().toDouble() * 1024;
}

struct Start {
    double seconds; // from exec to the mapped window
    double bytes; // half a second later
};

Start start(const Program &program, WindowWatch &watch)
{
    QProcess process;
    process.setProcessEnvironment(program.environment);
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    const double seconds = secondsOf([&] {
        process.start(program.path, QStringList());
        watch.waitForWindowOf(process.processId());
    });
    QThread::msleep(500);
    const double bytes = proportionalBytes(process.processId());
    process.terminate();
    process.waitForFinished();
    return {seconds, bytes};
}

} // namespace

// The first turn, which does not count, makes the registrations that later starts find.
void measureStartup(Bench &bench)
{
    WindowWatch watch;
    const Program pantrywise = installed(bench, QStringLiteral(BENCH_PANTRYWISE), u"pantrywise"_s);
    const Program bareFrame = installed(bench, QStringLiteral(BENCH_BAREFRAME), u"bareframe"_s);
    if (!QFile::copy(bench.database(bench.largest()), bench.path(u"pantrywise/data.rbk"_s)))
        throw std::runtime_error("the database could not be copied");

    printResult(
        {"start, to the mapped main window; plain is a bare Qt program with frame and menus",
         bench.largest(),
         Unit::Seconds,
         inTurns([&] { return start(bareFrame, watch).seconds; },
                 [&] { return start(pantrywise, watch).seconds; }),
         {Bound::Kind::TimesYardstick, 1.25}});
    printResult({"proportional memory half a second later; plain is the same",
                 bench.largest(),
                 Unit::Bytes,
                 inTurns([&] { return start(bareFrame, watch).bytes; },
                         [&] { return start(pantrywise, watch).bytes; }),
                 {Bound::Kind::TimesYardstick, 1.5}});
}
