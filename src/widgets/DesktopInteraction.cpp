#include "widgets/DesktopInteraction.h"

#include "interaction/ControlCharacters.h"
#include "widgets/LineEdit.h"
#include "widgets/StandardWidgets.h"
#include "widgets/TextEdit.h"

#include <QApplication>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QGridLayout>
#include <QLabel>
#include <QLocale>
#include <QMessageBox>
#include <QProgressBar>
#include <QProgressDialog>
#include <QPushButton>
#include <QScreen>
#include <QTextDocument>
#include <QVBoxLayout>

#include <limits>
#include <utility>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using TimePoint = std::chrono::steady_clock::time_point;

namespace {

QMessageBox::Icon toQt(Icon icon)
{
    switch (icon) {
    case Icon::Information:
        return QMessageBox::Information;
    case Icon::Question:
        return QMessageBox::Question;
    case Icon::Exclamation:
        return QMessageBox::Warning;
    case Icon::None:
        break;
    }
    return QMessageBox::NoIcon;
}

// QMessageBox has no button Stop; show() gives its Abort that text.
QMessageBox::StandardButton toQt(Button button)
{
    switch (button) {
    case Button::Yes:
        return QMessageBox::Yes;
    case Button::No:
        return QMessageBox::No;
    case Button::Stop:
        return QMessageBox::Abort;
    case Button::Open:
        return QMessageBox::Open;
    case Button::Close:
        return QMessageBox::Close;
    case Button::Ok:
        break;
    }
    return QMessageBox::Ok;
}

// Returns the parent for a box. If another program is active, activeWindow() returns null; the box
// then belongs to the main window, so that it does not open behind it.
QWidget *parentForBox()
{
    if (QWidget *active = QApplication::activeWindow())
        return active;
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget *window : windows) {
        if (window->windowType() == Qt::Window && window->isVisible())
            return window;
    }
    return nullptr;
}

TextEdit *readOnlyEdit(const QString &text, const QString &accessibleName, QSize size)
{
    auto *edit = new TextEdit;
    edit->setPlainText(text);
    edit->setReadOnly(true);
    edit->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    edit->setAccessibleName(accessibleName);
    edit->setMinimumSize(size);
    return edit;
}

// Returns an edit that scrolls the text if it would make the dialog too high for the screen, else
// null.
TextEdit *scrollingText(const QString &text, const QDialog &dialog)
{
    const QSize room = dialog.screen()->availableSize() / 2;
    const QSize size = inches(dialog, 5, 3.5).boundedTo(room);
    const QRect needed = dialog.fontMetrics().boundingRect(
        QRect(QPoint(), size), Qt::TextWordWrap | Qt::TextWrapAnywhere, text);
    return needed.height() <= size.height() ? nullptr
                                            : readOnlyEdit(text, dialog.windowTitle(), size);
}

// A QMessageBox grows with its text, beyond the screen.
void limitHeight(QMessageBox &box)
{
    TextEdit *edit = scrollingText(box.text(), box);
    if (!edit)
        return;
    auto *label = box.findChild<QLabel *>(u"qt_msgbox_label"_s);
    delete box.layout()->replaceWidget(label, edit);
    label->hide();
}

// QMessageBox shows its own details only after a button is pressed. The edit takes the place of the
// informative text instead.
void addDetails(QMessageBox &box, const QString &details)
{
    constexpr double width = 5;
    constexpr double height = 1.8;
    box.setInformativeText(u" "_s);
    auto *label = box.findChild<QLabel *>(u"qt_msgbox_informativelabel"_s);
    auto *edit =
        readOnlyEdit(details, DesktopInteraction::tr("Details"),
                     inches(box, width, height).boundedTo(box.screen()->availableSize() / 2));
    delete box.layout()->replaceWidget(label, edit);
    label->hide();
}

// Asks for one line or several lines of text.
class TextDialog final : public QDialog
{
public:
    explicit TextDialog(const InputBox &box);

    QString text() const; // with CR LF between lines

private:
    QString m_defaultText;
    LineEdit *m_line = nullptr; // or else
    TextEdit *m_lines = nullptr;
};

