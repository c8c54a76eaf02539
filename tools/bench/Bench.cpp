#include "Bench.h"

#include "RecipeInserter.h"

#include <stdexcept>

Bench::Bench(int largest, const QString &csvPath)
    : m_results(csvPath)
{
    for (const int size : {1'000, 10'000, 100'000, maximumSize}) {
        if (size <= largest)
            m_sizes.push_back(size);
    }
    if (m_sizes.empty())
        throw std::runtime_error("the smallest database has 1,000 recipes");
    if (!m_folder.isValid())
        throw std::runtime_error(m_folder.errorString().toStdString());
}

Limit absoluteLimit(int recipes, const std::array<double, 3> &limits)
{
    const std::size_t size = recipes <= 10'000 ? 0 : recipes <= 100'000 ? 1 : 2;
    return {Limit::Kind::Absolute, limits[size]};
}

QString Bench::database(int recipes)
{
    QString &path = m_databases[recipes];
    if (path.isEmpty()) {
        const QString name = this->path(QStringLiteral("%1.rbk").arg(recipes));
        generateDatabase(name.toStdString(), recipes);
        path = name;
    }
    return path;
}
