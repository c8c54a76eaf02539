#include "platform/DefaultApplication.h"

#include <QByteArrayList>

namespace platform {
namespace {

constexpr char section[] = "[Default Applications]";

// The applications that a line "type=a.desktop;b.desktop;" names, with ours moved to the front.
QByteArray inFront(const QByteArray &desktopId, const QByteArray &list)
{
    QByteArray result = desktopId + ';';
    for (const QByteArray &id : list.split(';')) {
        if (!id.trimmed().isEmpty() && id.trimmed() != desktopId)
            result += id.trimmed() + ';';
    }
    return result;
}

} // namespace

QByteArray withDefaultApplication(const QByteArray &contents, const QByteArray &mimeType,
                                  const QByteArray &desktopId)
{
    QByteArrayList lines = contents.split('\n');
    qsizetype heading = -1;
    bool inSection = false;
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const QByteArray line = lines[i].trimmed();
        if (line.startsWith('[')) {
            inSection = line == section;
            if (inSection && heading < 0)
                heading = i;
        }
        const qsizetype equals = line.indexOf('=');
        if (!inSection || equals < 0 || line.left(equals).trimmed() != mimeType)
            continue;
        const QByteArray list = line.mid(equals + 1);
        if (list.split(';').first().trimmed() == desktopId)
            return contents;
        lines[i] = mimeType + '=' + inFront(desktopId, list);
        return lines.join('\n');
    }

    const QByteArray added = mimeType + '=' + desktopId + ';';
    if (heading >= 0) {
        lines.insert(heading + 1, added);
        return lines.join('\n');
    }
    const bool lineOpen = !contents.isEmpty() && !contents.endsWith('\n');
    return contents + (lineOpen ? "\n" : "") + (contents.isEmpty() ? "" : "\n") + section + '\n'
        + added + '\n';
}

} // namespace platform
