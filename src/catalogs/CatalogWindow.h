#pragma once

#include "frame/ChildWindow.h"

class DataSource;
class MaxLengthEdit;
class ListBox;
class QPushButton;
class RecordCursor;

// What both catalogs do: a list of all rows of a table, and the fields of the row that is selected
// or of a new one. A catalog keeps the activation until its Done.
class CatalogWindow : public ChildWindow
{
    Q_OBJECT

protected:
    // What one catalog has of its own; all of it lives as long as the window.
    struct Catalog {
        DataSource *source = nullptr;
        QLatin1StringView keyField;
        QLatin1StringView nameField;
        ListBox *list = nullptr; // position n is the n-th row of the source
        MaxLengthEdit *name = nullptr;
        QPushButton *previous = nullptr;
        QPushButton *next = nullptr;
        QPushButton *newRow = nullptr;
        QPushButton *save = nullptr; // the default button
        QString saveQuestion;
    };

    using ChildWindow::ChildWindow;
    void setCatalog(const Catalog &catalog); // once, by the constructor

    void openDataSources() final;
    void Form_Activate() final;
    bool keepsActivationFrom(const ChildWindow & /*next*/) const noexcept final { return true; }

    virtual void showNew(); // empties the name; to be called last
    virtual void save() = 0; // or refuses to
    // Sets the fields that the user has edited, in the row that is being stored.
    virtual void setFields(RecordCursor &row, bool isNew) = 0;

    qint64 currentId() const { return m_currentId; } // of the row that is shown; 0 for a new one
    void setChanged(bool changed);

    void fillList(); // selects nothing; an empty catalog gets a new record
    void goToSelected();
    void showKeyAndName(); // of the current row
    void offerToSave();
    void store(); // and lists and selects it; reads the table again and throws if the row is gone
    void leave(); // hides and unloads the window

private:
    void cmdPrevious_Click();
    void cmdNext_Click();
    void cmdNew_Click();
    void cmdSave_Click();

    RecordCursor &rows() const;
    void step(int by);
    void write();

    Catalog m_catalog;
    qint64 m_currentId = 0;
    bool m_changed = false;
};
