#pragma once

#include "Model.h"
#include "OtherProgram.h"
#include "RandomInteraction.h"
#include "Randomness.h"
#include "app/frmMain.h"

#include <QObject>

class QAbstractButton;

// Uses the windows of the program at random by keys, mouse and screen reader, one step at a time.
class Monkey final : public QObject
{
    Q_OBJECT

public:
    using Report = std::function<void(const QString &)>;

    // The path is that of a new recipe database. Each step is reported before it is taken, and each
    // box when it is answered.
    Monkey(const QString &path, unsigned seed, Report report);

    // Takes a random step and checks the file after it. Returns the fault found, or empty text.
    QString step();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override; // closes modal dialogs

private:
    struct Step {
        QString text;
        std::function<void()> take;
    };

    Step chooseStep();
    Step writeByOther();
    Step pressMenuKey();
    Step typeText();
    Step pressKey();
    Step find();
    Step pressAccessKey();
    Step clickButton();
    Step clickAnywhere();
    Step doubleClickRecipe();
    Step pressByScreenReader();
    Step turnWheel();
    Step burst();

    void send(int key, Qt::KeyboardModifiers modifiers = {});
    void sendText(const QString &text);
    QWidget *keyTarget();
    QList<QAbstractButton *> buttons(bool inActiveWindow);
    // Processes events until nothing is pending. A screen reader's press holds its button for
    // a moment.
    void waitUntilIdle();
    bool isAnyButtonDown() const;
    void checkOpened(const QString &name);
    QString query();
    void checkFound(const QWidget &list);
    void writeWhileBoxIsOpen();

    Report m_report;
    Randomness m_random;
    OtherProgram m_other;
    RandomInteraction m_interaction;
    frmMain m_main;
    Model m_model;
    int m_steps = 0;
    int m_lockedSteps = 0;
    QString m_fault;
};
