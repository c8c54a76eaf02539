#pragma once

#include "Doorway.h"

#include <QList>

#include <variant>

// Stands in for the doorway in tests. A box that is not the next one expected, in any of its texts,
// its icon or its buttons, fails the test; so does an expected one that does not come.
class StrictDoorway final : public Doorway
{
public:
    ~StrictDoorway() override;

    void expect(const MessageBox &box, Button answer = Button::Ok);
    void expect(const InputBox &box, const QString &answer);
    void expect(const FileChooser &chooser, const QString &path);
    void expect(const FolderChooser &chooser, const QString &path);

    // Fails the test where an expected box has not come. Where the doorway outlives the test
    // function, cleanup() calls it.
    void checkAllCame();

    Button show(const MessageBox &box) override;
    QString ask(const InputBox &box) override;
    QString choose(const FileChooser &chooser) override;
    QString choose(const FolderChooser &chooser) override;

private:
    using Answer = std::variant<Button, QString>;
    struct Expected {
        QString box;
        Answer answer;
    };

    // The answer given to the box, or the other one where the box is not the next one expected.
    Answer meet(const QString &box, const Answer &otherwise);

    QList<Expected> m_expected;
};
