#include "SrfFile.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;
using platform::ReadFailure;

class TestSrfFile : public QObject
{
    Q_OBJECT

    void makeFile(const QString &name, const QByteArray &bytes, qint64 size);
    QByteArray nativePath(const QString &name) const
    {
        return QFile::encodeName(m_folder.filePath(name));
    }

    QTemporaryDir m_folder;

private Q_SLOTS:
    void initTestCase();
    void refuses_data();
    void refuses();
    void readsWhole();
    void readsWhatIsMetInAChangingFile();
};

void TestSrfFile::makeFile(const QString &name, const QByteArray &bytes, qint64 size)
{
    QFile file(m_folder.filePath(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
    QVERIFY(file.resize(size)); // sparse
}

void TestSrfFile::initTestCase()
{
    makeFile(u"Soup.srf"_s, "Soup\r", 5);
    makeFile(u"empty"_s, {}, 0);
    makeFile(u"largest"_s, {}, largestSrfFile);
    makeFile(u"too large"_s, {}, largestSrfFile + 1);
    makeFile(u"1 TB"_s, {}, qint64(1) << 40);
    makeFile(u"no right"_s, {}, 0);
    QCOMPARE(::chmod(nativePath(u"no right"_s).constData(), 0), 0);
    QCOMPARE(::mkfifo(nativePath(u"pipe"_s).constData(), 0600), 0);
    QVERIFY(QFile::link(u"Soup.srf"_s, m_folder.filePath(u"link"_s)));
    QVERIFY(QFile::link(u"nowhere"_s, m_folder.filePath(u"link to nowhere"_s)));
    QVERIFY(QFile::link(u"loop"_s, m_folder.filePath(u"loop"_s)));
}

void TestSrfFile::refuses_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<ReadFailure>("failure");
    QTest::addColumn<QString>("advice");
    const auto row = [this](const QString &name, ReadFailure failure, const QString &advice) {
        QTest::newRow(qPrintable(name)) << m_folder.filePath(name) << failure << advice;
    };
    const QString special = u"Save the recipe as an ordinary file"_s;

    row(u"missing"_s, ReadFailure::NoFile, u"There is no file"_s);
    row(u"Soup.srf/below"_s, ReadFailure::NoFile, {});
    row(u"link to nowhere"_s, ReadFailure::NoFile, {});
    row(u"long"_s.repeated(100), ReadFailure::NoFile, {});
    row(u"Soup.srf\0.srf"_s, ReadFailure::NoFile, {});
    row(u"loop"_s, ReadFailure::Failed, u"levels of symbolic links"_s);
    row(u"."_s, ReadFailure::Folder, u"is a folder. Choose the recipe files in it"_s);
    row(u"pipe"_s, ReadFailure::Special, special);
    row(u"too large"_s, ReadFailure::TooLarge, {});
    row(u"1 TB"_s, ReadFailure::TooLarge, u"is larger than 8 MiB"_s);
    if (::geteuid() != 0) // who may read everything
        row(u"no right"_s, ReadFailure::NoRight, u"Give yourself that right"_s);
    QTest::newRow("endless device") << u"/dev/zero"_s << ReadFailure::Special << special;
    QTest::newRow("unreadable inside") << u"/proc/self/mem"_s << ReadFailure::Failed
                                       << u"could not be read: Input/output error."_s;
}

void TestSrfFile::refuses()
{
    QFETCH(QString, path);
    QFETCH(QString, advice);
    const auto result = readSrfFile(path);
    const auto *error = std::get_if<SrfFileError>(&result);
    QVERIFY(error);
    QTEST(error->failure, "failure");
    QVERIFY2(error->message.contains(QDir::toNativeSeparators(path)), qPrintable(error->message));
    QVERIFY2(error->message.contains(advice), qPrintable(error->message));
}

void TestSrfFile::readsWhole()
{
    const auto size = [this](const QString &name) {
        const auto result = readSrfFile(m_folder.filePath(name));
        const auto *bytes = std::get_if<QByteArray>(&result);
        return bytes ? bytes->size() : -1;
    };
    QCOMPARE(std::get<QByteArray>(readSrfFile(m_folder.filePath(u"link"_s))), "Soup\r");
    QCOMPARE(size(u"empty"_s), 0);
    QCOMPARE(size(u"largest"_s), largestSrfFile);
}

// The kernel's own files say a size before they are read that turns out to be another.
void TestSrfFile::readsWhatIsMetInAChangingFile()
{
    const auto grown = platform::readRegularFile(u"/proc/self/status"_s, largestSrfFile);
    QVERIFY(std::get<QByteArray>(grown).startsWith("Name:"));
    const auto outgrown = platform::readRegularFile(u"/proc/self/status"_s, 20);
    QCOMPARE(std::get<platform::FileReadError>(outgrown).failure, ReadFailure::TooLarge);
    const auto shrunk =
        platform::readRegularFile(u"/sys/kernel/mm/transparent_hugepage/enabled"_s, largestSrfFile);
    const auto *bytes = std::get_if<QByteArray>(&shrunk);
    if (!bytes)
        QSKIP("this kernel shows no such file");
    QVERIFY(bytes->endsWith('\n'));
}

QTEST_GUILESS_MAIN(TestSrfFile)
#include "tst_srffile.moc"
