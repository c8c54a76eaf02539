#pragma once

#include "interaction/Interaction.h"

#include <functional>

class Randomness;

// A box that the user has answered.
struct AnsweredBox {
    QString title;
    QString text;
    QString answer; // "Yes", "No", "Ok", or what was typed
};

// Answers every box at random, as a user does who has read it. Choosers are cancelled.
class RandomInteraction final : public Interaction
{
public:
    explicit RandomInteraction(Randomness &random);

    std::function<void()> whileOpen; // is called before a box is answered
    std::function<void(const AnsweredBox &)> answered;

    Button show(const MessageBox &box) override;
    QString ask(const InputBox &box) override;
    QString choose(const FileChooser &) override { return {}; }
    QString choose(const FolderChooser &) override { return {}; }
    std::unique_ptr<Progress> startProgress(const QString &title) override;

private:
    QString randomText(const InputBox &box);

    Randomness &m_random;
};
