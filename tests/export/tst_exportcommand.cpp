#include "DatabasePath.h"
#include "ExportCommand.h"
#include "ExportStand.h"
#include "StrictDoorway.h"

#include <QDesktopServices>
#include <QStandardPaths>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestExportCommand : public QObject
{
    Q_OBJECT

    QUrl m_opened;

public Q_SLOTS:
    void open(const QUrl &url) { m_opened = url; } // in the place of a browser

private Q_SLOTS:
    void asksWritesAndOpens();
};

void TestExportCommand::asksWritesAndOpens()
{
    ExportStand stand;
    DatabasePath = stand.file.path();
    setBytes(stand.page(u"photo.jpg"_s), "mine");
    QVERIFY(QDir().mkdir(stand.path(u"other"_s)));
    QDesktopServices::setUrlHandler(u"file"_s, this, "open");

    StrictDoorway doorway;
    const auto expectChoice = [&](const QString &from, const QString &answer) {
        doorway.expect(FolderChooser{u"Choose a folder for the web pages"_s, from}, answer);
    };
    expectChoice(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation),
                 stand.place.path());
    doorway.expect({stand.path(u"Pantrywise was not made by an export, so nothing was exported "
                               "there. Move it away, or choose another place."_s),
                    u"Export"_s, Icon::Exclamation});
    expectChoice(stand.place.path(), stand.path(u"other"_s));
    doorway.expect({u"0 recipes were written to %1."_s.arg(stand.path(u"other/Pantrywise"_s)),
                    u"Export"_s,
                    Icon::Information,
                    {Button::Open, Button::Close},
                    Button::Open},
                   Button::Open);
    exportWebPages(doorway, nullptr);
    QDesktopServices::unsetUrlHandler(u"file"_s);
    QCOMPARE(m_opened, QUrl::fromLocalFile(stand.path(u"other/Pantrywise/index.html"_s)));
}

QTEST_MAIN(TestExportCommand)
#include "tst_exportcommand.moc"
