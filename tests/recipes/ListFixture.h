#pragma once

#include "data/Database.h"
#include "recipes/RecipeTable.h"
#include "recipes/frmRecipe.h"
#include "recipes/frmRecipes.h"
#include "support/WindowFixture.h"

#include <QHeaderView>

// The recipe list, open on a database with these rows.
struct ListFixture : WindowFixture {
    explicit ListFixture(const QByteArray &rows)
        : WindowFixture(rows)
    {
    }

    QString column(int number) const
    {
        QStringList texts;
        for (int row = 0; row < table.model()->rowCount(); ++row)
            texts += table.model()->index(row, number).data().toString();
        return texts.join(u'|');
    }
    QString selected() const
    {
        const QModelIndexList rows = table.selectionModel()->selectedRows();
        return rows.size() == 1 ? rows.constFirst().data().toString() : QStringLiteral("none");
    }
    void clickHeader(int column) const
    {
        const QHeaderView *header = table.header();
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                          {header->sectionViewportPosition(column) + 20, header->height() / 2});
    }
    // Sends a double click to the main window, as the platform does.
    void doubleClick(QPoint inTable)
    {
        const QPoint position = table.viewport()->mapTo(&static_cast<QWidget &>(*this), inTable);
        QTest::mouseDClick(windowHandle(), Qt::LeftButton, {}, position);
    }
    QPoint middleOf(const QString &name) const
    {
        const QModelIndexList found = table.model()->match(table.model()->index(0, 0), 0, name);
        return table.visualRect(found.value(0)).center();
    }
    bool canView() const
    {
        return control<QPushButton>(form, QStringLiteral("cmdView")).isEnabled();
    }
    frmRecipe *opened()
    {
        QCoreApplication::processEvents();
        auto *recipe = frame.find<frmRecipe>();
        return recipe && frame.activeChild() == recipe ? recipe : nullptr;
    }

    // Windows use this connection as well; a lock of another program fails soon.
    std::shared_ptr<Database> database = Database::open(file.path(), std::chrono::milliseconds(50));
    frmRecipes &form = open<frmRecipes>();
    RecipeTable &table = control<RecipeTable>(form, QStringLiteral("lvwRecipes"));
};
