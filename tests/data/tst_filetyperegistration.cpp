#include "FileTypeRegistration.h"
#include "RegistryFunctions.h"
#include "TemporaryHome.h"

#include <QFileInfo>
#include <QTest>

using namespace platform;
using namespace Qt::Literals::StringLiterals;

class TestFileTypeRegistration : public QObject
{
    Q_OBJECT

    const TemporaryHome home;

private Q_SLOTS:
    void followsTheProgram();
};

// The running program is this test, and what an older place left behind gives way to it.
void TestFileTypeRegistration::followsTheProgram()
{
    const QString command = u"srffile\\Shell\\Import\\command"_s;
    CreateRegistryKey(HKEY_CLASSES_ROOT, command);
    WriteRegistryValue(HKEY_CLASSES_ROOT, command, {}, u"\"/old/Pantrywise\" %1"_s, REG_SZ);
    registerFileType();

    const QString program = QCoreApplication::applicationFilePath();
    QCOMPARE(ReadRegistryValue(HKEY_CLASSES_ROOT, u".srf"_s, {}), QVariant(u"srffile"_s));
    QCOMPARE(ReadRegistryValue(HKEY_CLASSES_ROOT, command, {}),
             QVariant(u'"' + program + "\" %1"_L1));
    QFile entry(home.data(u"applications/pantrywise.desktop"_s));
    QVERIFY(entry.open(QIODevice::ReadOnly));
    QVERIFY(entry.readAll().contains(QFileInfo(program).fileName().toUtf8()));
    QCOMPARE(QFileInfo(program).fileName(), u"tst_filetyperegistration"_s);

    QBENCHMARK
    { // a start that finds all in place
        registerFileType();
    }
}

QTEST_GUILESS_MAIN(TestFileTypeRegistration)
#include "tst_filetyperegistration.moc"
