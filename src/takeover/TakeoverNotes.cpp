#include "takeover/TakeoverNotes.h"

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
    Group &group = m_groups[{kind, table}];
    if (group.sentences.size() < longestList)
        group.sentences += sentence();
    else
        ++group.more;
}

QStringList TakeoverNotes::sentences() const
{
    QStringList all;
    for (const auto &[kindAndTable, group] : m_groups) {
        all += group.sentences;
        if (group.more > 0)
            all += Text::tr("%1: there are %2 more such cases.")
                       .arg(kindAndTable.second, QLocale(QLocale::English).toString(group.more));
    }
    return all;
}
