#pragma once

#include "ExportFailure.h"
#include "FileBytes.h"
#include "Progress.h"
#include "RecipeFile.h"
#include "TemporaryHome.h"
#include "WebPages.h"

// Lets the export go on up to a piece, and says what it was told.
class CountingProgress final : public Progress
{
public:
    qsizetype stopAt = -1;
    std::function<void()> during = [] {}; // at each piece
    QStringList names;

    bool goOn(qsizetype piece, qsizetype pieces, const QString &name) override
    {
        during();
        names += name;
        m_inOrder = m_inOrder && piece == names.size() && pieces >= piece;
        return piece != stopAt;
    }
    bool inOrder() const { return m_inOrder; }

private:
    bool m_inOrder = true;
};

// A recipe file, and a place for its pages.
struct ExportStand {
    TemporaryHome home; // without settings
    RecipeFile file;
    QTemporaryDir place;
    PageSettings settings;
    CountingProgress progress;

    QString page(const QString &name) const
    {
        return place.filePath(QStringLiteral("Pantrywise/") + name);
    }

    std::optional<ExportedPages> run()
    {
        progress.names.clear();
        return exportPages(file.path(), place.path(), settings, progress);
    }

    // What the user is told of an export that fails, or the null text.
    QString failure()
    {
        try {
            run();
        } catch (const std::runtime_error &error) {
            return QString::fromUtf8(error.what());
        }
        return {};
    }

    // What lies in the place, hidden files too.
    QStringList entries(const QString &folder = {}) const
    {
        return QDir(place.filePath(folder))
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }
};
