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

class TestSrfFile : public QObject
{
    Q_OBJECT

    QTemporaryDir m_folder;

private Q_SLOTS:
    void initTestCase()
    {
        for (const auto &[name, size] : {std::pair(u"largest"_s, largestSrfFile),
                                         {u"too large"_s, largestSrfFile + 1},
                                         {u"no right"_s, 0}}) {
            QFile file(m_folder.filePath(name));
            QVERIFY(file.open(QIODevice::WriteOnly) && file.resize(size)); // sparse
        }
        const QByteArray folder = QFile::encodeName(m_folder.path());
        QCOMPARE(::chmod((folder + "/no right").constData(), 0), 0);
        QCOMPARE(::mkfifo((folder + "/pipe").constData(), 0600), 0);
        for (const auto &[target, name] : {std::pair(u"largest"_s, u"link"_s),
                                           {u"nowhere"_s, u"broken"_s},
                                           {u"loop"_s, u"loop"_s}})
            QVERIFY(QFile::link(target, m_folder.filePath(name)));
    }

    void refuses()
    {
        const std::tuple<QString, ReadFailure, QString> table[] = {
            {u"broken"_s, ReadFailure::NotFound, u"There is no file"_s},
            {u"largest/below"_s, ReadFailure::NotFound, {}},
            {u"largest\0.srf"_s, ReadFailure::NotFound, {}},
            {u"loop"_s, ReadFailure::Failed, u"levels of symbolic links"_s},
            {u"."_s, ReadFailure::Folder, u"is a folder. Choose the recipe files in it"_s},
            {u"pipe"_s, ReadFailure::NotRegular, u"Save the recipe as an ordinary file"_s},
            {u"too large"_s, ReadFailure::TooLarge, u"is larger than 8 MiB"_s},
            {u"no right"_s, ReadFailure::AccessDenied, u"Give yourself that right"_s},
            {u"/dev/zero"_s, ReadFailure::NotRegular, {}},
            {u"/proc/self/mem"_s, ReadFailure::Failed, u"could not be read: Input/output error."_s},
        };
        for (const auto &[name, failure, advice] : table) {
            if (failure == ReadFailure::AccessDenied && ::geteuid() == 0)
                continue; // who may read everything
            const QString path = name.startsWith(u'/') ? name : m_folder.filePath(name);
            const auto result = readSrfFile(platform::nativePath(path));
            const auto *error = std::get_if<SrfFileError>(&result);
            QVERIFY2(error && error->failure == failure
                         && error->message.contains(escapeControlCharacters(path))
                         && error->message.contains(advice),
                     qPrintable(path));
        }
        const auto whole = readSrfFile(platform::nativePath(m_folder.filePath(u"link"_s)));
        QCOMPARE(std::get<QByteArray>(whole).size(), largestSrfFile);
    }

    // The kernel's own files say a size before they are read that turns out to be another.
    void readsWhatIsMetInAChangingFile()
    {
        const auto grown = platform::readRegularFile("/proc/self/status", largestSrfFile);
        QVERIFY(std::get<QByteArray>(grown).startsWith("Name:"));
        const auto outgrown = platform::readRegularFile("/proc/self/status", 20);
        QCOMPARE(std::get<platform::FileReadError>(outgrown).failure, ReadFailure::TooLarge);
    }
};

QTEST_GUILESS_MAIN(TestSrfFile)
#include "tst_srffile.moc"
