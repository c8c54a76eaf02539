#include "support/WindowFixture.h"

#include "data/DatabasePath.h"

#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>

using namespace Qt::Literals::StringLiterals;

namespace {

void performStep(const QWidget &window, const QString &name, const QString &argument)
{
    if (name == "key"_L1) {
        QTest::keySequence(window.window()->focusWidget(), QKeySequence(argument));
        return;
    }
    auto &widget = control<QWidget>(window, name);
    if (name.startsWith("cmd"_L1)) {
        press(window, name);
    } else if (name.startsWith("cmb"_L1) && !argument.startsWith(u'=')) {
        QTest::keyClick(&widget, Qt::Key_Home);
        while (static_cast<QComboBox &>(widget).currentIndex() > 0) // Home moves in the text
            QTest::keyClick(&widget, Qt::Key_Up);
        for (int i = 0; i < argument.toInt(); ++i)
            QTest::keyClick(&widget, Qt::Key_Down);
    } else if (name.startsWith("chk"_L1)) {
        QTest::keyClick(&widget, Qt::Key_Space);
    } else if (auto *list = qobject_cast<QAbstractItemView *>(&widget)) {
        const int position = argument.section(u' ', 0, 0).toInt();
        const QPoint row = list->visualRect(list->model()->index(position, 0)).center();
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, row);
        if (argument.endsWith("twice"_L1))
            QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, row);
    } else if (argument.startsWith(u'=')) {
        QTest::keyClick(&widget, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(&widget, Qt::Key_Delete);
        QInputMethodEvent text;
        text.setCommitString(argument.sliced(1));
        QCoreApplication::sendEvent(&widget, &text);
    } else {
        QTest::keyClick(&widget, Qt::Key_End, Qt::ControlModifier);
        QTest::keyClick(&widget, Qt::Key_End);
        QTest::keyClicks(&widget, argument);
    }
}

QString textOf(const QListWidget &list)
{
    QStringList items;
    for (int i = 0; i < list.count(); ++i)
        items += list.item(i)->text();
    return items.join(u" + "_s);
}

} // namespace

WindowFixture::WindowFixture(const QByteArray &statements)
{
    sql(statements);
    DatabasePath = file.path();
    setCentralWidget(&area);
    resize(1000, 800);
    show();
    activateWindow();
    if (!QTest::qWaitForWindowActive(this))
        qFatal("the window does not become active");
}

void WindowFixture::perform(const ChildWindow &window, const QString &steps, SourceLine line)
{
    for (const QString &step : steps.split(u", "_s, Qt::SkipEmptyParts)) {
        const QString action = step.section(u'?', 0, 0);
        const QString name = action.section(u' ', 0, 0);
        const QString argument = action.section(u' ', 1);
        if (step.contains(u'?'))
            expectQuestion(window, name, step.section(u'?', 1), line);
        if (name.startsWith("cmd"_L1) && action.contains(u' '))
            interaction.expect(nameBox(name == "cmdNew"_L1 ? QString() : window.title()), argument,
                               line);
        performStep(window, name, argument);
        QCoreApplication::processEvents();
    }
}

void WindowFixture::expectQuestion(const ChildWindow &window, const QString &button,
                                   const QString &answer, SourceLine line)
{
    const QString what = QString::fromLatin1(window.metaObject()->className()).sliced(3).toLower();
    MessageBox box{u"Do you want to save changes to this "_s + what,
                   u"Save Changes"_s,
                   Icon::Question,
                   {Button::Yes, Button::No},
                   Button::Yes};
    if (button == "cmdDelete"_L1)
        box = {u"Are you sure you want to delete this %1?"_s.arg(what), u"Confirm"_s, box.icon,
               box.buttons, Button::No};
    interaction.expect(box, answer == "Yes"_L1 ? Button::Yes : Button::No, line);
}

QString WindowFixture::shown(const ChildWindow &window)
{
    QStringList parts{window.title()};
    for (const QWidget *widget : window.findChildren<QWidget *>()) {
        const bool isOfCombo = qobject_cast<const QComboBox *>(widget->parentWidget());
        if (isOfCombo || !widget->isVisibleTo(&window))
            continue;
        if (const auto *edit = qobject_cast<const QLineEdit *>(widget))
            parts += edit->text();
        else if (const auto *combo = qobject_cast<const QComboBox *>(widget))
            parts += combo->currentText();
        else if (const auto *box = qobject_cast<const QCheckBox *>(widget))
            parts += box->isChecked() ? u"yes"_s : u"no"_s;
        else if (const auto *list = qobject_cast<const QListWidget *>(widget))
            parts += textOf(*list);
        else if (const auto *text = qobject_cast<const QPlainTextEdit *>(widget))
            parts += text->toPlainText();
    }
    return parts.join(u'|');
}

InputBox WindowFixture::nameBox(const QString &defaultText)
{
    return {u"Enter title of the recipe"_s, u"Recipe Name"_s, defaultText};
}

MessageBox WindowFixture::error(const QString &text)
{
    return {text, u"Error"_s, Icon::Information};
}

MessageBox WindowFixture::warning(const QString &text, const QString &title)
{
    return {text, title, Icon::Exclamation};
}

MessageBox WindowFixture::failure(const QString &window, const QString &text)
{
    return warning(u"Something went wrong in \"%1\":\n%2"_s.arg(window, text), u"Error"_s);
}

void press(const QWidget &window, const QString &button)
{
    QTest::mouseClick(&control<QPushButton>(window, button), Qt::LeftButton);
    QCoreApplication::processEvents();
}
