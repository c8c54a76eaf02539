#include "Frame.h"
#include "StrictDoorway.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QHelpEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QTest>
#include <QToolTip>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace {

class Form : public ChildWindow
{
    Q_OBJECT

public:
    explicit Form(Frame &frame)
        : ChildWindow(frame)
    {
        auto *layout = new QVBoxLayout(this);
        const std::initializer_list<QWidget *> controls = {
            &list, &table, &line, &combo, &check, &lines, &cmdSave, &cmdNew, &cmdDone};
        for (QWidget *control : controls)
            layout->addWidget(control);
        for (QWidget *control : {static_cast<QWidget *>(&list), static_cast<QWidget *>(&table),
                                 static_cast<QWidget *>(&lines)})
            control->setMaximumHeight(70);
        list.addItem(u"Salt"_s);
        combo.addItems({u"Misc"_s, u"Fruit"_s});
        table.setItem(0, 0, new QTableWidgetItem(u"Soup"_s));
        table.setEditTriggers(QAbstractItemView::NoEditTriggers);
        connect(&cmdSave, &QPushButton::clicked, this, &Form::save);
        connect(&cmdNew, &QPushButton::clicked, this, &Form::startNew);
        connect(&cmdDone, &QPushButton::clicked, this, &Form::finish);
        setDefaultButton(&cmdSave);
        setCancelButton(&cmdDone);
        setWindowTitle(u"Form's own"_s);
    }

    QListWidget list;
    QTableWidget table{1, 1};
    QLineEdit line;
    QComboBox combo;
    QCheckBox check;
    QPlainTextEdit lines;
    QPushButton cmdSave{u"&Save"_s};
    QPushButton cmdNew{u"&New"_s};
    QPushButton cmdDone{u"D&one"_s};
    QStringList pressed;

private:
    void save() { pressed += u"Save"_s; }
    void startNew() { pressed += u"New"_s; }
    void finish() { pressed += u"Done"_s; }
};

class OtherForm : public Form
{
    Q_OBJECT
    using Form::Form;
};

} // namespace

class tst_ChildWindow : public QObject
{
    Q_OBJECT

    struct Program {
        StrictDoorway doorway;
        QMainWindow window;
        QMdiArea *area = new QMdiArea(&window);
        Frame frame{doorway, *area};
    };
    std::unique_ptr<Program> m_program;
    Form *m_form = nullptr;

