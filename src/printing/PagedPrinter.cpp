#include "printing/PagedPrinter.h"

#include <QCoreApplication>
#include <QPagedPaintDevice>

namespace {

float converted(float length, ScaleUnit from, ScaleUnit to, int dotsPerInch)
{
    if (from == to)
        return length;
    const auto dots = static_cast<float>(dotsPerInch);
    return to == ScaleUnit::Dots ? length * dots : length / dots;
}

struct Text {
    Q_DECLARE_TR_FUNCTIONS(PagedPrinter)
};

[[noreturn]] void fail()
{
    throw PrintError(Text::tr("The printer or the file cannot be written to. Check it and print "
                              "again."));
}

} // namespace

PagedPrinter::PagedPrinter(QPagedPaintDevice &device, const QFont &font)
    : m_device(device)
    , m_font(font, &device)
    , m_metrics(m_font, &device)
{
}

PagedPrinter::~PagedPrinter()
{
    drawRun();
}

void PagedPrinter::setCurrentX(float x)
{
    drawRun();
    m_x = x;
}

void PagedPrinter::setCurrentY(float y)
{
    drawRun();
    m_y = y;
}

float PagedPrinter::pageWidth() const
{
    return static_cast<float>(m_device.width());
}

float PagedPrinter::pageHeight() const
{
    return static_cast<float>(m_device.height());
}

// CWordWrap asks for the width of each word before it prints it, and words recur: looking a width
// up costs far less than measuring it.
float PagedPrinter::textWidth(QStringView text) const
{
    constexpr qsizetype mostWords = 4096;
    if (const auto known = m_widths.constFind(QString::fromRawData(text.data(), text.size()));
        known != m_widths.cend())
        return *known;
    if (m_widths.size() == mostWords)
        m_widths.clear();
    const QString word = text.toString();
    return *m_widths.insert(word, static_cast<float>(m_metrics.horizontalAdvance(word)));
}

float PagedPrinter::textHeight(QStringView /*text*/) const
{
    return static_cast<float>(m_metrics.height());
}

float PagedPrinter::convertedX(float width, ScaleUnit from, ScaleUnit to) const
{
    return converted(width, from, to, m_device.logicalDpiX());
}

float PagedPrinter::convertedY(float height, ScaleUnit from, ScaleUnit to) const
{
    return converted(height, from, to, m_device.logicalDpiY());
}

void PagedPrinter::print(QStringView text)
{
    begin();
    if (m_run.isEmpty())
        m_runX = m_x;
    m_run += text;
    m_x += textWidth(text);
}

void PagedPrinter::endLine()
{
    drawRun();
    m_x = 0;
    m_y += static_cast<float>(m_metrics.lineSpacing());
}

void PagedPrinter::newPage()
{
    begin();
    drawRun();
    if (!m_device.newPage())
        fail();
    ++m_page;
    m_x = m_y = 0;
}

void PagedPrinter::endDocument()
{
    drawRun();
    if (m_painter.isActive() && !m_painter.end())
        fail();
    m_page = 1;
}

void PagedPrinter::begin()
{
    if (m_painter.isActive())
        return;
    if (!m_painter.begin(&m_device))
        fail();
    m_painter.setFont(m_font);
    m_painter.setLayoutDirection(Qt::LayoutDirectionAuto);
}

void PagedPrinter::drawRun()
{
    if (m_run.isEmpty())
        return;
    m_painter.drawText(QPointF(m_runX, m_y + m_metrics.ascent()), m_run);
    m_run.clear();
}
