#include "printing/CWordWrap.h"

#include "printing/BusyCursor.h"
#include "printing/Printer.h"

#include <QLocale>
#include <QScopeGuard>

#include <algorithm>
#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace {

bool isSeparator(QChar character)
{
    return character <= u' ';
}

} // namespace

CWordWrap::CWordWrap(Printer &printer, BusyCursor &cursor, std::function<QDate()> today)
    : m_printer(printer)
    , m_cursor(cursor)
    , m_today(std::move(today))
{
    const auto inches = [&](float value) {
        return m_printer.convertedX(value, ScaleUnit::Inches, m_printer.scaleUnit());
    };
    m_marginLeft = m_marginRight = inches(0.5F);
    m_marginTop = m_marginBottom = inches(1);
}

float CWordWrap::MarginLeft() const
{
    return m_printer.convertedX(m_marginLeft, m_printer.scaleUnit(), ScaleUnit::Inches);
}

void CWordWrap::setMarginLeft(float inches)
{
    m_marginLeft = m_printer.convertedX(inches, ScaleUnit::Inches, m_printer.scaleUnit());
}

float CWordWrap::MarginTop() const
{
    return m_printer.convertedY(m_marginTop, m_printer.scaleUnit(), ScaleUnit::Inches);
}

void CWordWrap::setMarginTop(float inches)
{
    m_marginTop = m_printer.convertedY(inches, ScaleUnit::Inches, m_printer.scaleUnit());
}

float CWordWrap::MarginRight() const
{
    return m_printer.convertedX(m_marginRight, m_printer.scaleUnit(), ScaleUnit::Inches);
}

void CWordWrap::setMarginRight(float inches)
{
    m_marginRight = m_printer.convertedX(inches, ScaleUnit::Inches, m_printer.scaleUnit());
}

float CWordWrap::MarginBottom() const
{
    return m_printer.convertedY(m_marginBottom, m_printer.scaleUnit(), ScaleUnit::Inches);
}

void CWordWrap::setMarginBottom(float inches)
{
    m_marginBottom = m_printer.convertedY(inches, ScaleUnit::Inches, m_printer.scaleUnit());
}

float CWordWrap::PrintText(const QString &text)
{
    requireRoom();
    m_cursor.show();
    const auto restoreCursor = qScopeGuard([this] { m_cursor.hide(); });
    BeginPage(Page::Current);
    for (auto at = text.cbegin(), end = text.cend(); at != end;) {
        const auto word = at;
        at = std::find_if(word, end, isSeparator);
        printWord({word, at});
        while (at != end && isSeparator(*at)) {
            if (!printSeparator(*at++))
                at = end;
        }
    }
    if (m_pageFeed)
        m_printer.endDocument();
    m_startPosition = 0;
    return m_printer.convertedX(m_printer.currentY(), m_printer.scaleUnit(), ScaleUnit::Inches);
}

void CWordWrap::BeginPage(Page page)
{
    if (page == Page::New) {
        m_printer.newPage();
        m_startPosition = 0;
    }
    if (m_printHeader)
        printHeader();
    if (m_printFooter)
        printFooter();
    m_printer.setCurrentX(m_marginLeft);
    m_printer.setCurrentY(m_startPosition != 0 ? m_startPosition : m_marginTop);
}

// The condition is positive so that a margin that is NaN fails it too.
void CWordWrap::requireRoom() const
{
    const bool isRoom = m_marginLeft + m_marginRight < m_printer.pageWidth()
        && m_marginTop + m_marginBottom < m_printer.pageHeight();
    if (!isRoom)
        throw PrintError(
            tr("The margins leave no room for text on the page. Nothing was printed."));
}

// Centered on the page, not between the margins.
void CWordWrap::printHeader()
{
    m_printer.setCurrentY((m_marginTop - m_printer.textHeight(m_headerText)) / 2);
    m_printer.setCurrentX((m_printer.pageWidth() - m_printer.textWidth(m_headerText)) / 2);
    m_printer.print(m_headerText);
}

void CWordWrap::printFooter()
{
    const float y = m_printer.pageHeight() - m_marginBottom / 2;
    m_printer.setCurrentX(m_marginLeft);
    m_printer.setCurrentY(y);
    m_printer.print(QLocale::system().toString(m_today(), QLocale::ShortFormat));

    const QString pageText = tr("Page %1").arg(m_printer.page());
    m_printer.setCurrentX(m_printer.pageWidth() - (m_printer.textWidth(pageText) + m_marginRight));
    m_printer.setCurrentY(y);
    m_printer.print(pageText);
}

void CWordWrap::printWord(QStringView word)
{
    const float right = m_printer.pageWidth() - m_marginRight;
    if (m_printer.currentX() + m_printer.textWidth(word) > right)
        startLine();
    m_printer.print(word);
}

bool CWordWrap::printSeparator(QChar separator)
{
    switch (separator.unicode()) {
    case u' ':
        m_printer.print(u" ");
        break;
    case u'\t':
        moveToNextTabStop();
        break;
    case u'\n':
        if (!m_pageFeed) {
            m_printer.endLine();
            return false;
        }
        startLine();
        break;
    default:
        break;
    }
    return true;
}

// Tab stops are ten digits apart. std::nearbyint() rounds halves to even.
void CWordWrap::moveToNextTabStop()
{
    const float digit = m_printer.textWidth(u"0");
    const float column = std::nearbyint((m_printer.currentX() - m_marginLeft) / digit);
    const float next = column + 10 - std::fmod(column, 10.F);
    m_printer.setCurrentX(digit * next + m_marginLeft);
}

void CWordWrap::startLine()
{
    m_printer.endLine();
    if (m_printer.currentY() > m_printer.pageHeight() - m_marginBottom)
        BeginPage(Page::New);
    else
        m_printer.setCurrentX(m_marginLeft);
}
