#include "data/Criterion.h"
#include "data/DatabaseError.h"

#include <QStringDecoder>

#include <cstdint>
#include <cstdlib>
#include <optional>

namespace {

std::optional<Criterion> parsed(const QString &text)
{
    try {
        return Criterion::parse(text);
    } catch (const DatabaseError &) {
        return {};
    }
}

// The same criterion, as a window writes it.
QString written(const Criterion &from)
{
    const QLatin1StringView field(from.field.data(), static_cast<qsizetype>(from.field.size()));
    if (const auto *key = std::get_if<qint64>(&from.value))
        return criterion(field, *key);
    const std::string &value = std::get<std::string>(from.value);
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
    return criterion(field, from.comparison, utf8.decode(QByteArrayView(value)));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::optional<Criterion> first = parsed(
        QString::fromUtf8(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size)));
    if (!first)
        return 0;
    const std::optional<Criterion> second = parsed(written(*first));
    if (!second || second->field != first->field || second->comparison != first->comparison
        || second->value != first->value)
        std::abort();
    return 0;
}
