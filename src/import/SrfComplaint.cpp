#include "SrfComplaint.h"

#include <QCoreApplication>
#include <QDir>

namespace {

// As much of a line as a message box shows well.
constexpr qsizetype longestFound = 80;

struct Text {
    Q_DECLARE_TR_FUNCTIONS(SrfComplaint)
};

// Characters that would show as nothing, break the line or turn its direction.
bool isInvisible(char32_t c)
{
    switch (QChar::category(c)) {
    case QChar::Other_Control:
    case QChar::Other_Format:
    case QChar::Other_Surrogate:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return true;
    default:
        return false;
    }
}

QString madeVisible(const QString &text)
{
    constexpr char16_t controlPictures = 0x2400;
    QString visible;
    for (const char32_t c : text.toUcs4()) {
        if (c < 0x20)
            visible += QChar(static_cast<char16_t>(controlPictures + c));
        else if (isInvisible(c))
            visible += QString::asprintf("<U+%04X>", uint(c));
        else
            visible += QChar::fromUcs4(c);
    }
    return visible;
}

QString shortened(const QString &text)
{
    if (text.size() <= longestFound)
        return text;
    const bool insidePair = text.at(longestFound - 1).isHighSurrogate();
    return text.left(insidePair ? longestFound - 1 : longestFound);
}

QString foundText(const SrfComplaint &complaint)
{
    if (complaint.kind == SrfComplaint::Kind::EndOfFile)
        return Text::tr("the end of the file");
    if (complaint.found.isEmpty())
        return Text::tr("nothing");
    const QString start = shortened(complaint.found);
    const QString visible = madeVisible(start);
    return start.size() < complaint.found.size() ? Text::tr("\"%1...\"").arg(visible)
                                                 : Text::tr("\"%1\"").arg(visible);
}

} // namespace

QString complaintText(const SrfComplaint &complaint, const QString &path)
{
    const QString file = QDir::toNativeSeparators(path);
    if (complaint.kind == SrfComplaint::Kind::LineFeeds)
        return Text::tr("%1 was not imported.\n\n"
                        "Its lines end in a line feed alone. The lines of a recipe file end in a "
                        "carriage return and a line feed. Save it with Windows line ends (CR LF) "
                        "and import it again.")
            .arg(file);
    return Text::tr("%1 was not imported.\n\nLine %2: expected %3, found %4.")
        .arg(file, QString::number(complaint.line), complaint.expected, foundText(complaint));
}
