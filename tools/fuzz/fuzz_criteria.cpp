#include "data/Criterion.h"
#include "data/DatabaseError.h"

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

// The text of the criterion, as a window makes it.
QString written(const Criterion &from)
{
    const QLatin1StringView field(from.field);
    if (const auto *key = std::get_if<qint64>(&from.value))
        return criterion(field, *key);
    return criterion(field, from.comparison, toVariant(toCell(from.value)).toString());
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
