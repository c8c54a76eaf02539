#pragma once

#include "catalogs/frmIngredient.h"
#include "catalogs/frmUtensil.h"
#include "data/Database.h"
#include "support/WindowFixture.h"
#include "widgets/ListBox.h"

#include <sqlite3.h>

#include <QLineEdit>

using namespace Qt::Literals::StringLiterals;

inline constexpr auto pantry =
    "INSERT INTO Ingredients VALUES (1, 'Salt', 3, 999, 1),"
    "(2, 'Apple', 1, 30, 1), (3, 'beef', 4, 2, 0), (4, 'Éclair', 0, 1, 1);"
    "INSERT INTO Utensils VALUES (1, 'Whisk'), (2, 'pan');";

// One of the two catalogs and its controls.
struct CatalogFixture : WindowFixture {
    explicit CatalogFixture(const QByteArray &rows = pantry, bool isUtensils = false)
        : WindowFixture(rows)
        , ofUtensils(isUtensils)
    {
    }

    void perform(const QString &steps, SourceLine line = SourceLine::current())
    {
        WindowFixture::perform(window, steps, line);
    }
    QString shown() const { return WindowFixture::shown(window); }
    QString stored() const
    {
        return WindowFixture::stored(ofUtensils ? "SELECT * FROM Utensils"
                                                : "SELECT * FROM Ingredients ORDER BY 1");
    }
    bool isOpen() const { return frame.find<frmIngredient>() || frame.find<frmUtensil>(); }
    void expectLocked(DatabaseError::Operation operation)
    {
        interaction.expect(failure(u"Ingredients"_s, lockedText(file, operation)));
    }

    const bool ofUtensils;
    // Windows use this connection as well; a lock of another program fails soon.
    std::shared_ptr<Database> database = Database::open(file.path(), std::chrono::milliseconds(10));
    ChildWindow &window =
        ofUtensils ? static_cast<ChildWindow &>(open<frmUtensil>()) : open<frmIngredient>();
    ListBox &list = control<ListBox>(window, ofUtensils ? u"lstUtensils"_s : u"lstIngredients"_s);
    QLineEdit &name =
        control<QLineEdit>(window, ofUtensils ? u"txtUtensilName"_s : u"txtIngredient"_s);
    QPushButton &save = control<QPushButton>(window, u"cmdSave"_s);
};
