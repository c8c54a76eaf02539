#include "CatalogTable.h"

#include "data/GeneralFuctions.h"
#include "data/TextComparison.h"

#include <QFile>

#include <stdexcept>

namespace {

constexpr qsizetype longestName = 25; // the maxLength of the name in the catalogs' windows

[[noreturn]] void fail(const QString &text)
{
    throw std::runtime_error(text.toStdString());
}

QStringList fieldsOf(const QString &line)
{
    QStringList fields = line.split(u'|');
    for (QString &field : fields)
        field = field.trimmed();
    return fields;
}

void checkName(const QString &name, const QString &previous)
{
    if (name.isEmpty())
        fail(QStringLiteral("the name is empty"));
    if (name.size() > longestName)
        fail(QStringLiteral("the name is longer than %1 characters").arg(longestName));
    if (ContainsInvalidChars(name).isEmpty())
        fail(QStringLiteral("the name contains a character that is not allowed"));
    const int order = compareTexts(previous.toStdString(), name.toStdString());
    if (order == 0)
        fail(QStringLiteral("%1 is listed twice").arg(name));
    if (order > 0)
        fail(QStringLiteral("%1 must come before %2").arg(name, previous));
}

} // namespace

void readCatalogTable(const QString &path, qsizetype fieldCount,
                      const std::function<void(const QStringList &)> &store)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        fail(path + QStringLiteral(": ") + file.errorString());
    QString previous;
    for (int number = 1; !file.atEnd(); ++number) {
        const QByteArray line = file.readLine().trimmed();
        if (line.isEmpty() || line.startsWith('#'))
            continue;
        try {
            if (!line.isValidUtf8())
                fail(QStringLiteral("the line is not UTF-8"));
            const QStringList fields = fieldsOf(QString::fromUtf8(line));
            if (fields.size() != fieldCount)
                fail(QStringLiteral("%1 fields instead of %2").arg(fields.size()).arg(fieldCount));
            checkName(fields.first(), previous);
            store(fields);
            previous = fields.first();
        } catch (const std::exception &error) {
            fail(QStringLiteral("%1:%2: %3")
                     .arg(path, QString::number(number), QString::fromUtf8(error.what())));
        }
    }
}
