#include "Bench.h"

#include "RecipeInserter.h"

#include <stdexcept>

Bench::Bench(int largest)
{
    for (const int size : {1'000, 10'000, 100'000}) {
        if (size <= largest)
            m_sizes.push_back(size);
    }
    if (m_sizes.empty())
        throw std::runtime_error("the smallest database has 1,000 recipes");
    if (!m_folder.isValid())
        throw std::runtime_error(m_folder.errorString().toStdString());
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
