#include "platform/Utf8.h"

#include <QStringDecoder>

QString platform::decodeUtf8(std::string_view bytes)
{
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
    return utf8.decode(QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())));
}
