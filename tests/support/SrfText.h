#pragma once

#include <QByteArrayList>

// The parts of a recipe file, valid and with empty sections unless a test says otherwise. The lines
// of the sections are given without their ends.
struct SrfText {
    QByteArray title = "Soup";
    QByteArray type = "2";
    QByteArray serves = "4";
    QByteArrayList instructions = {};
    QByteArrayList ingredients = {};
    QByteArrayList utensils = {};
};

// Returns the bytes of the recipe file. The instructions begin in line 8; without any, the
// ingredients begin in line 10, and without those the utensils in line 12.
inline QByteArray srf(const SrfText &text)
{
    return (QByteArrayList{"Cookbook", text.title, "A. Cook", text.type, text.serves, "Quick",
                           "<Instructions>"}
            + text.instructions + QByteArrayList{"</Instructions>", "<Ingredients>"}
            + text.ingredients + QByteArrayList{"</Ingredients>", "<Utensils>"} + text.utensils
            + QByteArrayList{"</Utensils>", {}})
        .join("\r\n");
}