TextDialog::TextDialog(const InputBox &box)
    : QDialog(parentForBox())
    , m_defaultText(box.defaultText)
{
    setWindowTitle(box.title);
    auto *label = new QLabel(box.prompt);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    QWidget *edit = nullptr;
    if (box.lines == Lines::One) {
        edit = m_line = new LineEdit;
        m_line->setText(box.defaultText);
        m_line->selectAll();
    } else {
        edit = m_lines = new TextEdit;
        m_lines->setPlainText(box.defaultText);
    }
    label->setBuddy(edit);
    edit->setAccessibleName(box.prompt);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto *layout = new QVBoxLayout(this);
    for (QWidget *widget : std::initializer_list<QWidget *>{label, edit, buttons})
        layout->addWidget(widget);
    if (QWidget *scrolling = scrollingText(box.prompt, *this)) {
        delete layout->replaceWidget(label, scrolling);
        label->hide();
    }
    resize(inches(*this, 4, m_lines ? 2.5 : 0)
               .expandedTo(sizeHint())
               .boundedTo(screen()->availableSize() * 0.9)); // leaves room for the title bar
}

// The edit of several lines does not keep the kind of each line break, so that a text which the
// user has not changed is returned as it was.
QString TextDialog::text() const
{
    if (m_line)
        return m_line->text();
    return m_lines->document()->isModified() ? documentText(*m_lines->document()) : m_defaultText;
}

} // namespace

// Measures how long work has taken, without the time in which questions wait for the user.
class WorkTime
{
public:
    using Clock = DesktopInteraction::Clock;

    explicit WorkTime(Clock now)
        : m_now(std::move(now))
        , m_since(m_now())
    {
    }

    TimePoint now() const { return m_now(); }
    std::chrono::steady_clock::duration worked() const
    {
        return m_questions > 0 ? m_worked : m_worked + (m_now() - m_since);
    }

    void questionBegins()
    {
        m_worked = worked();
        ++m_questions;
    }
    void questionEnds()
    {
        --m_questions;
        m_since = m_now();
    }

private:
    Clock m_now;
    TimePoint m_since; // when the work began or went on; counts while no question is open
    std::chrono::steady_clock::duration m_worked{}; // before that
    int m_questions = 0; // that are open
};

namespace {

// A scope in which a box waits for the user.
class Question
{
public:
    explicit Question(const std::weak_ptr<WorkTime> &interrupted)
        : m_interrupted(interrupted.lock())
    {
        if (m_interrupted)
            m_interrupted->questionBegins();
    }
    ~Question()
    {
        if (m_interrupted)
            m_interrupted->questionEnds();
    }

private:
    Q_DISABLE_COPY_MOVE(Question)

    std::shared_ptr<WorkTime> m_interrupted;
};

class ProgressBox final : public Progress
{
public:
    ProgressBox(const QString &title, std::shared_ptr<const WorkTime> time);
    bool update(qsizetype done, qsizetype total, const QString &label) override;

private:
    bool isRepaintDue();
    void display(qsizetype done, qsizetype total, const QString &label);

