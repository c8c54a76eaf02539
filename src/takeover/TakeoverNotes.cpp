#include "takeover/TakeoverNotes.h"

#include "data/Schema.h"

#include <QCoreApplication>
#include <QLocale>

namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(TakeoverNotes)
};

} // namespace

void TakeoverNotes::add(const QString &table, NoteKind kind,
                        const std::function<QString()> &sentence)
{
    Group &group = m_groups[{kind, tableNumber(table.toStdString()), table}];
    if (m_length >= largestLength && group.sentences.size() >= alwaysKept) {
        ++group.more;
        return;
    }
    group.sentences += sentence();
    m_length += group.sentences.last().size();
}

QStringList TakeoverNotes::sentences() const
{
    QStringList all;
    for (auto kind = NoteKind::Count; kind <= NoteKind::PassedOver;
         kind = static_cast<NoteKind>(static_cast<int>(kind) + 1))
        all += sentences(kind);
    return all;
}

QStringList TakeoverNotes::sentences(NoteKind kind) const
{
    QStringList all;
    for (const auto &[key, group] : m_groups) {
        if (std::get<NoteKind>(key) != kind)
            continue;
        all += group.sentences;
        if (group.more > 0)
            all += Text::tr("%1: there are %2 more such cases.")
                       .arg(std::get<QString>(key), QLocale(QLocale::English).toString(group.more));
    }
    return all;
}
