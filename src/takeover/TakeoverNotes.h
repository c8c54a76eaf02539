#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <map>
#include <tuple>

enum class NoteKind { Count, Number, Key, Name, Link, PassedOver };

// Collects what the user is told at the end. Thousands of sentences are kept; of the others, only
// the number for each kind and table, so that a damaged file cannot fill the memory.
class TakeoverNotes
{
public:
    // `sentence` is called only if its result is kept.
    void add(const QString &table, NoteKind kind, const std::function<QString()> &sentence);

    // Sorted by kind and table. The second form returns those of one kind.
    QStringList sentences() const;
    QStringList sentences(NoteKind kind) const;

private:
    static constexpr qsizetype largestLength = 500'000; // of all sentences
    static constexpr qsizetype alwaysKept = 50; // sentences of a kind and table

    struct Group {
        QStringList sentences;
        qint64 more = 0;
    };

    using Key = std::tuple<NoteKind, int, QString>; // kind, number and name of the table

    std::map<Key, Group> m_groups;
    qsizetype m_length = 0; // of all sentences
};
