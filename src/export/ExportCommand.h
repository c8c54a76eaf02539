#pragma once

class Interaction;

// Asks for a folder, exports the web pages of all recipes to it and offers to open them. If the
// folder contains something else under their name, asks for another one. Throws DatabaseError.
void exportWebPages(Interaction &interaction);
