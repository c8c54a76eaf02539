#pragma once

#include "export/WebPages.h"
#include "interaction/Progress.h"
#include "support/FileBytes.h"
#include "support/RecipeFile.h"
#include "support/TemporaryHome.h"

#include <functional>

// Notes what it is told; stops at a piece.
class NotingProgress final : public Progress
{
public:
    qsizetype stopAt = -1;
    std::function<void()> onProgress = [] {}; // at each piece
    QStringList names;

    bool update(qsizetype done, qsizetype, const QString &label) override
    {
        names += label;
        onProgress();
        return done + 1 == names.size() && done + 1 != stopAt;
    }
};

// A recipe file and a place for its pages.
struct ExportFixture {
    TemporaryHome home; // without settings
    RecipeFile file;
    QTemporaryDir place;
    PageSettings settings;
    NotingProgress progress;

    QString path(const QString &name) const { return place.filePath(name); }
    QString page(const QString &name) const { return path(QStringLiteral("Pantrywise/") + name); }

    // What lies in the place or in a folder of it, hidden files too.
    QStringList entries(const QString &folder = {}) const
    {
        return QDir(path(folder)).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
    QStringList pages() const { return entries(QStringLiteral("Pantrywise")); }

    // What the user is told where it fails; the null text where it does not or was stopped.
    QString run()
    {
        progress.names.clear();
        try {
            exportPages(file.path(), place.path(), settings, progress);
        } catch (const std::runtime_error &error) {
            return QString::fromUtf8(error.what());
        }
        return {};
    }
};
