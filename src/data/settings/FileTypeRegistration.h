#pragma once

// Tells the registry and the desktop that this program imports *.srf files; run at every start, so
// that they follow the program when it moves. Silent where it has no right to.
void registerFileType();