    void type(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) const
    {
        QTest::keyClick(m_program->window.windowHandle(), key, modifiers);
    }

private Q_SLOTS:
    void init()
    {
        m_program = std::make_unique<Program>();
        m_program->window.setCentralWidget(m_program->area);
        m_program->window.resize(800, 700);
        m_program->window.show();
        m_program->window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&m_program->window));
        m_form = &m_program->frame.load<Form>();
        m_program->frame.show(*m_form);
    }

    void keys()
    {
        struct Row {
            QWidget &control;
            QString enter;
            QString escape;
        };
        const Row rows[] = {
            {m_form->list, u"Save"_s, u"Done"_s},    {m_form->table, u"Save"_s, u"Done"_s},
            {m_form->line, u"Save"_s, u"Done"_s},    {m_form->combo, u"Save"_s, u"Done"_s},
            {m_form->check, u"Save"_s, u"Done"_s},   {m_form->lines, QString(), u"Done"_s},
            {m_form->cmdSave, u"Save"_s, u"Done"_s}, {m_form->cmdNew, u"New"_s, u"Done"_s},
            {m_form->cmdDone, u"Done"_s, u"Done"_s},
        };
        for (const Row &row : rows) {
            row.control.setFocus();
            QVERIFY(row.control.hasFocus());
            for (const auto &[key, expected] : {std::pair(Qt::Key_Return, row.enter),
                                                {Qt::Key_Enter, row.enter},
                                                {Qt::Key_Escape, row.escape}}) {
                m_form->pressed.clear();
                type(key);
                QVERIFY2(m_form->pressed.join(u' ') == expected,
                         qPrintable(u"%1 in a %2 pressed %3"_s.arg(
                             QKeySequence(key).toString(),
                             QLatin1StringView(row.control.metaObject()->className()),
                             m_form->pressed.join(u' '))));
            }
        }
        QCOMPARE(m_form->lines.toPlainText(), u"\n\n"_s);
    }

    void openComboTakesItsKeys()
    {
        m_form->combo.setFocus();
        m_form->combo.showPopup();
        QTRY_VERIFY(m_form->combo.view()->isVisible());
        QTest::keyClick(m_form->combo.view(), Qt::Key_Down);
        QTest::keyClick(m_form->combo.view(), Qt::Key_Return);
        QTRY_VERIFY(!m_form->combo.view()->isVisible());
        QCOMPARE(m_form->combo.currentText(), u"Fruit"_s);
        QCOMPARE(m_form->pressed, QStringList());
    }

    // Nothing is pressed that the mouse could not press, and a held key presses once.
    void notPressed()
    {
        QWidget *const controls[] = {&m_form->cmdSave, &m_form->cmdNew, &m_form->line};
        for (QWidget *focused : controls) {
            focused->setFocus();
            QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, u"\r"_s, true);
            QApplication::sendEvent(focused, &held);
        }
        type(Qt::Key_Return, Qt::ControlModifier);
        m_form->cmdSave.setEnabled(false);
        m_form->cmdDone.hide();
        type(Qt::Key_Return);
        type(Qt::Key_Escape);
        QCOMPARE(m_form->pressed, QStringList());
    }

    void titles_data()
    {
        QTest::addColumn<QString>("title");
        QTest::newRow("plain") << u"Soup"_s;
        QTest::newRow("empty") << u""_s;
        QTest::newRow("Qt's mark") << u"Soup [*] of [*][*] the day [*"_s;
        QTest::newRow("markup") << u"<b>Soup</b> &amp; \"bread\""_s;
        QTest::newRow("long") << u"Soup of the day "_s.repeated(40).trimmed();
    }

    void titles()
    {
        QFETCH(const QString, title);
        QCOMPARE(m_form->title(), u"Form's own"_s);
        m_form->setTitle(title);
        QCOMPARE(m_form->title(), title);

        // Qt shows a window title with the marks resolved: what it makes of ours is the title
        // again.
        QWidget shown;
        shown.setWindowTitle(m_form->parentWidget()->windowTitle());
        shown.show();
        const QString caption = shown.windowHandle()->title();
        QVERIFY2(title.isEmpty() || caption.startsWith(title), qPrintable(caption));

        QWidget *shell = m_form->parentWidget();
        QHelpEvent help(QEvent::ToolTip, {100, 8}, shell->mapToGlobal(QPoint(100, 8)));
        QApplication::sendEvent(shell, &help);
        QCOMPARE(QToolTip::text(), u"<qt>%1</qt>"_s.arg(title.toHtmlEscaped()));
        QToolTip::hideText();
    }

    // A new window stands in the frame, below the one before, also where the form asks for more;
    // and comes along when the frame shrinks.
    void places()
    {
        const QWidget *viewport = m_program->area->viewport();
        const auto isInside = [viewport](const QWidget &shell) {
            return viewport->rect().contains(shell.geometry());
        };
        const QWidget &shell = *m_form->parentWidget();
        QVERIFY(isInside(shell));
        auto &other = m_program->frame.load<OtherForm>();
        m_program->frame.show(other);
        QWidget &otherShell = *other.parentWidget();
        QVERIFY(isInside(otherShell));
        QVERIFY(otherShell.x() > shell.x() && otherShell.y() > shell.y());

        otherShell.move(viewport->rect().bottomRight() - otherShell.rect().bottomRight());
        other.parentWidget()->showMaximized();
        m_program->window.resize(500, 560);
        QTRY_VERIFY(isInside(shell));
        other.parentWidget()->showNormal();
        QTRY_VERIFY(isInside(otherShell));
    }
};

QTEST_MAIN(tst_ChildWindow)
#include "tst_childwindow.moc"
