#include "app/MorvoBarApp.h"

int main(int argc, char **argv) { return morvo::MorvoBarApp::run(argc, argv); }
