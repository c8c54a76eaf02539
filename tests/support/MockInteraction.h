#pragma once

#include "interaction/Interaction.h"
#include "support/SourceLine.h"

#include <QList>

#include <optional>
#include <variant>

// Answers the boxes in a test. The test fails if a box is not the next expected one in all of its
// texts, its icon and its buttons, or if an expected one does not come. The failure names the line
// of the test that called expect(), if there is one.
class MockInteraction : public Interaction
{
public:
    ~MockInteraction() override;

    struct Checked { // the check box is ticked before the button is pressed
        Button button;
    };
    // The answer is a button for a message box and a text for the other boxes.
    using Answer = std::variant<QString, Button, Checked>;
    template <class Box = MessageBox>
    void expect(const Box &box, const Answer &answer = Button::Ok,
                SourceLine line = SourceLine::current())
    {
        m_expected.append({describe(box), answer, line});
    }

    // Cancels the next work that shows progress, before its item at this index, from 0.
    void expectProgressAndCancel(qsizetype index, SourceLine line = SourceLine::current());

    // Fails the test if something expected has not come. The destructor does the same; call this in
    // cleanup() if the object is older than the test function.
    void checkAllCame();

    Button show(const MessageBox &box) override;
    QString ask(const InputBox &box) override { return textFor(describe(box)); }
    QString choose(const FileChooser &chooser) override { return textFor(describe(chooser)); }
    QString choose(const FolderChooser &chooser) override { return textFor(describe(chooser)); }

    // The test fails if the work does not report its items one after the other, or goes on after it
    // is cancelled.
    std::unique_ptr<Progress> startProgress(const QString &title) override;

private:
    static QString describe(const MessageBox &box);
    static QString describe(const InputBox &box);
    static QString describe(const FileChooser &chooser);
    static QString describe(const FolderChooser &chooser);

    // Returns the expected answer, or the other one if the box is not the next expected one.
    Answer answerTo(const QString &box, const Answer &otherwise);
    QString textFor(const QString &box) { return std::get<QString>(answerTo(box, QString())); }

    struct Expected {
        QString box;
        Answer answer;
        SourceLine line;
    };
    struct Cancellation {
        qsizetype index;
        SourceLine line;
    };
    QList<Expected> m_expected;
    std::optional<Cancellation> m_cancellation;
};
