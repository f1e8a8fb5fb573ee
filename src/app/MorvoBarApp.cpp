#include "app/MorvoBarApp.h"
