#pragma once

#include <QByteArray>

namespace platform {

// The contents of a mimeapps.list with `desktopId` as the first default application for `mimeType`;
// every other line, and what else that line names, stays as it stands.
QByteArray withDefaultApplication(const QByteArray &contents, const QByteArray &mimeType,
                                  const QByteArray &desktopId);

} // namespace platform
