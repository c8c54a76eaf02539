#include "import/ImportModels.h"

#include "interaction/ControlCharacters.h"
#include "platform/Directory.h"
#include "platform/Paths.h"

#include <QFile>

#include <algorithm>

void DirectoryModel::open(const std::filesystem::path &drive,
                          const std::filesystem::path &directory)
{
    beginResetModel();
    m_paths = {drive};
    const auto below =
        std::mismatch(drive.begin(), drive.end(), directory.begin(), directory.end());
    for (auto part = below.second; part != directory.end(); ++part) {
        if (!part->empty()) // a separator at the end makes an empty part
            m_paths.push_back(m_paths.back() / *part);
    }
    m_current = static_cast<int>(m_paths.size()) - 1;
    const std::vector<std::filesystem::path> inside = platform::subdirectories(current());
    m_paths.insert(m_paths.end(), inside.begin(), inside.end());
    endResetModel();
}

int DirectoryModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_paths.size());
}

QVariant DirectoryModel::data(const QModelIndex &index, int role) const
{
    if (role != Qt::DisplayRole || !index.isValid())
        return {};
    constexpr qsizetype indentation = 3; // spaces per level
    const int row = index.row();
    const qsizetype level = std::min(row, m_current + 1);
    const std::filesystem::path shown = row == 0 ? path(0) : path(row).filename();
    return QString(indentation * level, u' ')
        + escapeControlCharacters(platform::displayPath(shown));
}

void RecipeFileModel::setNames(std::vector<QByteArray> names)
{
    beginResetModel();
    m_names = std::move(names);
    endResetModel();
}

int RecipeFileModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_names.size());
}

QVariant RecipeFileModel::data(const QModelIndex &index, int role) const
{
    if (role != Qt::DisplayRole || !index.isValid())
        return {};
    constexpr qsizetype extensionSize = 4; // ".srf"
    return escapeControlCharacters(QFile::decodeName(name(index.row()).chopped(extensionSize)));
}
