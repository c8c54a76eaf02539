#include "app/TakeoverOffer.h"
#include "data/Database.h"
#include "platform/UserVisibleError.h"
#include "support/FileBytes.h"
#include "support/FileSizeLimit.h"
#include "support/MockInteraction.h"
#include "support/Rows.h"
#include "takeover/DatabaseReplacement.h"
#include "takeover/Takeover.h"

#include <QTemporaryDir>

#include <functional>
#include <memory>
#include <utility>

#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

// A program folder with a file of an older version, which has fourteen recipes.
class OldFolder
{
public:
    OldFolder()
    {
        QVERIFY(QFile::copy(QString::fromUtf8(OLD_FILE), path()));
        QVERIFY(QFile::setPermissions(path(), QFile::ReadOwner | QFile::WriteOwner));
    }

    QString path(const QString &name = u"data.rbk"_s) const { return m_folder.filePath(name); }
    QString names() const
    {
        return QDir(m_folder.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot).join(u' ');
    }

    void overwritePage(qint64 number) const
    {
        constexpr qint64 size = 2048;
        QFile file(path());
        QVERIFY(file.open(QIODevice::ReadWrite) && file.seek(number * size)
                && file.write(QByteArray(size, 'U')) == size);
    }

private:
    QTemporaryDir m_folder;
};

// Shows the progress of the work to nobody.
class OfferInteraction : public MockInteraction
{
public:
    bool isStopped = false; // by the user, at once
    std::function<void()> whileAsking = [] {}; // during the first box

    Button show(const MessageBox &box) override
    {
        std::exchange(whileAsking, [] {})();
        return MockInteraction::show(box);
    }

    std::unique_ptr<Progress> startProgress(const QString & /*title*/) override
    {
        struct Stopped final : public Progress {
            bool update(qsizetype, qsizetype, const QString &) override { return false; }
        };
        if (isStopped)
            return std::make_unique<Stopped>();
        return std::make_unique<SilentProgress>();
    }
};

const QString title = u"Recipes from an older version"_s;

MessageBox questionBox(const OldFolder &folder, const QString &introduction = {})
{
    return {
        introduction
            + u"The file %1 is from an older version of Pantrywise. It has 14 recipes.\n\nPantrywise can take over everything in it into a new file. The old file is kept as it is, under another name.\n\nDo you want to take over your recipes now?"_s
                  .arg(folder.path()),
        title,
        Icon::Question,
        {Button::Yes, Button::No},
        Button::No};
}

MessageBox damageBox(const OldFolder &folder)
{
    return {
        u"The file %1 is damaged. Not all of it can be read:\n\nRecipes: 13 of 14 can be read.\nIngredients: 53 of 100 can be read.\nRow 13 on page 20, which belongs to the table Recipes, cannot be read.\nPage 61, which belongs to the table Ingredients, cannot be read.\n\nPantrywise can take over the rest. The old file is kept as it is, under another name. Do you want to take over the rest?"_s
            .arg(folder.path()),
        title,
        Icon::Exclamation,
        {Button::Yes, Button::No},
        Button::No};
}

// Tells what a takeover of the file reports, after the lines about damage.
MessageBox finalBox(const OldFolder &folder, const QStringList &damage)
{
    const QTemporaryDir elsewhere;
    SilentProgress progress;
    const TakeoverReport report =
        Takeover(folder.path()).writeTo(elsewhere.filePath(u"new.rbk"_s), progress).value();
    const QString text = u"Your recipes have been taken over.\n\n"_s + report.summary()
        + u"\n\nThe old file is kept beside the new one. Its name is now \"data old.rbk\".\n\nPlease look at these points:"_s;
    return {.text = text,
            .title = title,
            .icon = Icon::Information,
            .details = u"\u2022 "_s + (damage + report.notes).join(u"\n\u2022 "_s)};
}

// Replaces the file up to this step in a process that is killed then.
void replaceAndDie(const OldFolder &folder, int steps)
{
    const pid_t child = fork();
    if (child == 0) {
        DatabaseReplacement replacement(folder.path());
        setBytes(replacement.newFile(), "new");
        replacement.begin(u"Recipes: 14"_s, {});
        for (int i = 0; i < steps; ++i)
            replacement.runNextStep();
        _exit(0);
    }
    QCOMPARE(waitpid(child, nullptr, 0), child);
}

} // namespace

