// Resource numbers of the tray's icons (100-199), shared by the resource
// script and the code that loads them.
#pragma once

// The running icon: a yellow bolt on blue. Lowest number of the program's
// icons, so it is also the program file's own icon.
#define IDI_TRAY_RUNNING 100
// The stopped icon: the same bolt greyed.
#define IDI_TRAY_STOPPED 101
