#pragma once

#include <QByteArray>
#include <QString>
#include <QtEndian>

// The file that tests/oldfiles/make/rules.py makes, and damage to its bytes.

inline QString rulesFile()
{
    return QStringLiteral(RULES_FILE);
}

inline constexpr qsizetype rulesPageSize = 4096;

// Returns the page of the definition of a table, by its number.
inline qsizetype definitionPage(const QByteArray &file, int table)
{
    constexpr qsizetype afterCatalog = 3;
    for (qsizetype at = afterCatalog * rulesPageSize; at < file.size(); at += rulesPageSize) {
        if (file[at] == 2 && table-- == 0)
            return at / rulesPageSize;
    }
    return 0;
}

inline QByteArray withStatedRows(QByteArray file, int table, quint32 rows)
{
    qToLittleEndian(rows, file.data() + definitionPage(file, table) * rulesPageSize + 16);
    return file;
}

// Damages the directory of the first page with rows of the table.
inline QByteArray withDamagedPage(QByteArray file, int table)
{
    const auto definition = static_cast<quint32>(definitionPage(file, table));
    for (qsizetype at = 0; at < file.size(); at += rulesPageSize) {
        if (file[at] == 1 && qFromLittleEndian<quint32>(file.constData() + at + 4) == definition) {
            file[at + 13] = '\xFF';
            break;
        }
    }
    return file;
}
