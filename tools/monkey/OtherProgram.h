#pragma once

#include "Tables.h"

#include <SQLiteCpp/Database.h>

#include <optional>

class Randomness;

// Another program that works with the same recipe database: it reads, writes, and locks it.
class OtherProgram
{
public:
    OtherProgram(const QString &path, Randomness &random);

    static void createFile(const QString &path); // with some rows in every table

    Tables read() { return readTables(m_connection); }
    QString integrity(); // "ok" if the file is sound

    // Writes something at random that keeps the names unique and returns the statement, which is
    // empty if the file is in use.
    QString write(const Tables &stored);

    // Nobody else can read or write a locked file.
    bool isLocked() const { return m_isLocked; }
    void setLocked(bool locked);

private:
    QString randomStatement(const Tables &stored);
    QString freshName(); // one that no row ever had

    SQLite::Database m_connection;
    Randomness &m_random;
    bool m_isLocked = false;
    int m_freshNames = 0;
};
