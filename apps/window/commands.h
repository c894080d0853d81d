/* The numbers of every command, control and text of the window. The compiler of resources reads this file too, so there
   are definitions in it and nothing else. */
#ifndef QV8_WINDOW_COMMANDS_H
#define QV8_WINDOW_COMMANDS_H

/* Commands: menus, keys and buttons send them with WM_COMMAND. */
#define ID_FILE_OPEN 101
#define ID_FILE_SAVE 102
#define ID_FILE_SAVE_AS 103
#define ID_FILE_CLOSE 104
#define ID_FILE_EXIT 105
#define ID_FILE_RECENT_FIRST 110
#define ID_FILE_RECENT_LAST 119

#define ID_EDIT_UNDO 201
#define ID_EDIT_REDO 202
#define ID_EDIT_COPY 203
#define ID_EDIT_PASTE_NEW 204
#define ID_EDIT_PASTE_INTO 205
#define ID_EDIT_CLEAR_CLIPBOARD 206
#define ID_EDIT_UNDO_ALL 207
#define ID_EDIT_MEMORY_FIRST 210 /* 128 MB, and twice as much with each further one */
#define ID_EDIT_MEMORY_LAST 214

#define ID_SELECT_ALL 301
#define ID_SELECT_NONE 302
#define ID_SELECT_INVERT 303
#define ID_SELECT_RECTANGLE 304
#define ID_SELECT_ELLIPSE 305
#define ID_SELECT_POLYGON 306
#define ID_SELECT_COLOUR 307
#define ID_SELECT_LOAD_MASK 308
#define ID_SELECT_SAVE_MASK 309
#define ID_SELECT_MAKE_MASK 310
#define ID_SELECT_HAND 311 /* no tool: the mouse moves the picture */

#define ID_VIEW_FIT 401
#define ID_VIEW_ACTUAL 402
#define ID_VIEW_ZOOM_IN 403
#define ID_VIEW_ZOOM_OUT 404
#define ID_VIEW_PREVIEW 405
#define ID_VIEW_DIVIDER 406
#define ID_VIEW_BEFORE 407 /* while its key is held */
#define ID_VIEW_NEXT 408
#define ID_VIEW_PREVIOUS 409
#define ID_VIEW_FIND 410 /* the search field */
#define ID_VIEW_NEXT_PANE 411
#define ID_VIEW_PREVIOUS_PANE 412

#define ID_EFFECT_APPLY 501
#define ID_EFFECT_RESET 502

#define ID_HELP_ABOUT 601
#define ID_HELP_KEYS 602

/* The effects in the order of catalogue::AllEffects(). */
#define ID_EFFECT_FIRST 1000
#define ID_EFFECT_LAST 1099

/* Controls of the main window. The canvas, where the picture is, has a window class of its own. */
#define IDC_TABS 3001
#define IDC_CANVAS 3002
#define IDC_STATUS 3003
#define IDC_SEARCH 3004
#define IDC_EFFECTS 3005
#define IDC_PARAMETERS 3006
#define IDC_PREVIEW 3007
#define IDC_SPLITTER 3008

/* Controls of the parameters: the first parameter of the chosen effect has the numbers from IDC_PARAMETER_FIRST on, and
   each further one those IDC_PARAMETER_STRIDE behind. Which of the parts there are depends on the parameter. */
#define IDC_PARAMETER_FIRST 4000
#define IDC_PARAMETER_STRIDE 10
#define IDC_PART_LABEL 0
#define IDC_PART_EDIT 1   /* the value as the command line has it; empty: its default */
#define IDC_PART_SLIDER 2 /* a trackbar */
#define IDC_PART_CHOICE 3 /* a list that drops down: words, open pictures, kernels */
#define IDC_PART_FLAG 4   /* a check box */
#define IDC_PART_BUTTON 5 /* chooses a colour or a file */

/* What a second start of the program hands to the first, as dwData of WM_COPYDATA: file names in UTF-16, each with its
   ending zero, to be opened; with ..._SAVE one name under which the picture in front is saved. The other two are for
   masks. The message is answered with 1 when the work has begun. */
#define QV8WINDOW_OPEN 0x5138574F
#define QV8WINDOW_SAVE 0x51385753
#define QV8WINDOW_LOAD_MASK 0x51385754
#define QV8WINDOW_SAVE_MASK 0x51385755

/* What a program that drives the window asks its main window, as wParam: whether work goes on, be it for a preview, or
   its result is still to be shown; and how many previews have been painted. */
#define QV8WINDOW_STATE 0x8010 /* WM_APP and 16 */
#define QV8WINDOW_IS_BUSY 0
#define QV8WINDOW_PREVIEWS 1

/* Class of the main window, as FindWindow takes it. */
#define QV8WINDOW_CLASS L"Qv8EffectWindow"
#define QV8WINDOW_CANVAS_CLASS L"Qv8EffectCanvas"

/* Parts of the status line. */
#define STATUS_MESSAGE 0
#define STATUS_SIZE 1
#define STATUS_ZOOM 2
#define STATUS_POINTER 3
#define STATUS_MEMORY 4 /* what undo keeps, in megabytes, of how many */
#define STATUS_PARTS 5

#endif
