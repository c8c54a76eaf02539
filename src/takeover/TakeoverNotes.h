#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <map>
#include <tuple>

enum class NoteKind { Count, Number, Key, Name, Link, PassedOver };

// Collects what the user is told at the end. The first sentences of each kind about each table are
// kept; of the others, only their number.
class TakeoverNotes
{
public:
    static constexpr qsizetype longestList = 50;

    // `sentence` is called only if its result is kept.
    void add(const QString &table, NoteKind kind, const std::function<QString()> &sentence);

    // Sorted by kind and table.
    QStringList sentences() const;

private:
    struct Group {
        QStringList sentences;
        qint64 more = 0;
    };

    using Key = std::tuple<NoteKind, int, QString>; // kind, number and name of the table

    std::map<Key, Group> m_groups;
};
