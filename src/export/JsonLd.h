#pragma once

#include "RecipeFacts.h"

#include <QByteArray>

// The recipe as schema.org/Recipe in JSON-LD, for other recipe programs to take over. UTF-8 that
// may stand in a script element as it is.
QByteArray jsonLd(const RecipeFacts &facts, const QString &typeName);
