#include "data/Criterion.h"

#include "data/DatabaseError.h"

#include <QCoreApplication>
#include <QStringBuilder>

// criterion = spaces field spaces ( "=" spaces ( text | key ) | "LIKE" spaces text ) spaces
// spaces    = { " " }
// field     = letter { letter }
// text      = "'" { any character but "'" | "''" } "'"
// key       = [ "-" ] digit { digit }

using namespace Qt::Literals::StringLiterals;

namespace {

bool isLetter(QChar c)
{
    return (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z');
}

bool isDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

class CriterionParser
{
    Q_DECLARE_TR_FUNCTIONS(Criterion)

public:
    explicit CriterionParser(const QString &text)
        : m_text(text)
        , m_rest(text)
    {
    }

    Criterion criterion()
    {
        Criterion result;
        skipSpaces();
        result.field = field();
        skipSpaces();
        result.comparison = comparison();
        skipSpaces();
        if (m_rest.startsWith(u'\''))
            result.value = text();
        else if (result.comparison == Comparison::Equal)
            result.value = key();
        else
            fail();
        skipSpaces();
        if (!m_rest.empty())
            fail();
        return result;
    }

private:
    [[noreturn]] void fail() const
    {
        throw DatabaseError(tr("Not a search criterion: %1").arg(m_text));
    }

    void skipSpaces()
    {
        takeWhile([](QChar c) { return c == u' '; });
    }

    QByteArray field()
    {
        const QStringView name = takeWhile(isLetter);
        if (name.empty())
            fail();
        return name.toLatin1();
    }

    Comparison comparison()
    {
        if (m_rest.startsWith(u'=')) {
            m_rest = m_rest.sliced(1);
            return Comparison::Equal;
        }
        if (takeWhile(isLetter).compare("LIKE"_L1, Qt::CaseInsensitive) != 0)
            fail();
        return Comparison::Like;
    }

    std::string text()
    {
        std::string value;
        while (true) {
            m_rest = m_rest.sliced(1);
            const qsizetype quote = m_rest.indexOf(u'\'');
            if (quote < 0)
                fail();
            value += m_rest.first(quote).toUtf8().toStdString();
            m_rest = m_rest.sliced(quote + 1);
            if (!m_rest.startsWith(u'\''))
                return value;
            value += '\'';
        }
    }

    qint64 key()
    {
        const QStringView start = m_rest;
        if (m_rest.startsWith(u'-'))
            m_rest = m_rest.sliced(1);
        takeWhile(isDigit);
        bool ok = false;
        const qint64 value = start.first(start.size() - m_rest.size()).toLongLong(&ok);
        if (!ok)
            fail();
        return value;
    }

    template <typename Predicate>
    QStringView takeWhile(Predicate belongs)
    {
        qsizetype length = 0;
        while (length < m_rest.size() && belongs(m_rest[length]))
            ++length;
        const QStringView taken = m_rest.first(length);
        m_rest = m_rest.sliced(length);
        return taken;
    }

    const QString &m_text;
    QStringView m_rest;
};

} // namespace

Criterion Criterion::parse(const QString &text)
{
    return CriterionParser(text).criterion();
}

QString criterion(QLatin1StringView field, Comparison comparison, const QString &value)
{
    QString quoted = value;
    quoted.replace(u'\'', "''"_L1);
    const QLatin1StringView symbol = comparison == Comparison::Equal ? " ='"_L1 : " LIKE '"_L1;
    return field % symbol % quoted % u'\'';
}

QString criterion(QLatin1StringView field, qint64 key)
{
    return field + " = "_L1 + QString::number(key);
}
