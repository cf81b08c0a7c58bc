// Ids of the library's string table (resources/vantrel.rc); each id exists in English, German and
// Polish. Placeholders "§1", "§2!d!" take the arguments in order.
#pragma once

enum : unsigned long {
    IDS_VTR_ERROR_TITLE = 15, // title of ErrMsg boxes
    IDS_VTR_ASK_TITLE = 16,   // title of AskMsg boxes that got none
    IDS_VTR_YES = 18,         // "yes" of a boolean cell
    IDS_VTR_NO = 19,          // "no" of a boolean cell
    IDS_VTR_DIFFERENT = 73,   // a field whose records disagree
    IDS_VTR_DISPLAY = 87,     // "Display" button and menu text
};
