#include "import/srf/SrfFile.h"
#include "interaction/ControlCharacters.h"
#include "platform/Paths.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;
using platform::ReadFailure;

class tst_SrfFile : public QObject
{
    Q_OBJECT

    QTemporaryDir m_folder;

private Q_SLOTS:
    void initTestCase()
    {
        for (const auto &[name, size] : {std::pair(u"largest"_s, largestSrfFile),
                                         {u"too large"_s, largestSrfFile + 1},
                                         {u"unreadable"_s, 0}}) {
            QFile file(m_folder.filePath(name));
            QVERIFY(file.open(QIODevice::WriteOnly) && file.resize(size)); // sparse
        }
        const QByteArray folder = QFile::encodeName(m_folder.path());
        QCOMPARE(::chmod((folder + "/unreadable").constData(), 0), 0);
        QCOMPARE(::mkfifo((folder + "/pipe").constData(), 0600), 0);
        for (const auto &[target, name] : {std::pair(u"largest"_s, u"link"_s),
                                           {u"nowhere"_s, u"broken"_s},
                                           {u"loop"_s, u"loop"_s}})
            QVERIFY(QFile::link(target, m_folder.filePath(name)));
    }

    void largestFile()
    {
        const auto result = readSrfFile(platform::nativePath(m_folder.filePath(u"link"_s)));
        QCOMPARE(std::get<QByteArray>(result).size(), largestSrfFile);
    }

    void failures_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<ReadFailure>("failure");
        QTest::addColumn<QString>("advice");
        const auto row = [](const char *name, const QString &file, ReadFailure failure,
                            const QString &advice) {
            QTest::newRow(name) << file << failure << advice;
        };
        row("broken link", u"broken"_s, ReadFailure::NotFound, u"There is no file"_s);
        row("below a file", u"largest/below"_s, ReadFailure::NotFound, u"There is no file"_s);
        row("null character", u"largest\0.srf"_s, ReadFailure::NotFound, u"There is no file"_s);
        row("loop of links", u"loop"_s, ReadFailure::Failed, u"levels of symbolic links"_s);
        row("folder", u"."_s, ReadFailure::Folder, u"is a folder. Choose the recipe files in it"_s);
        row("pipe", u"pipe"_s, ReadFailure::NotRegular, u"Save the recipe as an ordinary file"_s);
        row("device", u"/dev/zero"_s, ReadFailure::NotRegular,
            u"is a pipe, a socket or a device"_s);
        row("too large", u"too large"_s, ReadFailure::TooLarge, u"is larger than 8 MiB"_s);
        row("unreadable", u"unreadable"_s, ReadFailure::AccessDenied, u"Change its permissions"_s);
        row("read error", u"/proc/self/mem"_s, ReadFailure::Failed,
            u"could not be read: Input/output error."_s);
    }

    void failures()
    {
        QFETCH(const QString, name);
        QFETCH(const ReadFailure, failure);
        QFETCH(const QString, advice);
        if (failure == ReadFailure::AccessDenied && ::geteuid() == 0)
            QSKIP("root may read every file");
        const QString path = name.startsWith(u'/') ? name : m_folder.filePath(name);
        const auto result = readSrfFile(platform::nativePath(path));
        const auto *error = std::get_if<SrfFileError>(&result);
        QVERIFY(error);
        QCOMPARE(error->failure, failure);
        QVERIFY2(error->message.contains(escapeControlCharacters(path)),
                 qPrintable(error->message));
        QVERIFY2(error->message.contains(advice), qPrintable(error->message));
    }

    // The files in /proc say that their size is 0.
    void fileThatGrowsWhileRead()
    {
        const auto grown = platform::readRegularFile("/proc/self/status", largestSrfFile);
        QVERIFY(std::get<QByteArray>(grown).startsWith("Name:"));
        const auto outgrown = platform::readRegularFile("/proc/self/status", 20);
        QCOMPARE(std::get<platform::FileReadError>(outgrown).failure, ReadFailure::TooLarge);
    }
};

QTEST_GUILESS_MAIN(tst_SrfFile)
#include "tst_srffile.moc"
