// One field of a CSV line into a structure field, by the column's type.
#pragma once

#include "frame/VTRExport.h"
#include "listview/VTRBDataType.h"

#include <string>

// Converts the field's text (one of psz8 and pszW; the other form is made in the buffers when the
// type needs it) into the field at pField. uRoom is the field's room in bytes, up to the next field
// or the structure's end: nothing is written beyond it. iTextRoom is the room of a text field in
// characters, the terminator included (below 1: the field stays empty). Pointer types write through
// the pointer the field holds, nothing for a null one. Numbers and dates that don't parse raise
// NVThrowData with the library's texts 12 and 13; an empty date leaves the zero and an empty double
// field becomes EMPTY_DOUBLE.
VTR_API void VTRCSVConvertField(VTRBDataType eType, unsigned char* pField, unsigned int uRoom, int iTextRoom,
                                char* psz8, wchar_t* pszW, int iLine, std::string& narrowBuf,
                                std::wstring& wideBuf);
