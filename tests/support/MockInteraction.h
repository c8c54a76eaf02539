#pragma once

#include "interaction/Interaction.h"

#include <QList>

#include <variant>

// TestWindows in for the interaction in tests. A box that is not the next one expected, in any of
// its texts, its icon or its buttons, fails the test; so does an expected one that does not come.
class MockInteraction : public Interaction
{
public:
    ~MockInteraction() override;

    // The answer is a button for a message box and a text for all others.
    using Answer = std::variant<QString, Button>;
    template <class Box = MessageBox>
    void expect(const Box &box, const Answer &answer = Button::Ok)
    {
        m_expected.append({describe(box), answer});
    }

    // Fails the test where an expected box has not come. Where the interaction outlives the test
    // function, cleanup() calls it.
    void checkAllCame();

    Button show(const MessageBox &box) override
    {
        return std::get<Button>(meet(describe(box), box.defaultButton));
    }
    QString ask(const InputBox &box) override { return text(describe(box)); }
    QString choose(const FileChooser &chooser) override { return text(describe(chooser)); }
    QString choose(const FolderChooser &chooser) override { return text(describe(chooser)); }

private:
    static QString describe(const MessageBox &box);
    static QString describe(const InputBox &box);
    static QString describe(const FileChooser &chooser);
    static QString describe(const FolderChooser &chooser);

    // The answer given to the box, or the other one where the box is not the next one expected.
    Answer meet(const QString &box, const Answer &otherwise);
    QString text(const QString &box) { return std::get<QString>(meet(box, QString())); }

    QList<std::pair<QString, Answer>> m_expected;
};
