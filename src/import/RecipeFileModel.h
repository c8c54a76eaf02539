#pragma once

#include <QAbstractListModel>

#include <vector>

// The recipe files of a directory. An item shows the file's name without its extension and stands
// for exactly that file: its name is bytes, which need not be text.
class RecipeFileModel final : public QAbstractListModel
{
    Q_OBJECT

public:
    using QAbstractListModel::QAbstractListModel;

    void setNames(std::vector<QByteArray> names); // each with the extension
    const QByteArray &name(int row) const { return m_names[static_cast<std::size_t>(row)]; }

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

private:
    std::vector<QByteArray> m_names;
};
