#pragma once

#include "platform/UserVisibleError.h"

#include <QStringView>

// Why nothing was printed, or why printing stopped.
class PrintError final : public platform::UserVisibleError
{
public:
    using UserVisibleError::UserVisibleError;
};

enum class ScaleUnit { Inches, Dots };

// What text is printed on. Positions and sizes are in the printer's scale unit. The origin is the
// top left corner of the printable area; text is printed to the right of the current position and
// below it. Every operation may throw PrintError.
class Printer
{
public:
    Printer() = default;
    virtual ~Printer() = default;

    virtual float currentX() const = 0;
    virtual float currentY() const = 0;
    virtual void setCurrentX(float x) = 0;
    virtual void setCurrentY(float y) = 0;

    virtual float pageWidth() const = 0; // of the printable area
    virtual float pageHeight() const = 0;
    virtual ScaleUnit scaleUnit() const = 0;
    virtual int page() const = 0; // counted from 1

    // In the current font.
    virtual float textWidth(QStringView text) const = 0;
    virtual float textHeight(QStringView text) const = 0;

    virtual float convertedX(float width, ScaleUnit from, ScaleUnit to) const = 0;
    virtual float convertedY(float height, ScaleUnit from, ScaleUnit to) const = 0;

    virtual void print(QStringView text) = 0; // moves the position to the end of the text
    virtual void endLine() = 0; // moves the position to the left edge, one line down
    virtual void newPage() = 0; // moves the position to the origin
    virtual void endDocument() = 0; // does not move it; what is printed next begins a new document

private:
    Q_DISABLE_COPY_MOVE(Printer)
};
