#pragma once

#include <QCoreApplication>
#include <QDate>
#include <QString>

#include <functional>

class BusyCursor;
class Printer;

// Prints text wrapped at words between margins, on as many pages as it needs, each with a header
// and a footer that holds the date and the page number. A word wider than the line runs past the
// right margin.
class CWordWrap
{
    Q_DECLARE_TR_FUNCTIONS(CWordWrap)

public:
    // The printer and the cursor, which is shown while printing, must outlive this object.
    CWordWrap(Printer &printer, BusyCursor &cursor,
              std::function<QDate()> today = &QDate::currentDate);

    bool PrintHeader() const { return m_printHeader; }
    void setPrintHeader(bool print) { m_printHeader = print; }

    bool PrintFooter() const { return m_printFooter; }
    void setPrintFooter(bool print) { m_printFooter = print; }

    // The vertical position at which the next text begins, in the printer's scale unit; 0 means at
    // the top margin.
    void setCurrentY(float y) { m_startPosition = y; }

    // Whether the text continues after a line feed and the document ends after the text.
    bool PageFeed() const { return m_pageFeed; }
    void setPageFeed(bool feed) { m_pageFeed = feed; }

    QString HeaderText() const { return m_headerText; }
    void setHeaderText(const QString &text) { m_headerText = text; }

    // In inches.
    float MarginLeft() const;
    void setMarginLeft(float inches);
    float MarginTop() const;
    void setMarginTop(float inches);
    float MarginRight() const;
    void setMarginRight(float inches);
    float MarginBottom() const;
    void setMarginBottom(float inches);

    // Returns the vertical position after the text in inches, converted by the horizontal scale.
    // Throws PrintError if the margins leave no room, before anything is printed, and whatever the
    // printer throws.
    float PrintText(const QString &text);

private:
    enum class Page { Current, New };
    void BeginPage(Page page);

    void requireRoom() const;
    void printHeader();
    void printFooter();
    void printWord(QStringView word);
    bool printSeparator(QChar separator); // returns whether the text continues after it
    void moveToNextTabStop();
    void startLine();

    Printer &m_printer;
    BusyCursor &m_cursor;
    std::function<QDate()> m_today;

    bool m_printHeader = true;
    bool m_printFooter = true;
    bool m_pageFeed = true;
    QString m_headerText;

    // In the printer's scale unit.
    float m_marginLeft;
    float m_marginTop;
    float m_marginRight;
    float m_marginBottom;
    float m_startPosition = 0;
};
