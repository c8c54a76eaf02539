#pragma once

class Interaction;
class QWidget;

// Asks for a folder, writes the web pages of all recipes there as the settings say, and offers to
// open them. Another place is asked for where something else is in the chosen one. The window is
// the one that the work is done for. Throws DatabaseError.
void exportWebPages(Interaction &interaction, QWidget *window);
