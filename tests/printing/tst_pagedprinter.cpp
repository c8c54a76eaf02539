#include "printing/BusyCursor.h"
#include "printing/CWordWrap.h"
#include "printing/PagedPrinter.h"

#include <QPdfWriter>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class tst_PagedPrinter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pdf()
    {
        const QTemporaryDir folder;
        QString text =
            u"Cr\u00E8me\tbr\u00FBl\u00E9e\r\n\u05DE\u05E8\u05E7 \u05E2\u05D2\u05D1\r\n"_s;
        for (int i = 1; i <= 700; ++i)
            text += QString::number(i) + u" eggs "_s;
        const auto print = [&](const QString &name) {
            QPdfWriter writer(folder.filePath(name));
            PagedPrinter printer(writer, QFont(u"DejaVu Sans"_s, 12));
            WaitCursor cursor;
            CWordWrap wrap(printer, cursor);
            wrap.setHeaderText(u"Tomato Soup"_s);
            wrap.PrintText(text);
        };
        QVERIFY_THROWS_EXCEPTION(PrintError, print(u"no/such/folder.pdf"_s));
        print(u"soup.pdf"_s);

        QProcess reader;
        reader.start(u"pdftotext"_s, {folder.filePath(u"soup.pdf"_s), u"-"_s});
        QVERIFY(reader.waitForFinished());
        const QString read = QString::fromUtf8(reader.readAllStandardOutput());
        const QStringList lines = read.split(QRegularExpression(u"[\n\f]+"_s));
        QCOMPARE(lines.count(u"Tomato Soup"_s), 2);
        for (const QString &line :
             {u"Page 1"_s, u"Page 2"_s, u"Cr\u00E8me"_s, u"br\u00FBl\u00E9e"_s})
            QCOMPARE(lines.count(line), 1);
        QCOMPARE(lines.filter(u"eggs"_s).join(u' ') + u' ', text.section(u'\n', 2));
        QVERIFY(QString(read).remove(u' ').contains(u"\u05DE\u05E8\u05E7\u05E2\u05D2\u05D1"_s));
    }
};

QTEST_MAIN(tst_PagedPrinter)
#include "tst_pagedprinter.moc"
