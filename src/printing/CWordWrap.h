#pragma once

#include <QDate>
#include <QString>

#include <functional>

class BusyCursor;
class Printer;

// Prints a text with its words wrapped between margins, on as many pages as it takes, each with a
// header and a footer of date and page number. A word that is wider than the line runs past the
// right margin. The printer and the pointer must outlive it.
class CWordWrap
{
public:
    CWordWrap(Printer &printer, BusyCursor &pointer,
              std::function<QDate()> today = &QDate::currentDate);

    bool PrintHeader() const { return m_printHeader; }
    void setPrintHeader(bool print) { m_printHeader = print; }

    bool PrintFooter() const { return m_printFooter; }
    void setPrintFooter(bool print) { m_printFooter = print; }

    // Where the text begins on the next page printed, in the printer's scale unit; 0 is at the top
    // margin.
    void setCurrentY(float y) { m_startPosition = y; }

    // Whether the text goes on behind a line feed, and the document is ended behind the text.
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

    // Returns the vertical position behind the text in inches, by the horizontal scale. Throws
    // PrintError, before anything is printed where the margins leave no room, and what the printer
    // throws.
    float PrintText(const QString &text);

private:
    enum class Page { Current, New };
    void BeginPage(Page page);

    void requireRoom() const;
    void printHeader();
    void printFooter();
    void printWord(QStringView word);
    bool printSeparator(QChar separator); // false where the text ends with it
    void moveToNextTabStop();
    void startLine();

    Printer &m_printer;
    BusyCursor &m_pointer;
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
