#include "support/Rows.h"
#include "widgets/ComboBox.h"
#include "widgets/LineEdit.h"

#include <QAccessible>
#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>
#include <QVBoxLayout>
#include <QWheelEvent>

using namespace Qt::Literals::StringLiterals;

namespace {

// A combo box with entries, between two edits in an area that can be scrolled.
struct Form {
    Form()
    {
        auto *content = new QWidget;
        auto *layout = new QVBoxLayout(content);
        auto *label = new QLabel(u"Type"_s);
        label->setBuddy(&combo);
        for (QWidget *widget : std::initializer_list<QWidget *>{label, &before, &after, &combo})
            layout->addWidget(widget);
        layout->addSpacing(1000);
        QWidget::setTabOrder(&before, &combo);
        QWidget::setTabOrder(&combo, &after);
        combo.addItems({u"Misc"_s, u"Soup"_s, u"Salad"_s});
        combo.setCurrentIndex(1);
        area.setWidget(content);
        area.resize(300, 300);
        area.show();
        area.activateWindow();
        if (!QTest::qWaitForWindowActive(&area))
            qFatal("the window does not become active");
        before.setFocus();
    }

    void turnWheel()
    {
        QWidget *target = area.childAt(combo.mapTo(&area, combo.rect().center()));
        const QPoint place = target->rect().center();
        QWheelEvent event(place, target->mapToGlobal(place), {}, {0, -120}, Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QSpontaneKeyEvent::setSpontaneous(&event); // only such an event moves the focus
        QCoreApplication::instance()->notify(target, &event);
    }

    QScrollArea area;
    QLineEdit before;
    QLineEdit after;
    ComboBox combo;
};

const QAccessibleInterface *accessible(QWidget *widget)
{
    return QAccessible::queryAccessibleInterface(widget);
}

} // namespace

class tst_ComboBox : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void wheel_data();
    void wheel();
    void pastesOneLine();
    void readOnly();
};

void tst_ComboBox::wheel_data()
{
    addRows<bool, bool, bool, QString>({
        {"list that the mouse passes", false, false, false, u"Soup"_s},
        {"list with the focus", false, false, true, u"Salad"_s},
        {"edit that the mouse passes", true, false, false, u"Soup"_s},
        {"edit with the focus", true, false, true, u"Salad"_s},
        {"read-only with the focus", false, true, true, u"Soup"_s},
    });
}

// The wheel selects another entry or scrolls what is around the combo box.
void tst_ComboBox::wheel()
{
    const auto [isEditable, isReadOnly, hasFocus, selected] = fetchRow<bool, bool, bool, QString>();
    Form form;
    if (isEditable)
        form.combo.setLineEdit(new LineEdit);
    form.combo.setReadOnly(isReadOnly);
    if (hasFocus)
        form.combo.setFocus();
    form.turnWheel();
    QCOMPARE(form.combo.hasFocus(), hasFocus);
    QCOMPARE(form.combo.currentText(), selected);
    QCOMPARE(form.area.verticalScrollBar()->value() > 0, form.combo.currentIndex() == 1);
}

void tst_ComboBox::pastesOneLine()
{
    Form form;
    form.combo.setLineEdit(new LineEdit);
    form.combo.setFocus();
    QGuiApplication::clipboard()->setText(u"1\n1/2\n"_s);
    QTest::keySequence(&form.combo, QKeySequence::SelectAll);
    QTest::keySequence(&form.combo, QKeySequence::Paste);
    QCOMPARE(form.combo.currentText(), u"1 1/2"_s);
}

void tst_ComboBox::readOnly()
{
    Form form;
    form.combo.setReadOnly(true);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QVERIFY(form.combo.hasFocus());
    QTest::keySequence(QApplication::focusWidget(), QKeySequence::SelectAll);
    QTest::keySequence(QApplication::focusWidget(), QKeySequence::Copy);
    QCOMPARE(QGuiApplication::clipboard()->text(), u"Soup"_s);
    for (const Qt::Key key : {Qt::Key_Down, Qt::Key_M, Qt::Key_Space, Qt::Key_F4})
        QTest::keyClick(QApplication::focusWidget(), key);
    QTest::mouseClick(&form.combo, Qt::LeftButton);
    QCOMPARE(form.combo.currentText(), u"Soup"_s);
    QVERIFY(!QApplication::activePopupWidget());
    QVERIFY(accessible(QApplication::focusWidget())->state().readOnly);
    QCOMPARE(accessible(QApplication::focusWidget())->text(QAccessible::Name), u"Type"_s);
    QCOMPARE(accessible(QApplication::focusWidget())->text(QAccessible::Value), u"Soup"_s);

    form.combo.setCurrentIndex(2);
    QCOMPARE(accessible(QApplication::focusWidget())->text(QAccessible::Value), u"Salad"_s);
    form.combo.setCurrentIndex(-1);
    QCOMPARE(accessible(QApplication::focusWidget())->text(QAccessible::Value), QString());

    form.combo.setReadOnly(false);
    QCOMPARE(QApplication::focusWidget(), &form.combo);
    QVERIFY(!accessible(QApplication::focusWidget())->state().readOnly);
    QTest::keyClick(&form.combo, Qt::Key_Down);
    QCOMPARE(form.combo.currentText(), u"Misc"_s);
    form.combo.setReadOnly(true);
    QVERIFY(form.combo.hasFocus());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), &form.after);
    QTest::keyClick(&form.after, Qt::Key_Backtab);
    QVERIFY(form.combo.hasFocus());
}

QTEST_MAIN(tst_ComboBox)
#include "tst_combobox.moc"
