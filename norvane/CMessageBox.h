// Message boxes that the user may switch off ("don't show this again"), and the table of them that
// the visibility dialog lists.
//
// A box's setting lives below HKEY_CURRENT_USER\<NVGetpDontShowMeThisDialogAgainRegKey()>: a box
// with a registry value of its own (bUseRegValue) is off while that value is the text "NO" (any
// case); any other box is off while the DWORD value "MsgBox_<id>" is not 0.
#pragma once

#include "DynaArray.h"
#include "NVExport.h"

#include <windows.h>

// The registry key of the switched-off boxes, below HKEY_CURRENT_USER: "<base key>\DontShowAgain".
NV_API char const* NVGetpDontShowMeThisDialogAgainRegKey();

class NV_API CMessageBox {
public:
    // One registered box. The visibility dialog copies it whole into its rows, so its size is fixed.
    struct RegisterdMessageBox {
        DWORD dwID;          // the key of FindRegisteredMessageBox
        char szText[256];    // the message, as listed to the user
        bool bDontShow;      // switched off
        char szRegValue[98]; // name of the registry value of its own
        bool bUseRegValue;   // the setting lives in szRegValue, not in the record
    };

    CMessageBox();

    // The process's table of registered boxes, in the order they were registered.
    static DynaArrayTpl<RegisterdMessageBox, 0, 0>& GetdaRegisterdMessageBox();
    // Adds a box to the table, or updates the text of one with that id, and reads its setting.
    // lpszRegValue null or empty: the setting is kept under "MsgBox_<id>". False for id 0.
    static bool RegisterMessageBox(DWORD dwID, char const* lpszText, char const* lpszRegValue);
    // The table's record of id, null when not registered.
    RegisterdMessageBox* FindRegisteredMessageBox(unsigned long dwID);
    // Writes the record's setting to the registry and into the table (adding it when new).
    static bool StoreRegisteredMessageBox(RegisterdMessageBox* pBox);
    // Removes the box from the table and its setting from the registry. False when not registered.
    bool DeleteRegisteredMessageBox(unsigned long dwID);

    // Shows box id with the text (formatted like NVMsgBox; null: the registered text) unless the
    // user switched it off; then returns iAnswerWhenOff without showing anything. A box that is not
    // registered is always shown. A null title takes the application's name.
    int Show(HWND hParent, unsigned long dwID, char const* lpszTitle, UINT uFlags, int iAnswerWhenOff,
             char const* lpszFormat, ...);
    // Whether box id is switched off, as the registry says now.
    bool IsSwitchedOff(unsigned long dwID);
};
