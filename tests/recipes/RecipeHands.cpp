#include "RecipeHands.h"

#include "LockableComboBox.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>

using namespace Qt::Literals::StringLiterals;

frmRecipe &RecipeHands::open(qint64 key)
{
    m_form = &frame.load<frmRecipe>();
    frame.show(*m_form);
    m_form->CurrentRecipeID = key;
    QCoreApplication::processEvents();
    return *m_form;
}

InputBox RecipeHands::nameBox(const QString &defaultText)
{
    return {u"Enter title of the recipe"_s, u"Recipe Name"_s, defaultText};
}

void RecipeHands::perform(const QString &steps)
{
    for (QString step : steps.split(u", "_s, Qt::SkipEmptyParts)) {
        if (step.contains(u'?')) {
            doorway.expect(saveChanges("recipe"),
                           step.endsWith("Yes"_L1) ? Button::Yes : Button::No);
            step = step.section(u'?', 0, 0);
        }
        performStep(step.section(u' ', 0, 0), step.section(u' ', 1));
        QCoreApplication::processEvents();
    }
}

void RecipeHands::performStep(const QString &name, const QString &argument)
{
    auto &widget = control<QWidget>(*m_form, name);
    if (name == "cmdNew"_L1 || name == "cmdEdit"_L1)
        doorway.expect(nameBox(name == "cmdNew"_L1 ? QString() : m_form->title()), argument);
    if (name.startsWith("cmd"_L1)) {
        press(*m_form, name);
    } else if (name.startsWith("cmb"_L1)) {
        QTest::keyClick(&widget, Qt::Key_Home);
        for (int i = 0; i < argument.toInt(); ++i)
            QTest::keyClick(&widget, Qt::Key_Down);
    } else if (name.startsWith("chk"_L1)) {
        QTest::keyClick(&widget, Qt::Key_Space);
    } else {
        QTest::keyClick(&widget, Qt::Key_End, Qt::ControlModifier);
        QTest::keyClick(&widget, Qt::Key_End);
        QTest::keyClicks(&widget, argument);
    }
}

QString RecipeHands::shown() const
{
    const auto list = [this](const QString &name) {
        QStringList items;
        const auto &widget = control<QListWidget>(*m_form, name);
        for (int i = 0; i < widget.count(); ++i)
            items += widget.item(i)->text();
        return items.join(u" + "_s);
    };
    const bool vegetarian = control<QCheckBox>(*m_form, u"chkVegetarian"_s).isChecked();
    return QStringList{m_form->title(),
                       control<QLineEdit>(*m_form, u"txtAuthor"_s).text(),
                       control<QComboBox>(*m_form, u"cmbRecipeType"_s).currentText(),
                       control<QLineEdit>(*m_form, u"txtServes"_s).text(),
                       control<QComboBox>(*m_form, u"cmbRating"_s).currentText(),
                       vegetarian ? u"vegetarian"_s : u"meat"_s,
                       list(u"lstIngredient"_s),
                       list(u"lstUtensils"_s),
                       control<QPlainTextEdit>(*m_form, u"txtInstruction"_s).toPlainText()}
        .join(u'|');
}

QString RecipeHands::state() const
{
    const auto enabled = [this](const QString &name) {
        return control<QPushButton>(*m_form, name).isEnabled();
    };
    const bool locked = control<LockableComboBox>(*m_form, u"cmbRecipeType"_s).isLocked();
    for (const bool other : {control<QLineEdit>(*m_form, u"txtAuthor"_s).isReadOnly(),
                             control<QLineEdit>(*m_form, u"txtServes"_s).isReadOnly(),
                             control<QPlainTextEdit>(*m_form, u"txtInstruction"_s).isReadOnly(),
                             enabled(u"cmdNew"_s), enabled(u"cmdEdit"_s)}) {
        if (other != locked)
            return u"half locked"_s;
    }
    return (locked ? u"locked"_s : u"open"_s) + (enabled(u"cmdDontSave"_s) ? u" dontsave"_s : u""_s)
        + (enabled(u"cmdSave"_s) ? u" save"_s : u""_s);
}
