#include "app/MorvoBarApp.h"

#include <QtPlugin>

// The panels are linked in, and reached by their QML address alone.
Q_IMPORT_PLUGIN(Morvo_PanelsPlugin)

int main(int argc, char **argv) { return morvo::MorvoBarApp::run(argc, argv); }
