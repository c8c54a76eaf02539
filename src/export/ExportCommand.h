#pragma once

class Interaction;
class QWidget;

// Asks for a folder, exports the web pages of all recipes to it and offers to open them. If the
// folder contains something else under their name, asks for another one. The window is the parent
// of the progress dialog. Throws DatabaseError.
void exportWebPages(Interaction &interaction, QWidget *window);
