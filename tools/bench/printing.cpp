#include "Bench.h"
#include "GeneratedRecipe.h"
#include "printing/BusyCursor.h"
#include "printing/CWordWrap.h"
#include "printing/PagedPrinter.h"

#include <QPdfWriter>
#include <QTextLayout>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int pageCount = 1000;

const QFont &font()
{
    static const QFont font(u"DejaVu Sans"_s, 10);
    return font;
}

// The page as CWordWrap lays it out, in dots.
struct Page {
    explicit Page(QPdfWriter &writer)
        : metrics(font(), &writer)
        , margin(writer.logicalDpiX() / 2.0)
        , width(writer.width())
        , height(writer.height())
    {
    }

    QFontMetricsF metrics;
    double margin; // half an inch at the sides; the top and bottom margins are twice as large
    double width;
    double height;
};

void appendLines(QStringList &lines, const QString &paragraph, QPdfWriter &writer, double width)
{
    QTextLayout layout(paragraph, font(), &writer);
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        lines += paragraph.mid(line.textStart(), line.textLength());
    }
    layout.endLayout();
}

struct Book {
    QString text;
    QStringList lines; // the text after wrapping
};

// Collects the instructions of recipes until they fill pageCount pages.
Book book(QPdfWriter &writer)
{
    const Page page(writer);
    const int linesOfPage =
        1 + static_cast<int>((page.height - 4 * page.margin) / page.metrics.lineSpacing());
    Book book;
    for (int number = 0; book.lines.size() < qsizetype{pageCount} * linesOfPage; ++number) {
        const GeneratedRecipe recipe = generatedRecipe(number, catalogSizes(1000));
        QString text = QString::fromStdString(recipe.instructions);
        for (const QString &paragraph : text.remove(u'\r').split(u'\n'))
            appendLines(book.lines, paragraph, writer, page.width - 2 * page.margin);
        book.text += text + u'\n';
    }
    return book;
}

void drawLines(const QStringList &lines, QPdfWriter &writer)
{
    const Page page(writer);
    QPainter painter(&writer);
    painter.setFont(font());
    const double footer = page.height - page.margin + page.metrics.ascent();
    int number = 0;
    double y = page.height;
    for (const QString &line : lines) {
        if (y > page.height - 2 * page.margin) {
            if (number++ > 0)
                writer.newPage();
            painter.drawText(QPointF(page.width / 2, page.margin), u"Cookbook"_s);
            painter.drawText(QPointF(page.margin, footer), u"24 Nov 2026"_s);
            painter.drawText(QPointF(page.width - 4 * page.margin, footer),
                             u"Page %1"_s.arg(number));
            y = 2 * page.margin;
        }
        painter.drawText(QPointF(page.margin, y + page.metrics.ascent()), line);
        y += page.metrics.lineSpacing();
    }
}

void printText(const QString &text, QPdfWriter &writer)
{
    PagedPrinter printer(writer, font());
    WaitCursor cursor;
    CWordWrap wrap(printer, cursor);
    wrap.setHeaderText(u"Cookbook"_s);
    wrap.PrintText(text);
}

} // namespace

void measurePrinting(Bench &bench)
{
    QPdfWriter plain(bench.path(u"plain.pdf"_s));
    QPdfWriter wrapped(bench.path(u"wrapped.pdf"_s));
    const Book cookbook = book(plain);
    bench.report({"print " + formatNumber(pageCount)
                      + " pages to PDF (baseline: draw the same lines, already wrapped)",
                  0,
                  Unit::Seconds,
                  compare([&] { return secondsOf([&] { drawLines(cookbook.lines, plain); }); },
                          [&] { return secondsOf([&] { printText(cookbook.text, wrapped); }); }),
                  {Limit::Kind::Ratio, 2}});
}
