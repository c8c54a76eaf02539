#pragma once

#include "export/WebPages.h"
#include "interaction/Progress.h"
#include "support/FileBytes.h"
#include "support/TemporaryHome.h"
#include "support/TestDatabase.h"

#include <QDir>

using namespace Qt::Literals::StringLiterals;

// Records the names of the items, and stops at one of them or if the numbers are wrong.
class RecordingProgress final : public Progress
{
public:
    qsizetype stopAt = -1; // number of the item, counted from 1
    std::function<void()> onProgress = [] {}; // called at each item
    QStringList names;

    bool update(qsizetype done, qsizetype total, const QString &label) override
    {
        names += label;
        onProgress();
        return done + 1 == names.size() && done < total && done + 1 != stopAt;
    }
};

// A database and a folder to export its pages to.
struct ExportFixture {
    TemporaryHome home; // has no settings
    TestDatabase file;
    QTemporaryDir folder{QDir::homePath() + "/export-XXXXXX"_L1}; // the temporary home
    PageSettings settings;
    RecordingProgress progress;

    QString path(const QString &name) const { return folder.filePath(name); }
    QString page(const QString &name) const { return path(u"Pantrywise/"_s + name); }

    // The names of all entries of the folder or of one in it, hidden files included.
    QStringList entries(const QString &name = {}) const
    {
        return QDir(path(name)).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
    QStringList pages() const { return entries(u"Pantrywise"_s); }

    // Exports the pages, to the folder unless another one is given. Returns the error's text, or a
    // null text if the export succeeds or is stopped.
    QString run(const QString &to = {})
    {
        progress.names.clear();
        try {
            exportPages(file.path(), to.isEmpty() ? folder.path() : to, settings, progress);
        } catch (const std::runtime_error &error) {
            return QString::fromUtf8(error.what());
        }
        return {};
    }
};
