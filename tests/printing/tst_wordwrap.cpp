#include "printing/BusyCursor.h"
#include "printing/CWordWrap.h"
#include "printing/PagedPrinter.h"
#include "support/Rows.h"

#include <QPdfWriter>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace {

// Records what is printed: "|x,y text" for consecutive texts, "|new 2" and "|end". A QChar is 10
// dots wide, an i 5, and 20 high; 12 by 4 of them fit between the default margins, from 10,20 on.
class RecordingPrinter final : public Printer, public BusyCursor
{
public:
    QString record;
    mutable int measured = 0; // number of calls of textWidth()
    QString failing; // print() throws at this text
    int busy = 0; // number of show() without hide()

    float currentX() const override { return m_x; }
    float currentY() const override { return m_y; }
    void setCurrentX(float x) override { m_x = x; }
    void setCurrentY(float y) override { m_y = y; }
    float pageWidth() const override { return 140; }
    float pageHeight() const override { return 100; }
    ScaleUnit scaleUnit() const override { return ScaleUnit::Dots; }
    int page() const override { return m_page; }
    float textWidth(QStringView text) const override
    {
        ++measured;
        return widthOf(text);
    }
    float textHeight(QStringView /*text*/) const override { return 20; }
    float convertedX(float width, ScaleUnit /*from*/, ScaleUnit to) const override
    {
        return to == ScaleUnit::Dots ? width * 20 : width / 20;
    }
    float convertedY(float height, ScaleUnit /*from*/, ScaleUnit to) const override
    {
        return to == ScaleUnit::Dots ? height * 40 : height / 40;
    }
    void print(QStringView text) override
    {
        if (text.isEmpty())
            return;
        if (text == failing || busy != 1)
            throw PrintError(u"out of paper"_s);
        if (QPointF(m_x, m_y) != m_printed)
            record += u"|%1,%2 "_s.arg(m_x).arg(m_y);
        record += text;
        m_x += widthOf(text);
        m_printed = {m_x, m_y};
    }
    void endLine() override { m_y += 20; }
    void newPage() override { record += u"|new %1"_s.arg(++m_page); }
    void endDocument() override { record += u"|end"_s; }

    void show() override { ++busy; }
    void hide() noexcept override { --busy; }

private:
    static float widthOf(QStringView text)
    {
        return static_cast<float>(10 * text.size() - 5 * text.count(u'i'));
    }

    float m_x = 0;
    float m_y = 0;
    int m_page = 1;
    QPointF m_printed; // end of the last text
};

} // namespace

class tst_WordWrap : public QObject
{
    Q_OBJECT

public:
    static void initMain() { qputenv("LC_ALL", "C.UTF-8"); } // its date format

private Q_SLOTS:
    void texts_data()
    {
        addRows<QString, QString>({
            {"empty", u""_s, u"|end"_s},
            {"one word", u"leek"_s, u"|10,20 leek|end"_s},
            {"as wide as the line", u"123456 78901"_s, u"|10,20 123456 78901|end"_s},
            {"wider than the line", u"123456 789012"_s, u"|10,20 123456 |10,40 789012|end"_s},
            {"a word wider than the line", u"ab 1234567890123 cd"_s,
             u"|10,20 ab |10,40 1234567890123 |10,60 cd|end"_s},
            {"a wide word first, after an empty line", u"1234567890123"_s,
             u"|10,40 1234567890123|end"_s},
            {"line feeds", u"a\r\nb\n\nc"_s, u"|10,20 a|10,40 b|10,80 c|end"_s},
            {"spaces", u" a   b "_s, u"|10,20  a   b |end"_s},
            {"spaces past the margin", u"12345678901  a"_s, u"|10,20 12345678901  |10,40 a|end"_s},
            {"tab first", u"\ta"_s, u"|110,20 a|end"_s},
            {"tab before the stop", u"123456789\ta"_s, u"|10,20 123456789|110,20 a|end"_s},
            {"tab half a digit before the stop", u"123456789i\ta"_s,
             u"|10,20 123456789i|10,40 a|end"_s},
            {"tab at the stop", u"1234567890\ta"_s, u"|10,20 1234567890|10,40 a|end"_s},
            {"control characters", u"a\x01\u0000b\u00A0c"_s + QChar(0) + u"d"_s,
             u"|10,20 ab\u00A0cd|end"_s},
            {"no Latin letters", u"\u6C64\U0001F345 x"_s, u"|10,20 \u6C64\U0001F345 x|end"_s},
            {"a second page", u"1\n2\n3\n4\n5"_s,
             u"|10,20 1|10,40 2|10,60 3|10,80 4|new 2|10,20 5|end"_s},
            {"a second page within a line", u"1\n2\n3\n4 5678901 2345"_s,
             u"|10,20 1|10,40 2|10,60 3|10,80 4 5678901 |new 2|10,20 2345|end"_s},
        });
    }

