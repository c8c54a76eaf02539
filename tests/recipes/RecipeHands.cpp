#include "RecipeHands.h"

#include "LockableComboBox.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

RecipeHands::RecipeHands(Kitchen &kitchen)
    : m_kitchen(kitchen)
{
}

frmRecipe &RecipeHands::open(qint64 key)
{
    m_form = &m_kitchen.frame.load<frmRecipe>();
    m_kitchen.frame.show(*m_form);
    m_form->CurrentRecipeID = key;
    m_kitchen.settle();
    return *m_form;
}

MessageBox RecipeHands::error(const QString &text)
{
    return {.text = text, .title = u"Error"_s, .icon = Icon::Information};
}

MessageBox RecipeHands::savePrompt()
{
    return {.text = u"Do you want to save changes to this recipe"_s,
            .title = u"Save Changes"_s,
            .icon = Icon::Question,
            .buttons = {Button::Yes, Button::No},
            .defaultButton = Button::Yes};
}

InputBox RecipeHands::nameBox(const QString &defaultText)
{
    return {.prompt = u"Enter title of the recipe"_s,
            .title = u"Recipe Name"_s,
            .defaultText = defaultText};
}

InputBox RecipeHands::descriptionBox(const QString &defaultText)
{
    return {.prompt = u"Enter description for this recipe"_s,
            .title = u"Enter Description"_s,
            .defaultText = defaultText,
            .lines = Lines::Several};
}

void RecipeHands::perform(const QString &steps)
{
    for (QString step : steps.split(u", "_s, Qt::SkipEmptyParts)) {
        if (step.contains(u'?')) {
            m_kitchen.doorway.expect(savePrompt(),
                                     step.endsWith("Yes"_L1) ? Button::Yes : Button::No);
            step = step.section(u'?', 0, 0);
        }
        performStep(step.section(u' ', 0, 0), step.section(u' ', 1));
        m_kitchen.settle();
    }
}

void RecipeHands::performStep(const QString &step, const QString &argument)
{
    static const QHash<QString, const char *> buttons{{u"next"_s, "cmdNext"},
                                                      {u"previous"_s, "cmdPrevious"},
                                                      {u"save"_s, "cmdSave"},
                                                      {u"done"_s, "cmdDone"},
                                                      {u"dontsave"_s, "cmdDontSave"},
                                                      {u"utensils"_s, "cmdChangeUtensils"},
                                                      {u"new"_s, "cmdNew"},
                                                      {u"edit"_s, "cmdEdit"},
                                                      {u"describe"_s, "cmdDescription"},
                                                      {u"ingredients"_s, "cmdChangeIngredients"}};
    static const QHash<QString, const char *> fields{{u"author"_s, "txtAuthor"},
                                                     {u"serves"_s, "txtServes"},
                                                     {u"instructions"_s, "txtInstruction"},
                                                     {u"type"_s, "cmbRecipeType"},
                                                     {u"rate"_s, "cmbRating"}};
    if (step == "new"_L1)
        m_kitchen.doorway.expect(nameBox({}), argument);
    if (step == "edit"_L1)
        m_kitchen.doorway.expect(nameBox(m_form->title()), argument);
    if (const char *button = buttons.value(step)) {
        press(*m_form, button);
    } else if (const char *field = fields.value(step)) {
        auto *widget = control<QWidget>(*m_form, field);
        if (step == "type"_L1 || step == "rate"_L1) {
            QTest::keyClick(widget, Qt::Key_Home);
            for (int i = 0; i < argument.toInt(); ++i)
                QTest::keyClick(widget, Qt::Key_Down);
        } else {
            QTest::keyClick(widget, Qt::Key_End, Qt::ControlModifier);
            QTest::keyClick(widget, Qt::Key_End);
            QTest::keyClicks(widget, argument);
        }
    } else if (step == "vegetarian"_L1) {
        QTest::keyClick(control<QCheckBox>(*m_form, "chkVegetarian"), Qt::Key_Space);
    } else {
        qFatal("no such step: %s", qUtf8Printable(step));
    }
}

QString RecipeHands::shown() const
{
    const auto list = [this](const char *name) {
        QStringList items;
        const auto *widget = control<QListWidget>(*m_form, name);
        for (int i = 0; i < widget->count(); ++i)
            items += widget->item(i)->text();
        return items.join(u" + "_s);
    };
    return QStringList{m_form->title(),
                       control<QLineEdit>(*m_form, "txtAuthor")->text(),
                       control<QComboBox>(*m_form, "cmbRecipeType")->currentText(),
                       control<QLineEdit>(*m_form, "txtServes")->text(),
                       control<QComboBox>(*m_form, "cmbRating")->currentText(),
                       control<QCheckBox>(*m_form, "chkVegetarian")->isChecked() ? u"vegetarian"_s
                                                                                 : u"meat"_s,
                       list("lstIngredient"),
                       list("lstUtensils"),
                       control<QPlainTextEdit>(*m_form, "txtInstruction")->toPlainText()}
        .join(u'|');
}

QString RecipeHands::state() const
{
    const auto enabled = [this](const char *name) {
        return control<QPushButton>(*m_form, name)->isEnabled();
    };
    const bool locked = control<LockableComboBox>(*m_form, "cmbRecipeType")->isLocked();
    for (const bool other : {control<QLineEdit>(*m_form, "txtAuthor")->isReadOnly(),
                             control<QLineEdit>(*m_form, "txtServes")->isReadOnly(),
                             control<QPlainTextEdit>(*m_form, "txtInstruction")->isReadOnly(),
                             enabled("cmdNew"), enabled("cmdEdit")}) {
        if (other != locked)
            return u"half locked"_s;
    }
    return (locked ? u"locked"_s : u"open"_s) + (enabled("cmdDontSave") ? u" dontsave"_s : u""_s)
        + (enabled("cmdSave") ? u" save"_s : u""_s);
}
