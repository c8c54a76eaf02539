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

public Q_SLOTS: // called by name
    void open(const QUrl &url) { m_opened = url; }

private Q_SLOTS:
    void asksWritesAndOpens();
};

void TestExportCommand::asksWritesAndOpens()
{
    ExportStand stand;
    stand.file.write(u"INSERT INTO Recipes (RecipeName) VALUES ('Soup')"_s);
    DatabasePath = stand.file.path();
    setBytes(stand.page(u"photo.jpg"_s), "mine");
    const QString other = stand.place.filePath(u"other"_s);
    QVERIFY(QDir().mkdir(other));
    QDesktopServices::setUrlHandler(u"file"_s, this, "open");

    StrictDoorway doorway;
    const auto expectChoice = [&](const QString &from, const QString &answer) {
        doorway.expect(FolderChooser{u"Choose a folder for the web pages"_s, from}, answer);
    };
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    const QString folder = stand.page({}).chopped(1);
    expectChoice(documents, stand.place.path());
    doorway.expect({folder
                        + u" was not made by an export, so nothing was exported there. Move it "
                          "away, or choose another place."_s,
                    u"Export"_s, Icon::Exclamation});
    expectChoice(stand.place.path(), other);
    doorway.expect({u"1 recipe was written to %1/Pantrywise."_s.arg(other),
                    u"Export"_s,
                    Icon::Information,
                    {Button::Open, Button::Close},
                    Button::Open},
                   Button::Open);
    exportWebPages(doorway, nullptr);
    QCOMPARE(m_opened, QUrl::fromLocalFile(other + "/Pantrywise/index.html"_L1));

    expectChoice(documents, {});
    exportWebPages(doorway, nullptr);
}

QTEST_MAIN(TestExportCommand)
#include "tst_exportcommand.moc"
