#pragma once

#include <QAbstractListModel>

#include <filesystem>
#include <vector>

// The models of the import dialog's two lists. Paths and names are bytes, which need not be text:
// each row knows the exact path or name that it shows.

// The directories from a drive down to the current directory, and those in the current one.
class DirectoryModel final : public QAbstractListModel
{
    Q_OBJECT

public:
    using QAbstractListModel::QAbstractListModel;

    // Makes the directory the current one. It must be on the drive.
    void open(const std::filesystem::path &drive, const std::filesystem::path &directory);

    const std::filesystem::path &current() const { return path(m_current); }
    QModelIndex currentIndex() const { return index(m_current); }
    const std::filesystem::path &path(int row) const
    {
        return m_paths[static_cast<std::size_t>(row)];
    }

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

private:
    std::vector<std::filesystem::path> m_paths = {{}};
    int m_current = 0; // row of the current directory
};

// The recipe files in a directory, shown without their extension.
class RecipeFileModel final : public QAbstractListModel
{
    Q_OBJECT

public:
    using QAbstractListModel::QAbstractListModel;

    void setNames(std::vector<QByteArray> names); // each with its extension
    const QByteArray &name(int row) const { return m_names[static_cast<std::size_t>(row)]; }

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

private:
    std::vector<QByteArray> m_names;
};
