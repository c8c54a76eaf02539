#pragma once

#include "ResultTable.h"

#include <QString>
#include <QTemporaryDir>

#include <map>
#include <vector>

// What the measurements share: databases in a temporary folder, which goes with it.
class Bench
{
public:
    // Measures on no database of more than so many recipes.
    explicit Bench(int largest);

    // How many recipes the databases have, from small to large.
    const std::vector<int> &sizes() const { return m_sizes; }
    int largest() const { return m_sizes.back(); }

    // A database of that size, made when it is first asked for. Nothing may write to it.
    QString database(int recipes);

    // A path in the folder.
    QString path(const QString &name) const { return m_folder.filePath(name); }

private:
    std::vector<int> m_sizes;
    QTemporaryDir m_folder;
    std::map<int, QString> m_databases;
};
