#include "import/RecipeFileModel.h"

#include "interaction/ControlCharacters.h"

#include <QFile>

namespace {

constexpr qsizetype extensionSize = 4; // ".srf"

} // namespace

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
    return escapeControlCharacters(QFile::decodeName(name(index.row()).chopped(extensionSize)));
}