    QProgressDialog m_dialog{parentForBox()};
    std::shared_ptr<const WorkTime> m_time;
    TimePoint m_lastRepaint;
};

// QProgressDialog's own minimumDuration would include the time in which a question waits for the
// user, and the box would flash up between two questions. isRepaintDue() decides instead.
ProgressBox::ProgressBox(const QString &title, std::shared_ptr<const WorkTime> time)
    : m_time(std::move(time))
{
    constexpr int width = 360;
    m_dialog.setMinimumDuration(std::numeric_limits<int>::max());
    m_dialog.reset(); // stops the timer that the constructor started with the default duration
    m_dialog.setWindowTitle(title);
    m_dialog.setWindowModality(Qt::ApplicationModal);
    m_dialog.setCancelButtonText(DesktopInteraction::tr("&Stop"));
    auto *label = new QLabel;
    label->setTextFormat(Qt::PlainText);
    label->setFixedWidth(width);
    m_dialog.setLabel(label);
    auto *bar = new QProgressBar;
    bar->setAccessibleName(DesktopInteraction::tr("Progress"));
    bar->setTextVisible(false);
    m_dialog.setBar(bar);
}

bool ProgressBox::update(qsizetype done, qsizetype total, const QString &label)
{
    if (!m_dialog.wasCanceled() && isRepaintDue()) {
        display(done, total, label);
        QCoreApplication::processEvents();
    }
    return !m_dialog.wasCanceled();
}

bool ProgressBox::isRepaintDue()
{
    constexpr auto minimumDuration = 500ms;
    constexpr auto repaintInterval = 100ms;

    const TimePoint now = m_time->now();
    if (m_dialog.isVisible() ? now - m_lastRepaint < repaintInterval
                             : m_time->worked() < minimumDuration)
        return false;
    m_lastRepaint = now;
    return true;
}

void ProgressBox::display(qsizetype done, qsizetype total, const QString &label)
{
    const QLocale locale;
    auto *shown = m_dialog.findChild<QLabel *>();
    const QString name = shown->fontMetrics().elidedText(escapeControlCharacters(label),
                                                         Qt::ElideMiddle, shown->width());
    const QString count = DesktopInteraction::tr("%1 of %2");
    m_dialog.setLabelText(count.arg(locale.toString(done + 1), locale.toString(total)) + u'\n'
                          + name);
    m_dialog.setMaximum(static_cast<int>(total));
    m_dialog.setValue(static_cast<int>(done));
    m_dialog.setFixedSize(m_dialog.sizeHint());
    m_dialog.show();
}

} // namespace

DesktopInteraction::DesktopInteraction(Clock clock)
    : m_now(std::move(clock))
{
}

Button DesktopInteraction::show(const MessageBox &box)
{
    QMessageBox dialog(toQt(box.icon), box.title, box.text, QMessageBox::NoButton, parentForBox());
    dialog.setTextFormat(Qt::PlainText);
    for (const Button button : box.buttons) {
        QPushButton *added = dialog.addButton(toQt(button));
        if (button == Button::Stop)
            added->setText(tr("&Stop"));
        if (button == Button::No)
            dialog.setEscapeButton(added); // QMessageBox would prefer Abort, which is our Stop
    }
    dialog.setDefaultButton(toQt(box.defaultButton));
    if (!box.checkBox.isEmpty())
        dialog.setCheckBox(new QCheckBox(box.checkBox));
    if (!box.details.isEmpty())
        addDetails(dialog, box.details);
    limitHeight(dialog);

    const Question question(m_workTime);
    const int pressed = dialog.exec();
    if (dialog.checkBox())
        *box.isChecked = dialog.checkBox()->isChecked();
    for (const Button button : box.buttons) {
        if (pressed == toQt(button))
            return button;
    }
    return box.defaultButton;
}

QString DesktopInteraction::ask(const InputBox &box)
{
    TextDialog dialog(box);
    const Question question(m_workTime);
    return dialog.exec() == QDialog::Accepted ? dialog.text() : QString();
}

QString DesktopInteraction::choose(const FileChooser &chooser)
{
    const QString filter = u"%1 (%2)"_s.arg(chooser.description, chooser.patterns.join(u' '));
    QFileDialog dialog(parentForBox(), chooser.title, chooser.directory, filter);
    dialog.setFileMode(QFileDialog::ExistingFile);
    dialog.setDefaultSuffix(chooser.defaultSuffix);
    const Question question(m_workTime);
    return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
}

QString DesktopInteraction::choose(const FolderChooser &chooser)
{
    const Question question(m_workTime);
    return QFileDialog::getExistingDirectory(parentForBox(), chooser.title, chooser.directory);
}

std::unique_ptr<Progress> DesktopInteraction::startProgress(const QString &title)
{
    const auto time = std::make_shared<WorkTime>(m_now);
    m_workTime = time;
    return std::make_unique<ProgressBox>(title, time);
}