    void texts()
    {
        const auto [text, record] = fetchRow<QString, QString>();
        RecordingPrinter printer;
        CWordWrap wrap(printer, printer);
        wrap.setPrintHeader(false);
        wrap.setPrintFooter(false);
        wrap.PrintText(text);
        QCOMPARE(printer.record, record);
    }

    void pages()
    {
        RecordingPrinter printer;
        CWordWrap wrap(printer, printer, [] { return QDate(2026, 3, 9); });
        wrap.setHeaderText(u"Soup"_s);
        wrap.setCurrentY(80);
        QCOMPARE(wrap.PrintText(u"a\nb"_s), 1.F); // 20 dots
        QCOMPARE(printer.record,
                 u"|50,0 Soup|10,90 9 Mar 2026|70,90 Page 1|10,80 a|new 2"
                 "|50,0 Soup|10,90 9 Mar 2026|70,90 Page 2|10,20 b|end"_s);
        printer.record.clear();
        wrap.setPrintHeader(false);
        wrap.setPageFeed(false);
        wrap.setCurrentY(40);
        QCOMPARE(wrap.PrintText(u"a\nb"_s), 3.F);
        wrap.PrintText(u"c"_s);
        QCOMPARE(printer.record,
                 u"|10,90 9 Mar 2026|70,90 Page 2|10,40 a"
                 "|10,90 9 Mar 2026|70,90 Page 2|10,20 c"_s);
    }

    void margins()
    {
        RecordingPrinter printer;
        CWordWrap wrap(printer, printer);
        wrap.setPrintFooter(false);
        QCOMPARE(wrap.MarginLeft(), 0.5F);
        QCOMPARE(wrap.MarginBottom(), 0.5F); // set to an inch by the horizontal scale
        wrap.setMarginTop(1);
        wrap.setMarginLeft(3);
        wrap.setMarginRight(3.5F);
        wrap.setMarginBottom(1.25F);
        QCOMPARE(wrap.MarginTop() + wrap.MarginRight() + wrap.MarginBottom(), 5.75F);
        wrap.PrintText(u"a"_s);
        QCOMPARE(printer.record, u"|60,40 a|end"_s);
    }

    void marginsWithoutRoom_data()
    {
        addRows<float, float>({{"as wide as the page", 6.5F, 1.F},
                               {"as high as the page", 1.F, 2.F},
                               {"not a number", std::nanf(""), 1.F}});
    }

    void marginsWithoutRoom()
    {
        const auto [left, top] = fetchRow<float, float>();
        RecordingPrinter printer;
        CWordWrap wrap(printer, printer);
        wrap.setMarginLeft(left);
        wrap.setMarginTop(top);
        QVERIFY_THROWS_EXCEPTION(PrintError, wrap.PrintText(u"a"_s));
        QCOMPARE(printer.record, QString());
    }

    void words()
    {
        RecordingPrinter printer;
        CWordWrap wrap(printer, printer);
        wrap.setPrintHeader(false);
        wrap.setPrintFooter(false);
        wrap.PrintText(u"tomato tomatoes tomatillo"_s);
        QCOMPARE(printer.measured, 3); // once for each word, though two are wrapped
        QCOMPARE(printer.busy, 0);
        printer.failing = u"tomatoes"_s;
        QVERIFY_THROWS_EXCEPTION(PrintError, wrap.PrintText(u"tomato tomatoes"_s));
        QCOMPARE(printer.busy, 0);
    }

    void printsOnPaper()
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

QTEST_MAIN(tst_WordWrap)
#include "tst_wordwrap.moc"
