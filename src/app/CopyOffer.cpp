#include "app/CopyOffer.h"

#include "data/Database.h"
#include "data/DatabaseCopies.h"
#include "data/DatabaseError.h"
#include "data/DatabasePath.h"
#include "frame/Frame.h"
#include "interaction/Interaction.h"
#include "platform/Paths.h"

#include <QLocale>

#include <optional>

using namespace Qt::Literals::StringLiterals;

namespace {

// Returns what an UnusableDatabase says is wrong, and nothing for any other exception.
std::optional<QString> problemOf(const std::exception_ptr &failure)
{
    try {
        std::rethrow_exception(failure);
    } catch (const UnusableDatabase &problem) {
        return problem.problem();
    } catch (...) {
        return {};
    }
}

} // namespace

CopyOffer::CopyOffer(Frame &frame)
    : m_frame(frame)
{
    frame.boundary().setErrorHandler(
        [this](const QString &windowTitle, const std::exception_ptr &failure) {
            const std::optional<QString> problem = problemOf(failure);
            return problem && offer(windowTitle, *problem);
        });
    frame.boundary().setAfterHandler([this] {
        m_declined.clear();
        tellCopyFailure();
    });
}

// Returns whether the user has been told of the failure.
bool CopyOffer::offer(const QString &windowTitle, const QString &problem)
{
    if (m_declined.contains(problem))
        return true;
    const DatabaseCopies copies(DatabasePath);
    const QDate today = QDate::currentDate();
    const std::optional<DatabaseCopy> copy = copies.newestSoundCopy(today);
    if (!copy)
        return false;
    const Button answer =
        m_frame.interaction().show({.text = ErrorBoundary::text(windowTitle, problem) + u"\n\n"_s
                                        + question(copies, *copy, today),
                                    .title = tr("Error"),
                                    .icon = Icon::Exclamation,
                                    .buttons = {Button::Yes, Button::No},
                                    .defaultButton = Button::No});
    if (answer == Button::Yes)
        putBack(copies, *copy, today);
    else
        m_declined.insert(problem);
    return true;
}

QString CopyOffer::question(const DatabaseCopies &copies, const DatabaseCopy &copy, QDate today)
{
    const QLocale english(QLocale::English);
    const QString day = english.toString(copy.day, u"d MMMM yyyy"_s);
    QStringList sentences{copy.recipes == 1
                              ? tr("Pantrywise can put back its copy of %1 with 1 recipe.").arg(day)
                              : tr("Pantrywise can put back its copy of %1 with %2 recipes.")
                                    .arg(day, english.toString(copy.recipes)),
                          tr("What you have stored on that day or later is not in it.")};
    if (copies.hasDatabase()) {
        sentences += tr("The file that is there now is kept as \"%1\".")
                         .arg(platform::displayPath(copies.pathForDamaged(today).filename()));
    }
    sentences += tr("Do you want to put the copy back?");
    return sentences.join(u' ');
}

// The window that is active shows the copy at once, the others when they are activated.
void CopyOffer::putBack(const DatabaseCopies &copies, const DatabaseCopy &copy, QDate today)
{
    try {
        copies.putBack(copy, today);
        Database::reopen(DatabasePath);
    } catch (const DatabaseError &failure) {
        m_frame.interaction().showError(tr("Error"), failure.text());
        return;
    }
    m_hasPutBack = true;
    if (ChildWindow *active = m_frame.activeChild())
        m_frame.show(*active);
}

void CopyOffer::tellCopyFailure()
{
    const QString failure = Database::takeCopyFailure(DatabasePath);
    if (!failure.isEmpty())
        m_frame.interaction().showError(tr("Copies"), failure);
}
