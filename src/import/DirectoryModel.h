#pragma once

#include <QAbstractListModel>

#include <filesystem>
#include <vector>

// The way from a drive down to the current directory, and the directories in that one.
class DirectoryModel final : public QAbstractListModel
{
    Q_OBJECT

public:
    using QAbstractListModel::QAbstractListModel;

    // The directory lies on the drive.
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
    int m_current = 0; // the way ends here
};
