// Resource numbers of the tab bar's pictures (200-299), shared by the
// resource script and the code that loads them.
#pragma once

#define IDB_TAB_STRIP 200
#define IDB_TAB_NORMAL 201
#define IDB_TAB_OVER 202
#define IDB_TAB_DOWN 203
#define IDB_TAB_MENU_NORMAL 204
#define IDB_TAB_MENU_OVER 205
#define IDB_TAB_MENU_DOWN 206
#define IDB_TAB_SEPARATOR 207
