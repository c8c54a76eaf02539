#pragma once

#include "printing/Printer.h"

#include <QFontMetricsF>
#include <QHash>
#include <QPainter>

class QPagedPaintDevice;

// Prints on paper or into a PDF file, in one font.
// Consecutive texts are collected in a run, which is drawn when the position is set or the line
// ends: only then can QPainter::drawText() order the words of right-to-left scripts.
class PagedPrinter final : public Printer
{
public:
    // The device must outlive the printer.
    PagedPrinter(QPagedPaintDevice &device, const QFont &font);
    ~PagedPrinter() override; // ends an open document

    float currentX() const override { return m_x; }
    float currentY() const override { return m_y; }
    void setCurrentX(float x) override;
    void setCurrentY(float y) override;

    float pageWidth() const override;
    float pageHeight() const override;
    ScaleUnit scaleUnit() const override { return ScaleUnit::Dots; }
    int page() const override { return m_page; }

    float textWidth(QStringView text) const override;
    float textHeight(QStringView text) const override;

    float convertedX(float width, ScaleUnit from, ScaleUnit to) const override;
    float convertedY(float height, ScaleUnit from, ScaleUnit to) const override;

    void print(QStringView text) override;
    void endLine() override;
    void newPage() override;
    void endDocument() override;

private:
    void begin(); // if the document is not open yet
    void drawRun();

    QPagedPaintDevice &m_device;
    QFont m_font;
    QFontMetricsF m_metrics;
    mutable QHash<QString, float> m_widths; // of recent words, in dots
    QPainter m_painter;

    float m_x = 0;
    float m_y = 0;
    int m_page = 1;
    QString m_run; // printed, but not drawn yet
    float m_runX = 0;
};
