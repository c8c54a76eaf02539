#include "app/TakeoverOffer.h"

#include "data/DatabaseFile.h"
#include "interaction/Interaction.h"
#include "takeover/DatabaseReplacement.h"
#include "takeover/Takeover.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLocale>

#include <exception>
#include <optional>

using namespace Qt::Literals::StringLiterals;

namespace {

class TakeoverOffer
{
    Q_DECLARE_TR_FUNCTIONS(TakeoverOffer)

public:
    TakeoverOffer(Interaction &interaction, const QString &path)
        : m_interaction(interaction)
        , m_path(path)
    {
    }

    void run();
    static QString title() { return tr("Recipes from an older version"); }

private:
    bool isOfOlderVersion() const { return DatabaseFile(m_path).isAccessFormat(); }
    bool tellsOfEarlierOne(const DatabaseReplacement &earlier);
    bool asks(const QString &introduction);
    bool asksAboutLosses(const TakeoverReport &report);
    void takeOver();
    std::optional<TakeoverReport> write(const QString &newFile);
    void show(const QString &introduction, const ReplacementReport &report);

    Interaction &m_interaction;
    QString m_path;
};

void TakeoverOffer::run()
{
    QString introduction;
    if (DatabaseReplacement::isInProgress(m_path)) {
        const DatabaseReplacement earlier(m_path);
        if (!tellsOfEarlierOne(earlier))
            introduction = tr("Pantrywise was interrupted while it was taking over your recipes. "
                              "Your file is unchanged.");
    }
    if (isOfOlderVersion() && asks(introduction))
        takeOver();
}

// Returns false if there is nothing to tell but that it was interrupted.
bool TakeoverOffer::tellsOfEarlierOne(const DatabaseReplacement &earlier)
{
    if (!earlier.strandedName().isEmpty())
        m_interaction.show(
            {.text = tr("Pantrywise was interrupted while it was taking over your recipes, and "
                        "another file has been put in the place of the old one since. The old "
                        "file is kept beside it. Its name is now \"%1\".")
                         .arg(earlier.strandedName()),
             .title = title(),
             .icon = Icon::Information});
    if (!earlier.earlierReport())
        return !earlier.strandedName().isEmpty();
    show(tr("Your recipes have been taken over. Pantrywise was interrupted before it could tell "
            "you."),
         *earlier.earlierReport());
    return true;
}

bool TakeoverOffer::asks(const QString &introduction)
{
    const qint64 recipes = Takeover(m_path).recipeCount();
    const QString path = QDir::toNativeSeparators(m_path);
    QStringList paragraphs{
        recipes == 1
            ? tr("The file %1 is from an older version of Pantrywise. It has 1 recipe.").arg(path)
            : tr("The file %1 is from an older version of Pantrywise. It has %2 recipes.")
                  .arg(path, QLocale(QLocale::English).toString(recipes)),
        tr("Pantrywise can take over everything in it into a new file. The old file is kept as it "
           "is, under another name."),
        tr("Do you want to take over your recipes now?")};
    if (!introduction.isEmpty())
        paragraphs.prepend(introduction);
    return m_interaction.confirm(title(), paragraphs.join("\n\n"_L1), Button::No);
}

void TakeoverOffer::takeOver()
{
    DatabaseReplacement replacement(m_path);
    // Another program may have worked on the file since the question was asked.
    if (tellsOfEarlierOne(replacement) || !isOfOlderVersion())
        return;
    const std::optional<TakeoverReport> report = write(replacement.newFile());
    if (!report || !(report->isComplete() || asksAboutLosses(*report)))
        return;
    show(tr("Your recipes have been taken over."),
         replacement.replace(report->summary(), report->losses() + report->notes));
}

// Returns nothing if the user cancels.
std::optional<TakeoverReport> TakeoverOffer::write(const QString &newFile)
{
    const std::unique_ptr<Progress> progress =
        m_interaction.startProgress(tr("Taking over your recipes"));
    return Takeover(m_path).writeTo(newFile, *progress);
}

bool TakeoverOffer::asksAboutLosses(const TakeoverReport &report)
{
    return m_interaction.show({.text = tr("The file %1 is damaged. Not all of it can be read:\n\n"
                                          "%2\n\n"
                                          "Pantrywise can take over the rest. The old file is kept "
                                          "as it is, under another name. Do you want to take over "
                                          "the rest?")
                                           .arg(QDir::toNativeSeparators(m_path),
                                                (report.losses() + report.damageNotes).join(u'\n')),
                               .title = title(),
                               .icon = Icon::Exclamation,
                               .buttons = {Button::Yes, Button::No},
                               .defaultButton = Button::No})
        == Button::Yes;
}

void TakeoverOffer::show(const QString &introduction, const ReplacementReport &report)
{
    QStringList paragraphs{introduction, report.summary,
                           tr("The old file is kept beside the new one. Its name is now \"%1\".")
                               .arg(report.keptName)};
    QStringList points;
    for (const QString &note : report.notes)
        points += u"\u2022 "_s + note;
    if (!points.isEmpty())
        paragraphs += tr("Please look at these points:");
    m_interaction.show({.text = paragraphs.join("\n\n"_L1),
                        .title = title(),
                        .icon = Icon::Information,
                        .details = points.join(u'\n')});
}

} // namespace

void offerTakeover(Interaction &interaction, const QString &databasePath)
{
    try {
        TakeoverOffer(interaction, databasePath).run();
    } catch (const ReplacementInProgress &failure) {
        // If the new file is in its place, the other program is only telling its user so.
        if (!QFileInfo::exists(databasePath) || DatabaseFile(databasePath).isAccessFormat())
            interaction.showError(TakeoverOffer::title(), failure.text());
    } catch (const std::exception &failure) {
        interaction.showError(TakeoverOffer::title(), QString::fromUtf8(failure.what()));
    }
}
