#include "import/srf/SrfFile.h"

#include "interaction/ControlCharacters.h"
#include "platform/Paths.h"
#include "platform/UserVisibleError.h"

#include <QCoreApplication>
#include <QStringDecoder>

#include <iterator>

namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(SrfFile)
};

QString messageFor(const platform::FileReadError &error, const std::filesystem::path &path)
{
    const QString file = escapeControlCharacters(platform::displayPath(path));
    switch (error.failure) {
    case platform::ReadFailure::NotFound:
        return Text::tr("There is no file %1.").arg(file);
    case platform::ReadFailure::Folder:
        return Text::tr("%1 is a folder. Choose the recipe files in it instead.").arg(file);
    case platform::ReadFailure::NotRegular:
        return Text::tr("%1 is a pipe, a socket or a device. Save the recipe as an ordinary file "
                        "and import that.")
            .arg(file);
    case platform::ReadFailure::TooLarge:
        return Text::tr("%1 is larger than %2 MiB, too large for a recipe. Check that it is the "
                        "right file.")
            .arg(file, QString::number(largestSrfFile >> 20));
    case platform::ReadFailure::AccessDenied:
        return Text::tr("You are not allowed to read %1. Change its permissions and import it "
                        "again.")
            .arg(file);
    case platform::ReadFailure::Failed:
        break;
    }
    return Text::tr("%1 could not be read: %2. Check the disk it is on, or import a copy of it.")
        .arg(file, error.reason);
}

// Returns the number of bytes up to the end of the last tag, or of all if a tag is missing. The
// tags and carriage returns are the same bytes in both encodings.
qsizetype sizeUpToLastTag(QByteArrayView bytes)
{
    constexpr int headingLines = 6;
    static constexpr QByteArrayView tags[] = {"<Instructions>", "</Instructions>", "<Ingredients>",
                                              "</Ingredients>", "<Utensils>",      "</Utensils>"};
    const auto *tag = std::begin(tags);
    qsizetype start = 0;
    for (int line = 1; start < bytes.size(); ++line) {
        const qsizetype found = bytes.indexOf('\r', start);
        const qsizetype end = found < 0 ? bytes.size() : found;
        if (line > headingLines && bytes.sliced(start, end - start) == *tag
            && ++tag == std::end(tags))
            return end;
        start = end + 1;
        if (start < bytes.size() && bytes[start] == '\n')
            ++start;
    }
    return bytes.size();
}

} // namespace

std::variant<QByteArray, SrfFileError>
readSrfFile(const std::filesystem::path &path, const std::function<void(qsizetype)> &beforeReading)
{
    auto result = platform::readRegularFile(path, largestSrfFile, beforeReading);
    if (const auto *error = std::get_if<platform::FileReadError>(&result))
        return SrfFileError{error->failure, messageFor(*error, path)};
    return std::get<QByteArray>(std::move(result));
}

QByteArray decodeSrf(QByteArray bytes)
{
    constexpr QByteArrayView byteOrderMark = "\xEF\xBB\xBF";
    bytes.truncate(sizeUpToLastTag(bytes));
    if (bytes.isValidUtf8()) {
        if (bytes.startsWith(byteOrderMark))
            bytes.remove(0, byteOrderMark.size());
        return bytes;
    }
    QStringDecoder windows1252("windows-1252");
    if (!windows1252.isValid()) // Qt was built without ICU
        throw platform::UserVisibleError(
            Text::tr("The recipe file is not in UTF-8, and Qt on this computer cannot read "
                     "Windows-1252, the other encoding of recipe files. Save the file as UTF-8 "
                     "and import it again."));
    const QString text = windows1252(bytes);
    return text.toUtf8();
}
