#include "Bench.h"
#include "WindowWatcher.h"

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

// Copies the program into its own folder, with its own home directory.
Program install(Bench &bench, const QString &executable, const QString &name)
{
    const QString folder = bench.path(name);
    const QString home = folder + u"/home"_s;
    const QString runtime = home + u"/run"_s;
    const QString path = folder + u'/' + name;
    if (!QDir().mkpath(runtime) || !QFile::copy(executable, path))
        throw std::runtime_error("a program cannot be copied");
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

// Returns the proportional set size of a process: memory shared with other processes counts in
// part.
double proportionalSetSize(qint64 process)
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
    Cost seconds; // from starting the process to the mapped window
    Cost bytes; // proportional set size half a second later
};

Start start(const Program &program, WindowWatcher &watcher)
{
    QProcess process;
    process.setProcessEnvironment(program.environment);
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    const Cost cost = secondsOf([&] {
        process.start(program.path, QStringList());
        watcher.waitForWindowOf(process.processId());
    });
    QThread::msleep(500);
    const double bytes = proportionalSetSize(process.processId());
    process.terminate();
    process.waitForFinished();
    return {{cost.value}, {bytes}};
}

} // namespace

// The first round, which is not counted, registers the program with the desktop.
void measureStartup(Bench &bench)
{
    WindowWatcher watcher;
    const Program pantrywise = install(bench, QStringLiteral(BENCH_PANTRYWISE), u"pantrywise"_s);
    const Program bareFrame = install(bench, QStringLiteral(BENCH_BAREFRAME), u"bareframe"_s);
    if (!QFile::copy(bench.database(bench.largest()), bench.path(u"pantrywise/data.rbk"_s)))
        throw std::runtime_error("the database cannot be copied");

    bench.report(
        {"start until the main window is mapped (baseline: a minimal Qt program with an MDI area)",
         bench.largest(),
         Unit::Seconds,
         compare([&] { return start(bareFrame, watcher).seconds; },
                 [&] { return start(pantrywise, watcher).seconds; }),
         {Limit::Kind::Ratio, 1.25}});
    bench.report({"proportional set size half a second later (baseline: the same program)",
                  bench.largest(),
                  Unit::Bytes,
                  compare([&] { return start(bareFrame, watcher).bytes; },
                          [&] { return start(pantrywise, watcher).bytes; }),
                  {Limit::Kind::Ratio, 1.5}});
}
