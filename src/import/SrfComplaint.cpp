#include "SrfComplaint.h"

#include "VisibleText.h"

#include <QCoreApplication>

namespace {

// As much of a line as a message box shows well.
constexpr qsizetype longestFound = 80;

struct Text {
    Q_DECLARE_TR_FUNCTIONS(SrfComplaint)
};

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
    const QString visible = visibleText(start);
    return start.size() < complaint.found.size() ? Text::tr("\"%1...\"").arg(visible)
                                                 : Text::tr("\"%1\"").arg(visible);
}

} // namespace

QString complaintText(const SrfComplaint &complaint, const QString &path)
{
    const QString file = visibleText(path);
    if (complaint.kind == SrfComplaint::Kind::LineFeeds)
        return Text::tr("%1 was not imported.\n\n"
                        "Its lines end in a line feed alone. The lines of a recipe file end in a "
                        "carriage return and a line feed. Save it with Windows line ends (CR LF) "
                        "and import it again.")
            .arg(file);
    return Text::tr("%1 was not imported.\n\nLine %2: expected %3, found %4.")
        .arg(file, QString::number(complaint.line), complaint.expected, foundText(complaint));
}
