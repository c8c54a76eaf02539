#pragma once

#include <QString>
#include <QStringList>

#include <iterator>
#include <random>

// The random choices of a run. Runs with the same seed choose the same.
class Randomness
{
public:
    explicit Randomness(unsigned seed)
        : m_engine(seed)
    {
    }

    // Returns a number from 0 to count - 1; count must be positive.
    int below(int count) { return static_cast<int>(m_engine() % static_cast<unsigned>(count)); }
    bool oneIn(int count) { return below(count) == 0; }

    template <class List>
    auto &oneOf(List &list)
    {
        return *std::next(std::begin(list), below(static_cast<int>(std::size(list))));
    }

    // Returns one of a few names, so that the user and other programs often choose the same.
    QString name()
    {
        static const QStringList names = {
            QStringLiteral("Basil"),     QStringLiteral("basil"),  QStringLiteral("Salt"),
            QStringLiteral("Whisk"),     QStringLiteral("Soup"),   QStringLiteral("Bean Soup"),
            QStringLiteral("bean soup"), QStringLiteral("Curry"),  QStringLiteral("Stew"),
            QStringLiteral("Pot"),       QStringLiteral("Butter"), QStringLiteral("Dill")};
        return oneOf(names);
    }

private:
    std::mt19937 m_engine;
};