class tst_TakeoverOffer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void takesOver_data()
    {
        addRows<bool, bool>({{"Yes", false, true},
                             {"No", false, false},
                             {"Yes to the rest", true, true},
                             {"No to the rest", true, false}});
    }

    void takesOver()
    {
        const auto [isDamaged, isYes] = fetchRow<bool, bool>();
        const OldFolder folder;
        if (isDamaged) {
            folder.overwritePage(31); // of a long text
            folder.overwritePage(61);
        }
        const QByteArray before = bytesOf(folder.path());
        OfferInteraction interaction;
        interaction.expect(questionBox(folder), isDamaged || isYes ? Button::Yes : Button::No);
        if (isDamaged)
            interaction.expect(damageBox(folder), isYes ? Button::Yes : Button::No);
        if (isYes && isDamaged)
            interaction.expect(finalBox(
                folder,
                {u"Recipes: 13 of 14 can be read."_s, u"Ingredients: 53 of 100 can be read."_s}));
        else if (isYes)
            interaction.expect(finalBox(folder, {}));
        offerTakeover(interaction, folder.path());

        QCOMPARE(folder.names(), isYes ? u"data old.rbk data.rbk"_s : u"data.rbk"_s);
        QCOMPARE(bytesOf(folder.path(isYes ? u"data old.rbk"_s : u"data.rbk"_s)), before);
        if (isYes)
            QCOMPARE(Database::countRecipesIfSound(folder.path()), isDamaged ? 13 : 14);
        OfferInteraction next; // asks again, or nothing
        if (!isYes)
            next.expect(questionBox(folder), Button::No);
        offerTakeover(next, folder.path());
    }

    void changesNothing_data()
    {
        using Act = std::function<void(OfferInteraction &, const OldFolder &)>;
        addRows<Act>({
            {"stopped",
             [](OfferInteraction &interaction, const OldFolder &folder) {
                 interaction.expect(questionBox(folder), Button::Yes);
                 interaction.isStopped = true;
                 offerTakeover(interaction, folder.path());
             }},
            {"cannot be taken over",
             [](OfferInteraction &interaction, const OldFolder &folder) {
                 folder.overwritePage(13);
                 QString failure;
                 try {
                     Takeover(folder.path());
                 } catch (const platform::UserVisibleError &error) {
                     failure = error.text();
                 }
                 interaction.expect({failure, title, Icon::Exclamation});
                 offerTakeover(interaction, folder.path());
             }},
            {"full disk",
             [](OfferInteraction &interaction, const OldFolder &folder) {
                 interaction.expect(questionBox(folder), Button::Yes);
                 interaction.expect(
                     {u"The new recipe file could not be written: disk I/O error. Your old file is unchanged. Check that the disk is connected and not full and try again."_s,
                      title, Icon::Exclamation});
                 const FileSizeLimit fullDisk(40960);
                 offerTakeover(interaction, folder.path());
             }},
            {"another program is taking it over",
             [](OfferInteraction &interaction, const OldFolder &folder) {
                 const DatabaseReplacement other(folder.path());
                 interaction.expect(
                     {u"Another Pantrywise is taking over the recipes in %1. Wait until it has finished and try again."_s
                          .arg(folder.path()),
                      title, Icon::Exclamation});
                 offerTakeover(interaction, folder.path());
             }},
            {"replaced while the question is open",
             [](OfferInteraction &interaction, const OldFolder &folder) {
                 interaction.expect(questionBox(folder), Button::Yes);
                 interaction.whileAsking = [&folder] { setBytes(folder.path(), "new"); };
                 offerTakeover(interaction, folder.path());
             }},
            {"interrupted before",
             [](OfferInteraction &interaction, const OldFolder &folder) {
                 replaceAndDie(folder, 4);
                 interaction.expect(
                     questionBox(
                         folder,
                         u"Pantrywise was interrupted while it was taking over your recipes. Your file is unchanged.\n\n"_s),
                     Button::No);
                 offerTakeover(interaction, folder.path());
             }},
        });
    }

    void changesNothing()
    {
        const auto [act] = fetchRow<std::function<void(OfferInteraction &, const OldFolder &)>>();
        const OldFolder folder;
        OfferInteraction interaction;
        act(interaction, folder);
        QCOMPARE(folder.names(), u"data.rbk"_s);
    }

    void tellsOfAFinishedOne_data()
    {
        addRows<bool>({{"at start", false}, {"while the question is open", true}});
    }
    void tellsOfAFinishedOne()
    {
        const auto [isAsked] = fetchRow<bool>();
        const OldFolder folder;
        OfferInteraction interaction;
        if (isAsked) {
            interaction.expect(questionBox(folder), Button::Yes);
            interaction.whileAsking = [&] { replaceAndDie(folder, 5); };
        } else {
            replaceAndDie(folder, 5);
        }
        interaction.expect(
            {u"Your recipes have been taken over. Pantrywise was interrupted before it could tell you.\n\nRecipes: 14\n\nThe old file is kept beside the new one. Its name is now \"data old.rbk\"."_s,
             title, Icon::Information});
        offerTakeover(interaction, folder.path());
        offerTakeover(interaction, folder.path());
        QCOMPARE(folder.names(), u"data old.rbk data.rbk"_s);
    }

    void saysNothingWhileAnotherProgramTellsItsUser()
    {
        const OldFolder folder;
        DatabaseReplacement other(folder.path());
        setBytes(other.newFile(), "new");
        other.replace({}, {});
        OfferInteraction interaction;
        offerTakeover(interaction, folder.path());
    }

    void tellsWhereTheOldFileIs()
    {
        const OldFolder folder;
        replaceAndDie(folder, 4);
        QVERIFY(QFile::remove(folder.path()));
        setBytes(folder.path(), "own");
        OfferInteraction interaction;
        interaction.expect(
            {u"Pantrywise was interrupted while it was taking over your recipes, and another file has been put in the place of the old one since. The old file is kept beside it. Its name is now \"data old.rbk\"."_s,
             title, Icon::Information});
        offerTakeover(interaction, folder.path());
        offerTakeover(interaction, folder.path());
        QCOMPARE(folder.names(), u"data old.rbk data.rbk"_s);
    }
};

QTEST_GUILESS_MAIN(tst_TakeoverOffer)
#include "tst_takeoveroffer.moc"
