#include "import/srf/SrfError.h"

#include "interaction/ControlCharacters.h"

#include <QCoreApplication>

namespace {

// As much of a line as a message box shows well.
constexpr qsizetype longestFound = 80;

struct Text {
    Q_DECLARE_TR_FUNCTIONS(SrfError)
};

QString shortened(const QString &text)
{
    if (text.size() <= longestFound)
        return text;
    const bool insidePair = text.at(longestFound - 1).isHighSurrogate();
    return text.left(insidePair ? longestFound - 1 : longestFound);
}

QString foundText(const SrfError &error)
{
    if (error.kind == SrfError::Kind::EndOfFile)
        return Text::tr("the end of the file");
    if (error.found.isEmpty())
        return Text::tr("nothing");
    const QString start = shortened(error.found);
    const QString visible = escapeControlCharacters(start);
    return start.size() < error.found.size() ? Text::tr("\"%1...\"").arg(visible)
                                             : Text::tr("\"%1\"").arg(visible);
}

} // namespace

QString srfErrorText(const SrfError &error, const QString &path)
{
    const QString file = escapeControlCharacters(path);
    if (error.kind == SrfError::Kind::LineFeeds)
        return Text::tr("%1 was not imported.\n\n"
                        "Its lines end in a line feed alone. The lines of a recipe file end in a "
                        "carriage return and a line feed. Save it with Windows line ends (CR LF) "
                        "and import it again.")
            .arg(file);
    return Text::tr("%1 was not imported.\n\nLine %2: expected %3, found %4.")
        .arg(file, QString::number(error.line), error.expected, foundText(error));
}
